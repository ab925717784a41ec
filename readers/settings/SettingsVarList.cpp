// MCSettingsParser::FillVarList and FillTransDict: the dictionaries of a settings document as a
// variable list.
#include <iterator>
#include <limits>
#include <xercesc/dom/DOMElement.hpp>

#include "mcxprsutil/MCSettingsParser.h"
#include "readers/DomWalk.h"
#include "readers/Field.h"
#include "readers/Names.h"
#include "readers/pmml/DictionaryFill.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using XERCES_CPP_NAMESPACE::DOMElement;

// Fewer than the PMML reader takes: settings know no dates as numbers of days or seconds.
constexpr DataType kDataTypes[] = {
    {u"string", Content::kTexts, 3},    {u"date", Content::kNumbers, 4},
    {u"time", Content::kNumbers, 5},    {u"dateTime", Content::kNumbers, 6},
    {u"double", Content::kNumbers, 2},  {u"float", Content::kNumbers, 2},
    {u"integer", Content::kNumbers, 1}, {nullptr, Content::kNumbers}};  // end mark
static_assert(std::size(kDataTypes) == 8, "seven data types and the end mark");

constexpr FieldDialect Dialect(const XMLCh* element) {
  return {element,        names::kDisplayName,  names::kDataType,
          names::kOptype, names::kDisplayValue, kDataTypes};
}

constexpr FieldDialect kDataFields = Dialect(names::kDataField);
constexpr FieldDialect kDerivedFields = Dialect(names::kDerivedField);

// On purpose not the lowest double, which is where a field without any "Interval" starts: an
// interval without "leftMargin" holds positive numbers.
constexpr double kAbsentLeftMargin = std::numeric_limits<double>::min();
constexpr double kAbsentRightMargin = kLargestDouble;

// False for a margin that is no number. "NaN" is one: the missing value, which is then compared
// with the other margin like any number.
bool ReadMargin(const DOMElement& interval, const XMLCh* name, double absent, double& margin) {
  margin = absent;
  const XMLCh* text = AttributeText(interval, name);
  return text == nullptr || ParseDouble(text, margin);
}

// Replaces the whole range, so that of several intervals the last one counts.
MCStatus ReadInterval(const DOMElement& interval, Range& range) {
  const bool readable = ReadMargin(interval, names::kLeftMargin, kAbsentLeftMargin, range.lower) &&
                        ReadMargin(interval, names::kRightMargin, kAbsentRightMargin, range.upper);
  return readable && range.lower <= range.upper ? MCStatus() : Failure(kAttributeInvalid);
}

// Data fields: numeric ones have a range, bins if they are wanted, and every variable gets its data
// type code. All of them are inputs: the parameters that name variables for a role (the frequency
// weight among them) are the business of their own getters, so nothing becomes the list's weight.
class DataFieldFill : public DictionaryFill {
 public:
  DataFieldFill(MCVarList& list, const DOMElement* binDictionary,
                const FieldDialect& dialect = kDataFields)
      : DictionaryFill(dialect, list, binDictionary) {}

 protected:
  MCStatus ReadNumericChild(const DOMElement& child) override {
    if (IsNamed(child, names::kInterval)) return ReadInterval(child, field_.range);
    return DictionaryFill::ReadNumericChild(child);
  }

 private:
  int AddContinuous() final {
    return list_.AddContVar(field_.name, field_.label, field_.range.lower, field_.range.upper,
                            field_.role, false, -1);
  }

  MCStatus Declare(int index) final {
    if (MCStatus status = DictionaryFill::Declare(index); !status.IsOK()) return status;
    IMCVariable* variable = list_.GetVarAt(index);
    if (variable == nullptr) return Failure(kVariableRefused);
    variable->SetDataType(field_.dataTypeCode);
    return MCStatus();
  }
};

// Derived fields: no bins, and an "Extension", whatever else it says, may hold the range as well.
class DerivedFieldFill final : public DataFieldFill {
 public:
  explicit DerivedFieldFill(MCVarList& list) : DataFieldFill(list, nullptr, kDerivedFields) {}

 private:
  MCStatus ReadNumericChild(const DOMElement& child) override {
    if (MCStatus status = DataFieldFill::ReadNumericChild(child); !status.IsOK()) return status;
    if (!IsNamed(child, names::kExtension)) return MCStatus();
    const DOMElement* interval = FirstChild(child, names::kInterval);
    return interval == nullptr ? MCStatus() : ReadInterval(*interval, field_.range);
  }
};

}  // namespace

MCStatus MCSettingsParser::FillVarList(MCVarList& list, bool useTransDictBins) const {
  if (!status_.IsOK()) return status_;
  if (document_ == nullptr) return Failure(kNoDocument);
  DataFieldFill fill(list, useTransDictBins ? transformation_dictionary_ : nullptr);
  return fill.AddAll(*data_dictionary_);
}

MCStatus MCSettingsParser::FillTransDict(MCVarList& list) const {
  if (!status_.IsOK()) return status_;
  if (document_ == nullptr) return Failure(kNoDocument);
  if (transformation_dictionary_ == nullptr) return MCStatus();
  return DerivedFieldFill(list).AddAll(*transformation_dictionary_);
}

}  // namespace MCXPrsUtil
