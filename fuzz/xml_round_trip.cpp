// Any bytes as a document: what is well-formed is written, reads back equal, and is written the
// same again; what breaks off is neither hidden nor a danger. The functions that walk and change a
// tree agree with the tree, at every element.
#include <mccommon/MCMissingValue.h>
#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "Check.h"
#include "DomTree.h"
#include "XmlPlatform.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::ToUTF8;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNamedNodeMap;
using xercesc::DOMNode;

constexpr int kWriteFailed = 118;

// ---- Helpers at one element ----

// By the tree alone.
DOMElement* Next(DOMNode* node, const std::string* name) {
  for (; node != nullptr; node = node->getNextSibling()) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    auto* element = static_cast<DOMElement*>(node);
    if (name == nullptr || ToUTF8(element->getTagName()) == *name) return element;
  }
  return nullptr;
}

void CheckNavigation(DOMElement& e) {
  using namespace MCXPrsUtil;
  const std::string name = ToUTF8(e.getTagName());
  FUZZ_CHECK(TagNameEquals(e, name.c_str()) && XStrEqualsUTF8Str(e.getTagName(), name.c_str()));
  FUZZ_CHECK(!TagNameEquals(e, (name + "x").c_str()) && !TagNameEquals(e, ""));
  FUZZ_CHECK(AsElement(e, nullptr) == &e && AsElement(e, name.c_str()) == &e);
  FUZZ_CHECK(AsElement(e, "") == nullptr);
  FUZZ_CHECK(GetFirstChildElmt(e, nullptr) == Next(e.getFirstChild(), nullptr));
  FUZZ_CHECK(GetNextSiblingElmt(e, nullptr) == Next(e.getNextSibling(), nullptr));
  FUZZ_CHECK(GetFirstChildElmt(e, name.c_str()) == Next(e.getFirstChild(), &name));
  FUZZ_CHECK(GetNextSiblingElmt(e, name.c_str()) == Next(e.getNextSibling(), &name));
  FUZZ_CHECK(FindXStrInList(e.getTagName(), {name + "x", name, name}) == 1);
  const std::pair<unsigned, const char*> table[] = {{7, ""}, {8, name.c_str()}, {0, nullptr}};
  FUZZ_CHECK(FindXStrInList(e.getTagName(), table) == 1);
  FUZZ_CHECK(FindXStrInList(nullptr, table) == 0);
  unsigned long index = 9;
  const DOMElement* found = GetFirstChildElmt(e, table, index);
  FUZZ_CHECK(found == Next(e.getFirstChild(), &name) && index == (found == nullptr ? 0u : 1u));
}

void CheckExtensions(DOMElement& e) {
  using namespace MCXPrsUtil;
  const DOMElement* extension = GetFirstChildExtension(e, nullptr);
  if (extension == nullptr) return;
  FUZZ_CHECK(TagNameEquals(*extension, "Extension") && extension->getParentNode() == &e);
  const XMLCh* name = GetAttribute(*extension, "name");
  if (name != nullptr) FUZZ_CHECK(GetFirstChildExtension(e, ToUTF8(name).c_str()) == extension);
  const DOMElement* next = GetNextSiblingExtension(*extension, nullptr);
  FUZZ_CHECK(next != extension);
}

void CheckNumbers(DOMElement& e, const char* name) {
  using namespace MCXPrsUtil;
  double number = 0.5;
  const int as_double = GetDoubleAttribute(e, name, number);
  FUZZ_CHECK(as_double == 0 || as_double == 1);
  FUZZ_CHECK(as_double == 0 || number == 0.5);
  int any = -7;
  const int as_int = GetIntAttribute(e, name, -1, any);
  FUZZ_CHECK(as_int == 0 || any == -7);
  for (const int sign : {0, 1}) {
    int value = -7;
    const int accepted = GetIntAttribute(e, name, sign, value);
    FUZZ_CHECK(value == any);
    FUZZ_CHECK((accepted == 0) == (as_int == 0 && any >= sign));
  }
  if (as_int == 0) FUZZ_CHECK(as_double == 0 && number == any);
}

void CheckAttributes(DOMElement& e) {
  using namespace MCXPrsUtil;
  const DOMNamedNodeMap* attributes = e.getAttributes();
  for (XMLSize_t i = 0; i < attributes->getLength(); ++i) {
    const std::string name = ToUTF8(attributes->item(i)->getNodeName());
    const XMLCh* value = GetAttribute(e, name.c_str());
    FUZZ_CHECK(value == attributes->item(i)->getNodeValue() ||
               ToUTF8(value) == ToUTF8(attributes->item(i)->getNodeValue()));
    FUZZ_CHECK(GetAttribute(static_cast<const DOMNode&>(e), name.c_str()) != nullptr);
    CheckNumbers(e, name.c_str());
  }
  double number = 0.5;
  int integer = 5;
  FUZZ_CHECK(GetAttribute(e, "\xEF\xBF\xBF") == nullptr);
  FUZZ_CHECK(GetDoubleAttribute(e, "\xEF\xBF\xBF", number) == -1 && number == 0.5);
  FUZZ_CHECK(GetIntAttribute(e, "\xEF\xBF\xBF", -1, integer) == -1 && integer == 5);
}

bool AreSame(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

void CheckLists(DOMElement& e) {
  std::vector<double> values = {1.5};
  const bool read = MCXPrsUtil::AssembleDoublesList(e, values);
  if (e.getFirstChild() == nullptr) FUZZ_CHECK(read && values.empty());
  FUZZ_CHECK(read || values.empty() || (values.size() == 1 && values[0] == 1.5));
  std::vector<double> again = {1.5};
  FUZZ_CHECK(MCXPrsUtil::AssembleDoublesList(e, again) == read && AreSame(again, values));
}

// ---- Changes ----

void CheckSetting(DOMElement& e) {
  using namespace MCXPrsUtil;
  const std::string text = ToUTF8(e.getTagName());
  FUZZ_CHECK(SetAttribute(e, "set.here", text.c_str()));
  FUZZ_CHECK(XStrEqualsUTF8Str(GetAttribute(e, "set.here"), text.c_str()));
  FUZZ_CHECK(!SetAttribute(e, "no name", "x") && GetAttribute(e, "no name") == nullptr);
  FUZZ_CHECK(SetAttribute(e, "set.here", 0.1));
  double number = 0;
  FUZZ_CHECK(GetDoubleAttribute(e, "set.here", number) == 0 && number == 0.1);
}

void CheckBuilding(DOMDocument& document, DOMElement& e) {
  using namespace MCXPrsUtil;
  DOMElement* made = CreateElement(document, "made");
  DOMElement* extension = CreateExtension(document, ToUTF8(e.getTagName()).c_str());
  FUZZ_CHECK(made != nullptr && extension != nullptr);
  FUZZ_CHECK(CreateElement(document, "no name") == nullptr);
  DOMElement* first = GetFirstChildElmt(e, nullptr);
  FUZZ_CHECK(InsertElement(e, made, first) && made->getParentNode() == &e);
  FUZZ_CHECK(made->getNextSibling() == first);
  FUZZ_CHECK(!InsertElement(*made, &e, nullptr) && !InsertElement(e, nullptr, nullptr));
  FUZZ_CHECK(!InsertElement(e, extension, &e) && extension->getParentNode() == nullptr);
  FUZZ_CHECK(ReplaceElement(e, extension, made) && made->getParentNode() == nullptr);
  FUZZ_CHECK(ReplaceElement(e, extension, extension) && extension->getParentNode() == &e);
  FUZZ_CHECK(!ReplaceElement(e, made, made) && !ReplaceElement(e, made, nullptr));
  FUZZ_CHECK(GetFirstChildExtension(e, nullptr) != nullptr);
}

// What an entity stands for cannot be changed.
bool IsWritable(const DOMNode* node) {
  for (; node != nullptr; node = node->getParentNode()) {
    if (node->getNodeType() == DOMNode::ENTITY_REFERENCE_NODE) return false;
  }
  return true;
}

void CheckElements(DOMDocument& document) {
  constexpr std::size_t kMostElements = 60;
  std::vector<DOMElement*> elements = fuzz::ElementsOf(document.getDocumentElement());
  if (elements.size() > kMostElements) elements.resize(kMostElements);
  const std::vector<std::string> before = fuzz::LinesOf(document);
  for (DOMElement* e : elements) {
    CheckNavigation(*e);
    CheckExtensions(*e);
    CheckAttributes(*e);
    CheckLists(*e);
  }
  FUZZ_CHECK(fuzz::LinesOf(document) == before);
  for (DOMElement* e : elements) {
    if (!IsWritable(e)) continue;
    CheckSetting(*e);
    CheckBuilding(document, *e);
  }
}

// ---- There and back ----

// What stands in for the exception that an XML version other than 1.0 and 1.1 gives.
constexpr MCStatus kThrown(-1, false);

template <class Source>
MCStatus ParseOrThrow(MCXMLReadWrite& reader, Source&& source) {
  try {
    return reader.ParseToDOM(source);
  } catch (const xercesc::DOMException&) {
    return kThrown;
  }
}

MCStatus Parse(MCXMLReadWrite& reader, const std::string& bytes) {
  std::istringstream in(bytes);
  const MCStatus status = ParseOrThrow(reader, in);
  FUZZ_CHECK(status.IsOK() == (reader.GetDocument() != nullptr));
  FUZZ_CHECK(!reader.IsWellFormed() || (status.IsOK() && reader.GetParseError().empty()));
  FUZZ_CHECK(status.IsOK() ? reader.GetXercesMessage().empty() : !reader.IsWellFormed());
  return status;
}

// Empty if it could not be written.
std::string Written(const MCXMLReadWrite& reader) {
  const fuzz::ScratchFile file;
  const MCStatus status = reader.WriteFromDOM(file.GetPath(), nullptr);
  FUZZ_CHECK(status.IsOK() || status.GetCode() == kWriteFailed);
  FUZZ_CHECK(!status.IsOK() || reader.GetXercesMessage().empty());
  return status.IsOK() ? file.GetContent() : "";
}

// U+0085 and U+2028, the line ends that XML 1.1 adds: the serializer writes them as they are, and
// they are read as others.
bool HoldsLineEndOfXml11(const DOMDocument& document) {
  if (ToUTF8(document.getXmlVersion()) != "1.1") return false;
  for (const std::string& line : fuzz::LinesOf(document)) {
    for (const char* end : {"{133}", "{8232}"}) {
      if (line.find(end) != std::string::npos) return true;
    }
  }
  return false;
}

// U+FFFD, which stands for bytes that are no character of the document's encoding: the serializer
// gives up without a word where a name has it, since it cannot write it.
bool HoldsReplacedName(const DOMDocument& document) {
  for (const std::string& line : fuzz::LinesOf(document)) {
    const bool isText = line.front() == '\'';
    if (!isText && line.substr(0, line.find('=')).find("{65533}") != std::string::npos) return true;
  }
  return false;
}

void CheckWayBack(const MCXMLReadWrite& reader) {
  const std::string bytes = Written(reader);
  FUZZ_CHECK(Written(reader) == bytes);
  if (bytes.empty() || !reader.IsWellFormed() || HoldsReplacedName(*reader.GetDocument())) return;
  MCXMLReadWrite other;
  FUZZ_CHECK(Parse(other, bytes).IsOK() && other.IsWellFormed());
  if (HoldsLineEndOfXml11(*reader.GetDocument())) return;
  FUZZ_CHECK(fuzz::LinesOf(*other.GetDocument()) == fuzz::LinesOf(*reader.GetDocument()));
  FUZZ_CHECK(Written(other) == bytes);
}

void CheckFile(const MCXMLReadWrite& reader, const MCStatus& parsed, const std::string& bytes) {
  fuzz::ScratchFile file;
  file.SetContent(bytes);
  MCXMLReadWrite other;
  FUZZ_CHECK(ParseOrThrow(other, file.GetPath()) == parsed);
  FUZZ_CHECK(other.IsWellFormed() == reader.IsWellFormed());
  if (!parsed.IsOK()) return;
  FUZZ_CHECK(fuzz::LinesOf(*other.GetDocument()) == fuzz::LinesOf(*reader.GetDocument()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::StartXmlPlatform();
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  if (!fuzz::IsModest(bytes)) return 0;
  MCXMLReadWrite reader;
  const MCStatus parsed = Parse(reader, bytes);
  CheckFile(reader, parsed, bytes);
  if (!parsed.IsOK()) return 0;
  CheckWayBack(reader);
  CheckElements(*reader.GetDocument());
  (void)Written(reader);  // as it was changed
  return 0;
}
