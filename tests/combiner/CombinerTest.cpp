#include "combiner/CombinerTest.h"

#include <unistd.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>
#include <xercesc/util/XMLString.hpp>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "xml/XercesPtr.h"

namespace combiner_test {
namespace {

// A string that the XML library allocated.
struct StringRelease {
  void operator()(XMLCh* text) const { xercesc::XMLString::release(&text); }
};

}  // namespace

using MCMTD_NAMESPACE::IMCVariable;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::ToUTF16;
using MCXPrsUtil::ToUTF8;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

std::string Pmml::Dictionary() const { return "<DataDictionary>" + fields + "</DataDictionary>"; }

std::string Pmml::Model() const {
  return "<" + model_tag + " " + model_attributes + "><MiningSchema>" + schema + "</MiningSchema>" +
         body + "</" + model_tag + ">";
}

std::string Pmml::Text() const {
  return "<PMML version=\"" + version + "\">" + header + Dictionary() + transformations + Model() +
         "</PMML>";
}

std::string Field(const std::string& name, const std::vector<std::string>& values) {
  std::string text = "<DataField dataType=\"string\" name=\"" + name + "\" optype=\"categorical\">";
  for (const std::string& value : values) text += "<Value value=\"" + value + "\"/>";
  return text + "</DataField>";
}

FakeVariable::FakeVariable(std::string variable_name, int variable_kind,
                           std::vector<std::string> variable_values)
    : name(std::move(variable_name)),
      label("Label of " + name),
      kind(variable_kind),
      values(std::move(variable_values)),
      n_categories(static_cast<int>(values.size())) {}

std::string FakeVariable::GetValueText(int index) const {
  return values.at(static_cast<std::size_t>(index));
}

IMCVariable* FakeVarList::GetVarAt(int index) {
  const bool is_inside = index >= 0 && static_cast<std::size_t>(index) < variables.size();
  return is_inside ? variables[static_cast<std::size_t>(index)].get() : nullptr;
}

const IMCVariable* FakeVarList::GetVarAt(int index) const {
  return const_cast<FakeVarList*>(this)->GetVarAt(index);
}

void FakeVarList::Add(const std::string& name, const std::vector<std::string>& values) {
  variables.push_back(std::make_unique<FakeVariable>(name, 3, values));
}

OwnedCombiner::~OwnedCombiner() {
  static_cast<void>(ExportMiningModel(""));  // writes nothing, releases the document
}

DOMDocument* OwnedCombiner::Document() {
  bool created = false;
  return CreateEmptyMiningModel(created);
}

CombinerTest::CombinerTest()
    : directory_(std::filesystem::path(testing::TempDir()) /
                 ("mcx_combiner_" + std::to_string(getpid()))) {
  std::filesystem::create_directories(directory_);
}

CombinerTest::~CombinerTest() {
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

std::string CombinerTest::PathOf(const std::string& name) const {
  return (directory_ / name).string();
}

std::string CombinerTest::Write(const std::string& name, const std::string& text) const {
  const std::string path = PathOf(name);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::string CombinerTest::Write(const std::string& name, const Pmml& pmml) const {
  return Write(name, pmml.Text());
}

DOMDocument* CombinerTest::Parse(const std::string& text) {
  readers_.push_back(std::make_unique<MCXMLReadWrite>());
  std::istringstream in(text);
  EXPECT_TRUE(readers_.back()->ParseToDOM(in).IsOK()) << text;
  EXPECT_TRUE(readers_.back()->IsWellFormed()) << readers_.back()->GetParseError() << "\n" << text;
  return readers_.back()->GetDocument();
}

DOMElement* CombinerTest::ParseRoot(const std::string& text) {
  return Parse(text)->getDocumentElement();
}

MCCommon::MCStatus CombinerTest::Add(MCXPrsUtil::MCXSplitPMMLCombiner& combiner, const Pmml& pmml,
                                     const std::vector<std::string>& values) {
  return combiner.AddModel(Write("model" + std::to_string(n_files_++) + ".pmml", pmml), values);
}

std::string TextOf(const DOMNode* node) {
  if (node == nullptr) return "(null)";
  auto* implementation = dynamic_cast<xercesc::DOMImplementationLS*>(
      xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS"));
  const MCXPrsUtil::XercesPtr<xercesc::DOMLSSerializer> serializer(
      implementation->createLSSerializer());
  serializer->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMXMLDeclaration, false);
  const std::unique_ptr<XMLCh, StringRelease> text(serializer->writeToString(node));
  return ToUTF8(text.get());
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::string> ChildAttributes(const DOMElement* parent, const std::string& tag,
                                         const std::string& attribute) {
  std::vector<std::string> found;
  if (parent == nullptr) return {"(no parent)"};
  for (const DOMElement* child = MCXPrsUtil::GetFirstChildElmt(*parent, tag.c_str());
       child != nullptr; child = MCXPrsUtil::GetNextSiblingElmt(*child, tag.c_str())) {
    found.push_back(AttributeOf(child, attribute));
  }
  return found;
}

DOMElement* FindElement(DOMDocument* document, const std::string& tag) {
  if (document == nullptr) return nullptr;
  return static_cast<DOMElement*>(
      document->getElementsByTagName(ToUTF16(tag.c_str()).data())->item(0));
}

std::string AttributeOf(const DOMElement* element, const std::string& name) {
  if (element == nullptr) return "(no element)";
  const XMLCh* value = MCXPrsUtil::GetAttribute(*element, name.c_str());
  return value == nullptr ? "(absent)" : ToUTF8(value);
}

}  // namespace combiner_test
