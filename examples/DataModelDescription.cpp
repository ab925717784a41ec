#include "DataModelDescription.h"

#include <fmt/format.h>

#include <sstream>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "DomText.h"
#include "FieldChoice.h"
#include "FieldProblem.h"
#include "StatusText.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCXMLReadWrite.h"

namespace examples {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using xercesc::DOMElement;

constexpr int kOtherDocument = 105;
constexpr int kAttributeMissing = 108;
constexpr int kBadAttribute = 109;
constexpr int kRefused = 111;
constexpr int kElementMissing = 113;
// Ranges are given to those who would cut them into parts, of which there are at least two.
constexpr int kRangeCount = 2;

std::string FieldText(const DOMElement& field, int code) {
  if (code == kAttributeMissing) {
    std::string text = MissingAttributeText(field, {"name", "storage", "measure"});
    if (!text.empty()) return text;
  }
  if (code == kBadAttribute) {
    return fmt::format("the storage \"{}\" cannot be read",
                       AttributeText(field, "storage").value_or(""));
  }
  if (code == kRefused) {
    return "it was refused: its name is empty or used twice, or it is a second frequency weight";
  }
  return StatusText(code);
}

// The reader keeps its document to itself: a second parse finds the field.
Problem FieldProblem(const std::string& text, std::size_t index, int code) {
  MCXPrsUtil::MCXMLReadWrite reader;
  std::istringstream in(text);
  if (!reader.ParseToDOM(in).IsOK()) return StoppingField("", index, code, StatusText(code));
  const DOMElement& root = *reader.GetDocument()->getDocumentElement();
  const DOMElement* field = FieldAt(root, "Fields", "Field", index);
  return field == nullptr ? StoppingField("", index, code, StatusText(code))
                          : StoppingField(NameOf(*field), index, code, FieldText(*field, code));
}

}  // namespace

bool DescribeDataModel(const std::string& text, const DescribeOptions& options,
                       DocumentDescription& description) {
  MCDataModelParser parser;
  const MCStatus parsed = parser.ParseToDOM(text);
  if (parsed.GetCode() == kOtherDocument) return false;
  description.kind = DocumentKind::kDataModel;
  if (!parsed.IsOK()) {
    const bool noFields = parsed.GetCode() == kElementMissing;
    description.problems.push_back(
        {parsed.GetCode(),
         "",
         noFields ? "the data model has no Fields" : StatusText(parsed.GetCode()),
         {},
         {},
         ""});
    return true;
  }
  MCVarList list;
  const MCStatus status = parser.FillVarList(list, false, true, kRangeCount);
  if (!status.IsOK()) {
    description.problems.push_back(FieldProblem(text, list.Size(), status.GetCode()));
  }
  description.variables = DescribeVariables(list);
  AddRoles(list, description.variables);
  ChooseFields(options, description);
  return true;
}

}  // namespace examples
