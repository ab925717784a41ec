// The proof that a combined document predicts what the models of the splits predict: every row of
// the sample data, scored with the combined document, against the prediction that the program made
// which had fitted the trees. Numbers must be the same doubles, to the last bit.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "reference/CsvFile.h"
#include "reference/TreeScorer.h"

namespace {

using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using reference::CsvTable;
using reference::DataRow;
using reference::Prediction;
using reference::TreeScorer;

using Values = std::vector<std::string>;

struct DataSet {
  const char* folder;
  bool numericSplit;    // the split variable's categories are numbers
  std::size_t splits;   // how many trees and
  std::size_t rows;     // rows there must be, so that no test passes on missing data
  std::size_t classes;  // 0: regression
  bool derivesFields;   // in a TransformationDictionary
};

std::ostream& operator<<(std::ostream& out, const DataSet& set) { return out << set.folder; }

constexpr DataSet kDataSets[] = {
    {"iris", false, 3, 150, 0, false},   {"airquality", true, 5, 153, 0, true},
    {"co2", false, 4, 84, 0, false},     {"titanic", false, 4, 2201, 2, false},
    {"infert", false, 3, 248, 2, false},
};

const std::string kProbability = "probability_";

struct Split {
  Values values;
  std::string model;  // path
};

struct Manifest {
  std::vector<std::string> variables;
  std::vector<Split> splits;
};

std::filesystem::path Folder(const DataSet& set) {
  return std::filesystem::path(MCX_EXAMPLE_DATA) / set.folder;
}

CsvTable ReadTable(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return reference::ReadCsv(in);
}

Manifest ReadManifest(const DataSet& set) {
  const CsvTable table = ReadTable(Folder(set) / "manifest.csv");
  Manifest manifest;
  manifest.variables.assign(table.columns.begin(), table.columns.end() - 1);
  for (const Values& record : table.records) {
    manifest.splits.push_back(
        {Values(record.begin(), record.end() - 1), (Folder(set) / record.back()).string()});
  }
  return manifest;
}

std::vector<DataRow> ReadRows(const DataSet& set) {
  const CsvTable table = ReadTable(Folder(set) / "rows.csv");
  std::vector<DataRow> rows;
  for (const Values& record : table.records) {
    DataRow& row = rows.emplace_back();
    for (std::size_t i = 0; i < record.size(); ++i) row[table.columns[i]] = record[i];
  }
  return rows;
}

double Number(const std::string& text) {
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
    throw std::runtime_error("not a number: " + text);
  }
  return number;
}

std::uint64_t Bits(double number) {
  std::uint64_t bits = 0;
  static_assert(sizeof bits == sizeof number);
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

bool SameBits(const std::string& left, const std::string& right) {
  return Bits(Number(left)) == Bits(Number(right));
}

// The categories of one split variable, each once, in the manifest's order.
Values CategoriesAt(const Manifest& manifest, std::size_t position) {
  Values categories;
  for (const Split& split : manifest.splits) {
    const std::string& value = split.values[position];
    if (std::find(categories.begin(), categories.end(), value) == categories.end()) {
      categories.push_back(value);
    }
  }
  return categories;
}

int AddSplitVariable(const std::string& name, const Values& categories, bool numeric,
                     MCVarList& list) {
  if (!numeric) return list.AddCatVar(name, "", categories, IMCVariable::kRoleInput);
  std::vector<double> numbers;
  std::transform(categories.begin(), categories.end(), std::back_inserter(numbers), Number);
  return list.AddCatVar(name, "", numbers, IMCVariable::kRoleInput);
}

struct Combined {
  std::string document;
  std::vector<std::string> diagnostics;
  int segments = 0;
};

class TemporaryFile {
 public:
  TemporaryFile()
      : path_(std::filesystem::temp_directory_path() /
              ("combined-scoring-" + std::to_string(::getpid()) + ".pmml")) {}
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  std::string Path() const { return path_.string(); }
  std::string Content() const {
    std::ifstream in(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }

 private:
  std::filesystem::path path_;
};

Combined Combine(const Manifest& manifest, bool numericSplit) {
  const MCXPrsUtil::MCXMLReadWrite platform;  // the combined document needs it until the export
  MCVarList list;
  for (std::size_t i = 0; i < manifest.variables.size(); ++i) {
    EXPECT_EQ(
        AddSplitVariable(manifest.variables[i], CategoriesAt(manifest, i), numericSplit, list),
        static_cast<int>(i));
  }
  MCXSplitPMMLCombiner combiner(list);
  for (const Split& split : manifest.splits) {
    EXPECT_EQ(combiner.AddModel(split.model, split.values), MCCommon::MCStatus()) << split.model;
  }
  const TemporaryFile file;
  const int segments = combiner.GetNModels();
  EXPECT_EQ(combiner.ExportMiningModel(file.Path()), MCCommon::MCStatus());
  return {file.Content(), combiner.GetDiagnostics(), segments};
}

TreeScorer ScorerOf(const std::string& document) {
  std::istringstream in(document);
  return TreeScorer(in);
}

// Whether the row's own columns say what `prediction` says.
bool Agrees(const std::optional<Prediction>& prediction, const DataRow& row) {
  if (!prediction) return false;
  std::size_t classes = 0;
  for (const auto& [column, expected] : row) {
    if (column.rfind(kProbability, 0) != 0) continue;
    ++classes;
    const auto found = prediction->probabilities.find(column.substr(kProbability.size()));
    if (found == prediction->probabilities.end() || !SameBits(found->second, expected))
      return false;
  }
  if (classes != prediction->probabilities.size()) return false;
  const std::string& expected = row.at("prediction");
  return classes > 0 ? prediction->score == expected : SameBits(prediction->score, expected);
}

Values SplitOf(const DataRow& row, const Manifest& manifest) {
  Values values;
  for (const std::string& name : manifest.variables) values.push_back(row.at(name));
  return values;
}

// How many rows of each split `scorer` predicts otherwise than their own columns say.
std::map<Values, int> Mismatches(const TreeScorer& scorer, const std::vector<DataRow>& rows,
                                 const Manifest& manifest) {
  std::map<Values, int> mismatches;
  for (const Split& split : manifest.splits) mismatches[split.values] = 0;
  for (const DataRow& row : rows) {
    if (!Agrees(scorer.Score(row), row)) ++mismatches[SplitOf(row, manifest)];
  }
  return mismatches;
}

std::map<Values, int> NoMismatches(const Manifest& manifest) {
  std::map<Values, int> none;
  for (const Split& split : manifest.splits) none[split.values] = 0;
  return none;
}

class CombinedScoring : public testing::TestWithParam<DataSet> {
 protected:
  const Manifest manifest_ = ReadManifest(GetParam());
  const std::vector<DataRow> rows_ = ReadRows(GetParam());

  std::map<Values, int> MismatchesOf(const std::string& document) const {
    return Mismatches(ScorerOf(document), rows_, manifest_);
  }
};

TEST_P(CombinedScoring, SampleDataAreComplete) {
  EXPECT_EQ(manifest_.splits.size(), GetParam().splits);
  EXPECT_EQ(rows_.size(), GetParam().rows);
  const std::map<Values, int> splits = NoMismatches(manifest_);
  EXPECT_EQ(splits.size(), GetParam().splits);
  for (const DataRow& row : rows_) {
    EXPECT_EQ(splits.count(SplitOf(row, manifest_)), 1u);
    const auto isProbability = [](const auto& cell) {
      return cell.first.rfind(kProbability, 0) == 0;
    };
    EXPECT_EQ(static_cast<std::size_t>(std::count_if(row.begin(), row.end(), isProbability)),
              GetParam().classes);
  }
}

TEST_P(CombinedScoring, EachTreeAlonePredictsTheRowsOfItsSplit) {
  for (const Split& split : manifest_.splits) {
    std::ifstream in(split.model, std::ios::binary);
    const TreeScorer tree(in);
    int scored = 0;
    for (const DataRow& row : rows_) {
      if (SplitOf(row, manifest_) != split.values) continue;
      EXPECT_TRUE(Agrees(tree.Score(row), row)) << split.model;
      ++scored;
    }
    EXPECT_GT(scored, 0) << split.model;
  }
}

TEST_P(CombinedScoring, EveryRowGetsThePredictionOfTheTreeOfItsSplit) {
  const Combined combined = Combine(manifest_, GetParam().numericSplit);
  EXPECT_EQ(combined.segments, static_cast<int>(GetParam().splits));
  EXPECT_EQ(MismatchesOf(combined.document), NoMismatches(manifest_));
}

TEST_P(CombinedScoring, TheOrderOfTheModelsDoesNotMatter) {
  Manifest reversed = manifest_;
  std::reverse(reversed.splits.begin(), reversed.splits.end());
  const Combined combined = Combine(reversed, GetParam().numericSplit);
  EXPECT_EQ(MismatchesOf(combined.document), NoMismatches(manifest_));
}

TEST_P(CombinedScoring, CleanSplitsAreOnlyToldWhereTheirDerivedFieldsWent) {
  const Combined combined = Combine(manifest_, GetParam().numericSplit);
  if (!GetParam().derivesFields) {
    EXPECT_EQ(combined.diagnostics, std::vector<std::string>());
    return;
  }
  ASSERT_EQ(combined.diagnostics.size(), 1U);
  EXPECT_NE(combined.diagnostics[0].find("LocalTransformations"), std::string::npos);
}

TEST_P(CombinedScoring, RowOfAnUnknownSplitGetsNoPrediction) {
  const Combined combined = Combine(manifest_, GetParam().numericSplit);
  DataRow row = rows_.front();
  row[manifest_.variables.front()] = GetParam().numericSplit ? "-1" : "no such split";
  EXPECT_FALSE(ScorerOf(combined.document).Score(row).has_value());
}

TEST_P(CombinedScoring, RowWithoutSplitValueGetsNoPrediction) {
  const Combined combined = Combine(manifest_, GetParam().numericSplit);
  DataRow row = rows_.front();
  row[manifest_.variables.back()].clear();
  EXPECT_FALSE(ScorerOf(combined.document).Score(row).has_value());
}

// From here on: the comparison can fail, and fails where it should.

TEST_P(CombinedScoring, ExchangedModelsAreNoticedInTheirTwoSplitsAndOnlyThere) {
  for (std::size_t i = 0; i < manifest_.splits.size(); ++i) {
    for (std::size_t k = i + 1; k < manifest_.splits.size(); ++k) {
      Manifest exchanged = manifest_;
      std::swap(exchanged.splits[i].model, exchanged.splits[k].model);
      const Combined combined = Combine(exchanged, GetParam().numericSplit);
      for (const auto& [values, count] : MismatchesOf(combined.document)) {
        const bool touched =
            values == manifest_.splits[i].values || values == manifest_.splits[k].values;
        EXPECT_EQ(count > 0, touched) << values.front() << ' ' << values.back();
      }
    }
  }
}

TEST_P(CombinedScoring, MissingModelLeavesTheRowsOfItsSplitWithoutPrediction) {
  for (std::size_t i = 0; i < manifest_.splits.size(); ++i) {
    Manifest shortened = manifest_;
    shortened.splits.erase(shortened.splits.begin() + static_cast<std::ptrdiff_t>(i));
    const TreeScorer scorer = ScorerOf(Combine(shortened, GetParam().numericSplit).document);
    for (const DataRow& row : rows_) {
      const bool left_out = SplitOf(row, manifest_) == manifest_.splits[i].values;
      EXPECT_EQ(scorer.Score(row).has_value(), !left_out);
    }
  }
}

// `document` with the first `from` replaced; a text that is not there is an error of the test.
std::string Replaced(std::string document, const std::string& from, const std::string& to) {
  const auto found = document.find(from);
  if (found == document.npos) throw std::runtime_error("the document does not hold " + from);
  return document.replace(found, from.size(), to);
}

const DataSet& SetNamed(const std::string& folder) {
  return *std::find_if(std::begin(kDataSets), std::end(kDataSets),
                       [&](const DataSet& set) { return set.folder == folder; });
}

TEST(CombinedScoringPieces, CategoryThatTheMergedDictionaryLacksIsNoticed) {
  const DataSet& set = SetNamed("co2");
  const Manifest manifest = ReadManifest(set);
  // A plant of the last split only: the merge brought it into the dictionary, where its name first
  // stands.
  const std::string document =
      Replaced(Combine(manifest, set.numericSplit).document, "value=\"Mc1\"", "value=\"another\"");
  std::map<Values, int> expected = NoMismatches(manifest);
  expected[{"Mississippi", "chilled"}] = 7;
  EXPECT_EQ(Mismatches(ScorerOf(document), ReadRows(set), manifest), expected);
}

TEST(CombinedScoringPieces, EachSegmentBinsAtTheCutPointsOfItsOwnSplit) {
  const DataSet& set = SetNamed("airquality");
  const Manifest manifest = ReadManifest(set);
  // The first month's lowest bin, moved out of the way of every value.
  const std::string document = Replaced(Combine(manifest, set.numericSplit).document,
                                        "rightMargin=\"9.6999999999999993\"", "rightMargin=\"0\"");
  const std::map<Values, int> mismatches = Mismatches(ScorerOf(document), ReadRows(set), manifest);
  for (const auto& [month, count] : mismatches) EXPECT_EQ(count > 0, month == Values{"5"});
}

INSTANTIATE_TEST_SUITE_P(SampleData, CombinedScoring, testing::ValuesIn(kDataSets),
                         [](const auto& tested) { return std::string(tested.param.folder); });

}  // namespace
