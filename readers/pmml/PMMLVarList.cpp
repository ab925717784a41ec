// MCPMMLParser::FillVarList: a PMML data dictionary as a variable list.
#include <iterator>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "mcxprsutil/MCPMMLParser.h"
#include "readers/Field.h"
#include "readers/Names.h"
#include "readers/pmml/DictionaryFill.h"
#include "readers/pmml/NameFilter.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using XERCES_CPP_NAMESPACE::DOMElement;

// "boolean", which PMML has as well, is refused.
constexpr DataType kDataTypes[] = {{u"string", Content::kTexts},
                                   {u"double", Content::kNumbers},
                                   {u"float", Content::kNumbers},
                                   {u"integer", Content::kNumbers},
                                   {u"date", Content::kNumbers},
                                   {u"time", Content::kNumbers},
                                   {u"dateTime", Content::kNumbers},
                                   {u"timeSeconds", Content::kNumbers},
                                   {u"dateDaysSince[0]", Content::kNumbers},
                                   {u"dateDaysSince[1960]", Content::kNumbers},
                                   {u"dateDaysSince[1970]", Content::kNumbers},
                                   {u"dateDaysSince[1980]", Content::kNumbers},
                                   {u"dateTimeSecondsSince[0]", Content::kNumbers},
                                   {u"dateTimeSecondsSince[1960]", Content::kNumbers},
                                   {u"dateTimeSecondsSince[1970]", Content::kNumbers},
                                   {u"dateTimeSecondsSince[1980]", Content::kNumbers},
                                   {nullptr, Content::kNumbers}};  // end mark
static_assert(std::size(kDataTypes) == 17, "sixteen data types and the end mark");

constexpr FieldDialect kDialect = {names::kDataField, names::kDisplayName,  names::kDataType,
                                   names::kOptype,    names::kDisplayValue, kDataTypes};

// Continuous variables have no range but that of their bins; the list gets no data type codes.
class PMMLFill final : public DictionaryFill {
 public:
  PMMLFill(MCVarList& list, const std::vector<std::string>& names, const DOMElement* binDictionary)
      : DictionaryFill(kDialect, list, binDictionary), filter_(names) {}

 private:
  bool Wants(const XMLCh* name) const override { return filter_.Admits(name); }
  int AddContinuous() override { return list_.AddContVar(field_.name, field_.label, field_.role); }

  const NameFilter filter_;
};

}  // namespace

MCStatus MCPMMLParser::FillVarList(MCVarList& list, const std::vector<std::string>& names,
                                   bool binFromTransformations) const {
  if (!status_.IsOK()) return status_;
  if (document_ == nullptr) return Failure(kNoDocument);
  PMMLFill fill(list, names, binFromTransformations ? transformation_dictionary_ : nullptr);
  return fill.AddAll(*data_dictionary_);
}

}  // namespace MCXPrsUtil
