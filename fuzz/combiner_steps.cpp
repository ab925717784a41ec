// A script of the combiner's single steps, with elements of any document and of the combined one in
// every place: each returns, sources stay as they are, counts follow from what was added, and the
// document that comes of it can be written or is refused.
#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXSplitPMMLCombiner.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "Check.h"
#include "DomTree.h"
#include "Input.h"
#include "XmlPlatform.h"

namespace {

using fuzz::Input;
using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using Names = std::vector<std::string>;

constexpr std::size_t kMostSteps = 24;
constexpr std::size_t kMostElements = 1500;  // steps can double the document
constexpr int kMissing = 108;
constexpr int kWriteFailed = 118;
constexpr int kDiffers = 124;
constexpr int kIsMiningModel = 125;
constexpr int kMismatch = 126;

class Script {
 public:
  Script(const MCVarList& splits, MCXMLReadWrite& source, Input& in)
      : splits_(splits), source_(source), in_(in), combiner_(splits) {}

  void Run() {
    Names before = SourceLines();
    for (std::size_t i = 0; i < kMostSteps && !in_.IsEmpty(); ++i) {
      LookUp();
      if (combined_.size() > kMostElements) break;
      source_is_destination_ = false;
      Step(in_.Below(9));
      if (source_is_destination_) before = SourceLines();  // it may get attributes
      FUZZ_CHECK(SourceLines() == before);
    }
    LookUp();
    CheckCounts();
    Export();
  }

 private:
  Names SourceLines() const {
    return source_.GetDocument() == nullptr ? Names() : fuzz::LinesOf(*source_.GetDocument());
  }

  DOMDocument* Document() {
    bool created = true;
    DOMDocument* document = combiner_.CreateEmptyMiningModel(created);
    FUZZ_CHECK(document != nullptr && created != has_document_);
    has_document_ = true;
    return document;
  }

  // The elements that there are to choose from.
  void LookUp() {
    combined_.clear();
    if (has_document_) combined_ = fuzz::ElementsOf(Document()->getDocumentElement());
    sources_.clear();
    if (source_.GetDocument() != nullptr) {
      sources_ = fuzz::ElementsOf(source_.GetDocument()->getDocumentElement());
    }
  }

  // ---- Choices ----

  DOMElement* Element() {
    const unsigned choice = in_.Byte();
    const std::vector<DOMElement*>& from = choice % 2 == 0 ? combined_ : sources_;
    if (choice % 16 == 15 || from.empty()) return nullptr;
    return from[in_.Byte() % from.size()];
  }

  // A place to put something; sometimes no element.
  DOMNode* Node() {
    DOMElement* element = Destination();
    const bool takes_child = in_.Byte() % 16 == 15;
    return takes_child && element != nullptr ? element->getFirstChild() : element;
  }

  DOMElement* Destination() {
    DOMElement* element = Element();
    if (element != nullptr && element->getOwnerDocument() == source_.GetDocument()) {
      source_is_destination_ = true;
    }
    return element;
  }

  DOMDocument* SourceDocument() { return in_.Byte() % 8 == 7 ? nullptr : source_.GetDocument(); }

  std::string Value() {
    constexpr const char* kValues[] = {"a", "b", "1", "2.5", "", "<&\"", "]]>", "\x01", "\xC3\xA4"};
    return kValues[in_.Below(9)];
  }

  Names Values() {
    Names values;
    for (unsigned i = in_.Below(4); i > 0; --i) values.push_back(Value());
    return values;
  }

  int Position() { return static_cast<int>(in_.Below(5)) - 1; }

  // ---- Steps ----

  void Step(unsigned which) {
    switch (which) {
      case 0:
        return Ask();
      case 1:
        return TakeIn();
      case 2:
        return Copy();
      case 3:
        return Create();
      case 4:
        return InsertSplits();
      case 5:
        return Enumerate();
      case 6:
        return Merge();
      case 7:
        return Insert();
      default:
        return in_.Byte() % 8 == 0 ? Export() : static_cast<void>(Document());
    }
  }

  void Ask() {
    const DOMElement* e = Element();
    const DOMElement* parts[] = {combiner_.GetStandardModel(e), combiner_.GetDataDict(e),
                                 combiner_.GetTransDict(e)};
    for (const DOMElement* part : parts) FUZZ_CHECK(part == nullptr || part->getParentNode() == e);
    const DOMElement* schema = combiner_.GetMiningSchema(e);
    FUZZ_CHECK(schema == nullptr || (has_document_ && schema->getParentNode() == e));
    std::string name = "preset";
    const MCStatus named = combiner_.GetFunctionNameAtt(e, name);
    FUZZ_CHECK(named.IsOK() || name == "preset");
    FUZZ_CHECK(named.IsOK() || named.GetCode() == kIsMiningModel || named.GetCode() == kMissing);
    FUZZ_CHECK((combiner_.IsMiningModel(e).GetCode() == kIsMiningModel) ==
               (named.GetCode() == kIsMiningModel));
    const MCStatus fits = combiner_.IsConsistentFunctionName(e);
    FUZZ_CHECK(fits.IsOK() || fits == named || fits.GetCode() == kDiffers);
    const Names values = Values();
    const MCStatus known = combiner_.IsEqualValues(values);
    FUZZ_CHECK(known.IsOK() || known.GetCode() == kMismatch);
    FUZZ_CHECK(combiner_.IsEqualValues(values) == known);
    FUZZ_CHECK(combiner_.GetPMML(nullptr) == nullptr);
  }

  void TakeIn() {
    DOMDocument* document = SourceDocument();
    const Names values = Values();
    const int before = combiner_.GetNModels();
    MCStatus status;
    switch (in_.Below(3)) {
      case 0:
        status = combiner_.ParseSplitModelXML(document, source_, values);
        has_document_ = has_document_ || document != nullptr;
        break;
      case 1:
        status = combiner_.FillCommonToMiningModel(document, values);
        break;
      default:
        status = combiner_.MergeModelToMiningModel(document, values);
    }
    FUZZ_CHECK(status.IsOK() || status.GetCode() == kDiffers ||
               status.GetCode() == kIsMiningModel || status.GetCode() == kMissing);
    FUZZ_CHECK(combiner_.GetNModels() <= before + 1);
    FUZZ_CHECK(status.IsOK() || combiner_.GetNModels() == before);
  }

  void Copy() {
    const DOMElement* from = Element();
    DOMNode* to = Node();
    const bool deep = in_.Flag();
    const DOMNode* copy = nullptr;
    switch (in_.Below(5)) {
      case 0:
        copy = combiner_.CopyPMML(from, deep);
        to = nullptr;
        break;
      case 1:
        copy = combiner_.CopyHeader(from, to, deep);
        break;
      case 2:
        copy = combiner_.CopyDataDict(from, to, deep);
        break;
      case 3:
        copy = combiner_.CopyMiningSchema(from, to, deep);
        break;
      default:
        copy = combiner_.CopyTransDictToLocal(from, Destination());
        return;
    }
    if (copy == nullptr) return;
    FUZZ_CHECK(has_document_ && copy->getOwnerDocument() == Document());
    FUZZ_CHECK(to == nullptr || (copy->getParentNode() == to && copy == to->getLastChild()));
  }

  void Create() {
    DOMNode* parent = Node();
    const DOMElement* made = in_.Flag() ? combiner_.CreateMiningModel(parent, Value())
                                        : combiner_.CreateSegmentation(parent);
    FUZZ_CHECK(made == nullptr || made->getParentNode() == parent);
  }

  void InsertSplits() {
    switch (in_.Below(4)) {
      case 0: {
        DOMNode* dictionary = Node();
        return combiner_.InsertSplitVarsToMiningModel(dictionary, Node());
      }
      case 1: {
        DOMElement* dictionary = Destination();
        return combiner_.InsertDataFieldElem(dictionary, Position());
      }
      case 2: {
        DOMElement* schema = Destination();
        return combiner_.InsertMiningFieldElem(schema, Position());
      }
      default:
        return DescribeSplits();
    }
  }

  void DescribeSplits() {
    if (in_.Byte() % 8 == 0) combiner_.InitSplitVarMetadata(splits_);
    if (in_.Byte() % 8 == 0) combiner_.InitStandardPMMLModels();
    const int position = Position();
    const IMCVariable* variable = splits_.GetVarAt(position);
    std::string name = "n";
    std::string label = "l";
    std::string optype = "o";
    std::string type = "t";
    FUZZ_CHECK(combiner_.GetSplitVariableInfo(variable, name, label, optype, type) ==
               (variable != nullptr));
    if (variable == nullptr) {
      FUZZ_CHECK(name == "n" && label == "l" && optype == "o" && type == "t");
    } else {
      FUZZ_CHECK(combiner_.GetSplitVarName(position) == name);
    }
  }

  // Lists are appended to.
  void Enumerate() {
    const DOMElement* e = Element();
    std::vector<DOMNode*> nodes = {nullptr};
    Names names = {"preset"};
    combiner_.EnumDataFields(e, nodes, names);
    combiner_.EnumValuesOfDataField(e, nodes, names);
    FUZZ_CHECK(nodes.front() == nullptr && names.front() == "preset");
    FUZZ_CHECK(nodes.size() >= names.size());
    std::vector<const DOMElement*> elements = {nullptr};
    Names texts = {"preset"};
    combiner_.ReadNamesOfDataFields(e, elements, texts);
    combiner_.ReadNamesOfMiningFields(e, elements, texts);
    FUZZ_CHECK(elements.front() == nullptr && texts.front() == "preset");
    FUZZ_CHECK(elements.size() == texts.size());
    for (std::size_t i = 1; i < elements.size(); ++i) {
      FUZZ_CHECK(elements[i]->getParentNode() == e);
    }
  }

  void Merge() {
    const DOMElement* from = Element();
    DOMNode* to = Node();
    switch (in_.Below(6)) {
      case 0:
        return combiner_.UpdateDataDict(from, to);
      case 1:
        return combiner_.UpdateMiningSchema(from, to);
      case 2:
        return combiner_.UpdateNumOfDataFields(to, Position());
      case 3:
        return static_cast<void>(combiner_.InsertDataField(from, to));
      case 4:
        return static_cast<void>(combiner_.InsertMiningField(from, to));
      default: {
        Names list = {"preset"};
        const DOMNode* copy = combiner_.InsertValueOfDataField(from, to, list);
        FUZZ_CHECK(list.size() == 1 || (list.size() == 2 && copy != nullptr));
        FUZZ_CHECK(copy == nullptr || copy->getParentNode() == to);
      }
    }
  }

  void Insert() {
    DOMNode* parent = Node();
    const int before = combiner_.GetNModels();
    switch (in_.Below(4)) {
      case 0: {
        const DOMElement* model = Element();
        const DOMElement* dictionary = Element();
        const DOMNode* segment = combiner_.InsertSegment(parent, model, dictionary, Values());
        FUZZ_CHECK(combiner_.GetNModels() == before + (segment == nullptr ? 0 : 1));
        return;
      }
      case 1: {
        const Names values = Values();
        const DOMNode* predicate = combiner_.InsertPredicate(parent, values);
        FUZZ_CHECK(predicate == nullptr || !values.empty());
        return;
      }
      case 2: {
        const int position = Position();
        const std::string value = Value();
        const DOMElement* predicate = combiner_.InsertSimplePredicate(parent, position, value);
        FUZZ_CHECK(predicate == nullptr || !value.empty());
        return;
      }
      default: {
        const Names values = Values();
        const DOMElement* predicate = combiner_.InsertCompoundPredicate(parent, values);
        FUZZ_CHECK(predicate == nullptr || values.size() > 1);
      }
    }
  }

  void Export() {
    const fuzz::ScratchFile file;
    const fuzz::ScratchFile other;
    MCStatus written;
    if (has_document_) written = combiner_.WriteDocToPMMLFile(Document(), other.GetPath());
    const MCStatus status = combiner_.ExportMiningModel(file.GetPath());
    FUZZ_CHECK(status.IsOK() || status.GetCode() == kWriteFailed);
    if (has_document_) FUZZ_CHECK(status == written && file.GetContent() == other.GetContent());
    has_document_ = false;
    LookUp();
  }

  void CheckCounts() {
    FUZZ_CHECK(combiner_.GetNModels() >= 0);
    std::ostringstream out;
    combiner_.Display(out);
    FUZZ_CHECK(out.str().empty());
    for (const std::string& finding : combiner_.GetDiagnostics()) FUZZ_CHECK(!finding.empty());
  }

  const MCVarList& splits_;
  MCXMLReadWrite& source_;
  Input& in_;
  MCXSplitPMMLCombiner combiner_;
  bool has_document_ = false;
  bool source_is_destination_ = false;
  std::vector<DOMElement*> combined_;
  std::vector<DOMElement*> sources_;
};

}  // namespace

// The document ends at the first zero byte, the script is what follows.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::StartXmlPlatform();
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t cut = text.find('\0');
  if (cut == std::string::npos || !fuzz::IsModest(text)) return 0;
  MCXMLReadWrite source;
  std::istringstream document(text.substr(0, cut));
  try {
    if (!source.ParseToDOM(document).IsOK()) return 0;
  } catch (const xercesc::DOMException&) {
    return 0;  // an XML version that there is not
  }
  MCVarList splits;
  const auto role = static_cast<IMCVariable::VariableRole>(0);
  FUZZ_CHECK(splits.AddCatVar("split", "Split", Names{"a", "b"}, role) == 0);
  FUZZ_CHECK(splits.AddCatVar("x", "", std::vector<double>{1, 2.5}, role) == 1);
  Input in(data + cut + 1, size - cut - 1);
  Script(splits, source, in).Run();
  return 0;
}
