// Up to five documents (split at zero bytes) as the models of the splits: every merge ends in a
// status, what is refused changes nothing, the same again gives the same bytes, documents from
// memory give what files give, and what was written reads back as what was combined.
#include <mccommon/MCVarList.h>
#include <mccommon/MCVariable.h>
#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXSplitPMMLCombiner.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "Check.h"
#include "DomTree.h"
#include "XmlPlatform.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::GetFirstChildElmt;
using MCXPrsUtil::GetNextSiblingElmt;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using Names = std::vector<std::string>;

constexpr int kWriteFailed = 118;
constexpr int kWrongNumber = 126;
constexpr std::size_t kMostDocuments = 5;

// What decides, beside the documents, how they are combined: another document decides anew.
class Choice {
 public:
  explicit Choice(const std::string& text) {
    for (const char c : text) state_ = (state_ ^ static_cast<unsigned char>(c)) * 16777619u;
  }
  std::size_t Below(std::size_t count) {
    state_ = state_ * 1664525u + 1013904223u;
    return (state_ >> 16) % count;
  }

 private:
  std::uint32_t state_ = 2166136261u;
};

struct Model {
  std::string text;
  Names values;
};

std::vector<Model> SplitAtZeros(const std::string& text) {
  std::vector<Model> models;
  std::size_t at = 0;
  while (models.size() < kMostDocuments) {
    const std::size_t end = text.find('\0', at);
    models.push_back({text.substr(at, end - at), {}});
    if (end == std::string::npos) break;
    at = end + 1;
  }
  if (models.size() == 1) models.push_back(models.front());
  return models;
}

// A list that may lack a variable, or have one without a name.
class SplitList : public MCVarList {
 public:
  // One to three variables of different kinds.
  SplitList(std::size_t count, Choice& choice) {
    const auto role = static_cast<IMCVariable::VariableRole>(0);
    Names categories = {"a", "b<&>\"'", " c "};
    if (choice.Below(16) == 0) categories.push_back("\x01");  // XML cannot hold it
    FUZZ_CHECK(AddCatVar("split", "Split", categories, role) == 0);
    if (count > 1) FUZZ_CHECK(AddCatVar("x", "", std::vector<double>{1, 2.5}, role) == 1);
    if (count > 2) FUZZ_CHECK(AddContVar("\xC3\xA4", "\xE6\x97\xA5", role) == 2);
    missing_ = static_cast<int>(choice.Below(32));
    nameless_ = static_cast<int>(choice.Below(32));
  }

  using MCVarList::GetVarAt;
  const IMCVariable* GetVarAt(int index) const override {
    if (index == missing_) return nullptr;
    return index == nameless_ ? &variable_ : MCVarList::GetVarAt(index);
  }

 private:
  int missing_;
  int nameless_;
  MCMTD_NAMESPACE::MCVariable variable_{"", "label", static_cast<IMCVariable::VariableRole>(0)};
};

void ChooseValues(std::vector<Model>& models, std::size_t count, Choice& choice) {
  const std::string values[] = {"a",    "a",       "b<&>\"'", " c ",      "1",
                                "2.5",  "\t\n",    "",        "]]>",      "a b",
                                "\x01", "unknown", "\xC3",    "\xC3\xA4", std::string("a\0b", 3)};
  for (Model& model : models) {
    for (std::size_t i = 0; i < count; ++i) {
      model.values.push_back(values[choice.Below(std::size(values))]);
    }
  }
}

struct Combined {
  std::vector<MCStatus> statuses;
  MCStatus exported;
  int n_models = 0;
  Names diagnostics;
  Names tree;  // of the combined document, before it is written
  std::string bytes;
};

using Adder = MCStatus (*)(MCXSplitPMMLCombiner&, const Model&);

// A path that is the same for every file, as it stands in the findings.
const fuzz::ScratchFile& ModelFile(const std::string& text) {
  static auto& file = *new fuzz::ScratchFile;
  file.SetContent(text);
  return file;
}

// What stands in for the exception that an XML version other than 1.0 and 1.1 gives.
constexpr MCStatus kThrown(-1, false);

MCStatus AddFile(MCXSplitPMMLCombiner& combiner, const Model& model) {
  try {
    const MCStatus status = combiner.AddModel(ModelFile(model.text).GetPath(), model.values);
    FUZZ_CHECK(combiner.GetStatus() == status);
    return status;
  } catch (const xercesc::DOMException&) {
    return kThrown;
  }
}

MCStatus AddDocument(MCXSplitPMMLCombiner& combiner, const Model& model) {
  MCXMLReadWrite reader;
  std::istringstream in(model.text);
  constexpr int kParseFailed = 104;
  try {
    if (!reader.ParseToDOM(in).IsOK() || !reader.IsWellFormed()) return {kParseFailed, false};
  } catch (const xercesc::DOMException&) {
    return kThrown;
  }
  return combiner.ParseSplitModelXML(reader.GetDocument(), reader, model.values);
}

Names TreeOf(MCXSplitPMMLCombiner& combiner) {
  bool created = false;
  const DOMDocument* document = combiner.CreateEmptyMiningModel(created);
  return fuzz::LinesOf(*document);
}

void Add(Combined& result, MCXSplitPMMLCombiner& combiner, const Model& model, Adder add) {
  const int before = combiner.GetNModels();
  const bool had_any = combiner.GetNModels() > 0;
  const Names tree = had_any ? TreeOf(combiner) : Names();
  const MCStatus status = add(combiner, model);
  FUZZ_CHECK(!status.GetFlag());
  FUZZ_CHECK(status.IsOK() || combiner.GetNModels() == before);
  FUZZ_CHECK(combiner.GetNModels() <= before + 1);
  if (had_any && !status.IsOK()) FUZZ_CHECK(TreeOf(combiner) == tree);
  result.statuses.push_back(status);
}

Combined Combine(const std::vector<Model>& models, const MCVarList& splits, Adder add) {
  Combined result;
  MCXSplitPMMLCombiner combiner(splits);
  for (const Model& model : models) Add(result, combiner, model, add);
  Names surplus = models.front().values;
  surplus.push_back("a");
  if (add == AddFile) {
    FUZZ_CHECK(add(combiner, {"<PMML/>", surplus}).GetCode() == kWrongNumber);
    FUZZ_CHECK(combiner.AddModel("", surplus).GetCode() == kWrongNumber);
  }
  result.n_models = combiner.GetNModels();
  result.tree = TreeOf(combiner);
  const fuzz::ScratchFile file;
  result.exported = combiner.ExportMiningModel(file.GetPath());
  FUZZ_CHECK(combiner.GetStatus() == result.exported);
  result.bytes = file.GetContent();
  result.diagnostics = combiner.GetDiagnostics();
  FUZZ_CHECK(combiner.ExportMiningModel("").GetCode() == result.exported.GetCode());
  return result;
}

const DOMElement* SegmentationOf(const DOMDocument& document) {
  const DOMElement* root = document.getDocumentElement();
  const DOMElement* model = root == nullptr ? nullptr : GetFirstChildElmt(*root, "MiningModel");
  return model == nullptr ? nullptr : GetFirstChildElmt(*model, "Segmentation");
}

// An entity is declared in its own document only, as the findings tell.
bool NeedsEntities(const Names& diagnostics) {
  for (const std::string& finding : diagnostics) {
    if (finding.find("entit") != std::string::npos) return true;
  }
  return false;
}

void CheckWritten(const Combined& combined) {
  if (!combined.exported.IsOK()) {
    FUZZ_CHECK(combined.exported.GetCode() == kWriteFailed);
    return;
  }
  if (combined.n_models == 0 || NeedsEntities(combined.diagnostics)) return;
  std::istringstream in(combined.bytes);
  MCXMLReadWrite reader;
  FUZZ_CHECK(reader.ParseToDOM(in).IsOK() && reader.IsWellFormed());
  FUZZ_CHECK(fuzz::LinesOf(*reader.GetDocument()) == combined.tree);
  const DOMElement* segmentation = SegmentationOf(*reader.GetDocument());
  FUZZ_CHECK(segmentation != nullptr);
  int segments = 0;
  for (const DOMElement* e = GetFirstChildElmt(*segmentation, "Segment"); e != nullptr;
       e = GetNextSiblingElmt(*e, "Segment")) {
    ++segments;
  }
  FUZZ_CHECK(segments == combined.n_models);
}

void CheckSame(const Combined& a, const Combined& b) {
  FUZZ_CHECK(a.statuses == b.statuses && a.exported == b.exported);
  FUZZ_CHECK(a.n_models == b.n_models && a.tree == b.tree && a.bytes == b.bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::StartXmlPlatform();
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!fuzz::IsModest(text)) return 0;
  Choice choice(text);
  const std::size_t n_variables = 1 + choice.Below(3);
  const SplitList splits(n_variables, choice);
  std::vector<Model> models = SplitAtZeros(text);
  ChooseValues(models, n_variables, choice);

  const Combined from_files = Combine(models, splits, AddFile);
  CheckWritten(from_files);
  const Combined again = Combine(models, splits, AddFile);
  CheckSame(again, from_files);
  FUZZ_CHECK(again.diagnostics == from_files.diagnostics);
  CheckSame(Combine(models, splits, AddDocument), from_files);
  return 0;
}
