#include "DataModelDescription.h"

#include <fmt/format.h>

#include <sstream>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "DomText.h"
#include "FieldChoice.h"
#include "StatusText.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXMLReadWrite.h"

namespace examples {
namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::MCDataModelParser;
using xercesc::DOMElement;

constexpr int kOtherDocument = 105;
constexpr int kAttributeMissing = 108;
constexpr int kBadAttribute = 109;
constexpr int kRefused = 111;
constexpr int kElementMissing = 113;
// Ranges are given to those who would cut them into parts, of which there are at least two.
constexpr int kRangeCount = 2;

std::string FieldText(const DOMElement& field, const MCStatus& status) {
  const auto storage = AttributeText(field, "storage");
  if (status.GetCode() == kAttributeMissing) {
    for (const char* name : {"name", "storage", "measure"}) {
      if (!AttributeText(field, name)) return fmt::format("it has no {}", name);
    }
  }
  if (status.GetCode() == kBadAttribute && storage) {
    return fmt::format("the storage \"{}\" cannot be read", *storage);
  }
  if (status.GetCode() == kRefused) {
    return "it was refused: its name is empty or used twice, or it is a second frequency weight";
  }
  return StatusText(status.GetCode());
}

// The reader tells only how far it came: which field that is, the document tells.
Problem FieldProblem(const std::string& text, std::size_t index, const MCStatus& status) {
  const std::string number = fmt::format("number {}", index + 1);
  Problem problem{status.GetCode(), number, StatusText(status.GetCode()), {}, {}, ""};
  MCXPrsUtil::MCXMLReadWrite reader;
  std::istringstream in(text);
  if (!reader.ParseToDOM(in).IsOK()) return problem;
  const DOMElement* root = reader.GetDocument()->getDocumentElement();
  const DOMElement* fields = GetFirstChildElmt(*root, "Fields");
  const DOMElement* field = fields == nullptr ? nullptr : GetFirstChildElmt(*fields, "Field");
  for (; field != nullptr && index > 0; --index) field = GetNextSiblingElmt(*field, "Field");
  if (field == nullptr) return problem;
  const std::string name = AttributeText(*field, "name").value_or("");
  if (!name.empty()) problem.field = name;
  problem.text = FieldText(*field, status) + "; the fields behind it cannot be read";
  return problem;
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
  if (!status.IsOK()) description.problems.push_back(FieldProblem(text, list.Size(), status));
  description.variables = DescribeVariables(list);
  AddRoles(list, description.variables);
  ChooseFields(options, description);
  return true;
}

}  // namespace examples
