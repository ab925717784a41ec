// Combining split models and exporting the result, against a hand-written program.

#include <mccommon/MCVarList.h>
#include <mcxprsutil/MCXSplitPMMLCombiner.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "BareCombiner.h"
#include "Cases.h"
#include "Documents.h"
#include "Suite.h"

namespace bench {
namespace {

// Puts values that no other document has into the first field.
std::string WithNewValues(std::string pmml, std::size_t document, std::size_t count) {
  std::string values;
  for (std::size_t i = 0; i < count; ++i) {
    values += "<Value value=\"new " + std::to_string(document) + '.' + std::to_string(i) + "\"/>";
  }
  return pmml.insert(pmml.find("</DataField>"), values);
}

struct SplitModels {
  SplitModels(std::size_t count, PmmlShape shape, std::size_t newValues = 0) {
    split.name = "site";
    split.label = "Measuring site";
    for (std::size_t i = 0; i < count; ++i) {
      shape.treeSeed = 1000 + i;
      paths.push_back(directory.PathOf(std::to_string(i) + ".pmml"));
      split.values.push_back("S" + std::to_string(i * 7919 % 100003));
      WriteFile(paths.back(), WithNewValues(MakePmml(shape), i, newValues));
    }
  }

  TempDirectory directory;
  SplitVariable split;
  std::vector<std::string> paths;
};

SplitVariable FirstValues(SplitVariable split, std::size_t count) {
  split.values.resize(count);
  return split;
}

void Require(const MCCommon::MCStatus& status) {
  if (!status.IsOK()) throw std::runtime_error("status " + std::to_string(status.GetCode()));
}

void Combine(const SplitModels& models, std::size_t count, const std::string& path) {
  const SplitVariable split = FirstValues(models.split, count);
  MCMTD_NAMESPACE::MCVarList list;
  list.AddCatVar(split.name, split.label, split.values,
                 static_cast<MCMTD_NAMESPACE::IMCVariable::VariableRole>(0));
  MCXPrsUtil::MCXSplitPMMLCombiner combiner(list);
  for (std::size_t i = 0; i < count; ++i)
    Require(combiner.AddModel(models.paths[i], {split.values[i]}));
  Require(combiner.ExportMiningModel(path));
}

void CombineByHand(const SplitModels& models, std::size_t count, BareCombiner::Merge merge,
                   const std::string& path) {
  BareCombiner combiner(FirstValues(models.split, count), merge);
  for (std::size_t i = 0; i < count; ++i) combiner.Add(models.paths[i], models.split.values[i]);
  combiner.Export(path);
}

Variant Ours(const std::shared_ptr<SplitModels>& models, std::size_t count) {
  const std::string path = models->directory.PathOf("ours." + std::to_string(count));
  return {"the combiner", [=] { Combine(*models, count, path); }, [=] { return ReadFile(path); }};
}

Variant ByHand(const std::shared_ptr<SplitModels>& models, std::size_t count,
               BareCombiner::Merge merge) {
  const bool merges = merge == BareCombiner::Merge::kDictionaryValues;
  const std::string path = models->directory.PathOf("floor");
  return {merges ? "hand-written program" : "the same without merging",
          [=] { CombineByHand(*models, count, merge, path); }, [=] { return ReadFile(path); }};
}

// Our own time for fewer models: shows how the time grows.
Variant Fewer(const std::shared_ptr<SplitModels>& models, std::size_t count) {
  Variant variant = Ours(models, count);
  variant.name = std::to_string(count) + " models";
  variant.result = nullptr;
  return variant;
}

std::shared_ptr<SplitModels> MakeTenKilobyteModels(std::size_t count) {
  return std::make_shared<SplitModels>(count, PmmlShape{8, 4, 10 << 10, 11, 0, true});
}

Comparison ManyModels(std::size_t count) {
  auto models = MakeTenKilobyteModels(count);
  Comparison comparison;
  comparison.memoryFactor = 1.05;
  comparison.ours = Ours(models, count);
  comparison.peers = {{ByHand(models, count, BareCombiner::Merge::kDictionaryValues), Limit{0.95}},
                      {Fewer(models, count / 4), Limit{4.3}}};
  return comparison;
}

Comparison Growth(std::size_t count) {
  auto models = MakeTenKilobyteModels(count);
  const Variant floor = ByHand(models, count, BareCombiner::Merge::kDictionaryValues);
  Comparison comparison;
  comparison.ours = Ours(models, count);
  comparison.peers = {{Fewer(models, count / 4), Limit{4.3}}};
  comparison.expected = [floor] {
    floor.run();
    return floor.result();
  };
  return comparison;
}

// Every model brings values of its own, so that one field of the combined dictionary grows long.
Comparison GrowingField(std::size_t count) {
  constexpr std::size_t kNewValues = 40;
  const PmmlShape shape{8, 4, 10 << 10, 11, 0, true};
  auto models = std::make_shared<SplitModels>(count, shape, kNewValues);
  Comparison comparison;
  comparison.ours = Ours(models, count);
  comparison.peers = {{ByHand(models, count, BareCombiner::Merge::kDictionaryValues), Limit{1.08}},
                      {Fewer(models, count / 4), Limit{4.3}}};
  return comparison;
}

// The dictionaries are all alike, so that doing without the merge gives the same document.
Comparison WideModels(std::size_t count) {
  const PmmlShape shape{200, 8, 120 << 10, 12, 0, false};
  auto models = std::make_shared<SplitModels>(count, shape);
  Comparison comparison;
  comparison.memoryFactor = 1.05;
  comparison.ours = Ours(models, count);
  comparison.peers = {{ByHand(models, count, BareCombiner::Merge::kNone), Limit{1.08}},
                      {Fewer(models, count / 4), Limit{4.3}}};
  return comparison;
}

}  // namespace

void AddCombinerCases(Suite& suite) {
  suite.Add("combine", "combine and export", "1000 models of 10 KB",
            [] { return ManyModels(1000); });
  suite.Add("combine", "combine and export", "4000 models of 10 KB", [] { return Growth(4000); });
  suite.Add("combine", "combine and export", "2000 models, 40 new values each",
            [] { return GrowingField(2000); });
  suite.Add("combine", "combine and export", "100 models of 200 fields",
            [] { return WideModels(100); });
}

}  // namespace bench
