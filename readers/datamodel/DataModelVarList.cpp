#include "readers/datamodel/DataModelVarList.h"

#include <iterator>

#include "readers/DomWalk.h"
#include "readers/Field.h"
#include "readers/FieldFill.h"
#include "readers/Names.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using XERCES_CPP_NAMESPACE::DOMElement;

constexpr DataType kStorages[] = {{u"string", Content::kTexts}, {u"integer", Content::kNumbers},
                                  {u"real", Content::kNumbers}, {u"date", Content::kNumbers},
                                  {u"time", Content::kNumbers}, {u"timestamp", Content::kNumbers},
                                  {nullptr, Content::kNumbers}};  // end mark
static_assert(std::size(kStorages) == 7, "six storages and the end mark");

constexpr FieldDialect kDialect = {names::kDataModelField, names::kDisplayLabel, names::kStorage,
                                   names::kMeasure,        names::kDisplayLabel, kStorages};

struct RoleWord {
  const XMLCh* word;
  IMCVariable::VariableRole role;
};

constexpr RoleWord kRoles[] = {{u"input", IMCVariable::kRoleInput},
                               {u"target", IMCVariable::kRoleTarget},
                               {u"freqWeight", IMCVariable::kRoleFrequencyWeight}};
static_assert(std::size(kRoles) == 3, "three roles; any other word means none");

void ReplaceBound(const DOMElement& range, const XMLCh* name, double& bound) {
  if (const XMLCh* text = AttributeText(range, name)) ParseDouble(text, bound);
}

// Fields have roles, and values are all valid; neither bins nor data type codes nor anything to
// declare at an encoder.
class DataModelFill final : public FieldFill {
 public:
  DataModelFill(bool inputRoleFlag, int rangeCount, MCVarList& list)
      : FieldFill(kDialect, list), input_role_flag_(inputRoleFlag), range_count_(rangeCount) {}

 private:
  IMCVariable::VariableRole ReadRole(const DOMElement& element) const override {
    const XMLCh* word = AttributeText(element, names::kRole);
    for (const RoleWord& entry : kRoles) {
      if (word == nullptr || !SameText(word, entry.word)) continue;
      const bool declared = input_role_flag_ && entry.role == IMCVariable::kRoleInput;
      return declared ? IMCVariable::kRoleDeclaredInput : entry.role;
    }
    return IMCVariable::kRoleNone;
  }

  MCStatus ReadChild(const DOMElement& child) override {
    if (IsNamed(child, names::kValues)) {
      ReadValues(child);
    } else if (field_.content == Content::kNumbers && IsNamed(child, names::kRange)) {
      ReplaceBound(child, names::kMinValue, field_.range.lower);
      ReplaceBound(child, names::kMaxValue, field_.range.upper);
    }
    return MCStatus();
  }

  void ReadValues(const DOMElement& values) {
    for (const DOMElement& value : Children(values, names::kValue)) {
      if (value.hasAttributes()) AppendValue(value, kDialect, field_.content, field_.valid);
    }
  }

  int AddContinuous() override {
    const Field& f = field_;
    if (f.role == IMCVariable::kRoleFrequencyWeight) {
      return list_.SetWeightVar(f.name, f.label, IMCVariable::kRoundNearest);
    }
    if (range_count_ < 2) return list_.AddContVar(f.name, f.label, f.role);
    return list_.AddContVar(f.name, f.label, f.range.lower, f.range.upper, f.role, true,
                            range_count_);
  }

  // A list may create encoders when it is first asked for them. That of a categorical variable with
  // numbers is asked for on purpose, although there is nothing to tell it.
  MCStatus Declare(int index) override {
    const bool asks = !field_.continuous && field_.content == Content::kNumbers;
    if (asks) (void)list_.GetEncoderAt(index);
    return MCStatus();
  }

  const bool input_role_flag_;
  const int range_count_;
};

}  // namespace

MCStatus AddDataModelFields(const DOMElement& fields, bool inputRoleFlag, int rangeCount,
                            MCVarList& list) {
  return DataModelFill(inputRoleFlag, rangeCount, list).AddAll(fields);
}

}  // namespace MCXPrsUtil
