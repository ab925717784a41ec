#include "Documents.h"

#include <stdlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace bench {
namespace {

constexpr std::array<std::string_view, 24> kStems = {
    "age",   "income", "tenure", "balance", "visits", "rainfall", "wind",    "yield",
    "dose",  "weight", "height", "premium", "region", "branch",   "product", "channel",
    "grade", "sector", "claims", "mileage", "tariff", "latency",  "density", "turnover"};
constexpr std::array<std::string_view, 11> kSuffixes = {
    "", "_class", "_group", "_prev", "_lag2", "_q1", "_max", "_code", "_band", "_2023", "_index"};
constexpr std::array<std::string_view, 43> kWords = {
    "north",         "harbour",   "copper",  "tertiary", "rented",      "monthly",
    "diesel",        "urban",     "violet",  "single",   "married",     "clerk",
    "nurse",         "teacher",   "retired", "granite",  "south",       "lowland",
    "unknown",       "partial",   "express", "cash",     "instalment",  "hybrid",
    "maize",         "barley",    "savings", "annual",   "central",     "summit",
    "quarry",        "leasehold", "amber",   "widowed",  "ferry",       "student",
    "paper",         "secondary", "petrol",  "island",   "caf\xC3\xA9", "M\xC3\xBCnster",
    "\xC3\x85lesund"};

// splitmix64: a few lines that give the same numbers everywhere, which the standard
// distributions do not.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15U + 0x1234567U) {}

  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
  }
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(Next() % bound); }
  double Real() { return static_cast<double>(Next() >> 11) * 0x1p-53; }

 private:
  std::uint64_t state_;
};

std::string Decimal(double value, int digits) {
  char buffer[40];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
  return {buffer, end.ptr};
}

struct Value {
  std::string text;
  std::string label;  // empty: none
};

struct Field {
  std::string name;
  bool text = false;
  std::vector<Value> values;  // none: continuous
  double low = 0;
  double high = 0;
};

std::string FieldName(std::size_t index) {
  std::string name(kStems[index % kStems.size()]);
  name += kSuffixes[index / kStems.size() % kSuffixes.size()];
  const std::size_t turn = index / (kStems.size() * kSuffixes.size());
  return turn == 0 ? name : name + "_" + std::to_string(turn);
}

std::string Label(std::string_view word) {
  return "Level " + std::string(word) + " (code " + std::to_string(word.size()) + ")";
}

Field MakeCategorical(std::size_t index, std::size_t count, Random& random) {
  Field field{FieldName(index), index % 3 != 0, {}, 0, 0};
  const std::size_t first = random.Below(kWords.size());
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view word = kWords[(first + i * 5) % kWords.size()];
    if (!field.text) {
      field.values.push_back({std::to_string(i * 10 + random.Below(10)), Label(word)});
    } else {
      field.values.push_back({std::string(word), index % 3 == 1 ? Label(word) : std::string()});
    }
  }
  return field;
}

Field MakeContinuous(std::size_t index, Random& random) {
  Field field{FieldName(index), false, {}, random.Real() * 100 - 20, 0};
  field.high = field.low + 1 + random.Real() * 1000;
  return field;
}

std::vector<Field> MakeFields(const PmmlShape& shape) {
  Random random(shape.dictionarySeed);
  const std::size_t continuous = std::max<std::size_t>(4, shape.categoricalFields / 10);
  std::vector<Field> fields;
  for (std::size_t i = 0; i < shape.categoricalFields; ++i)
    fields.push_back(MakeCategorical(i, shape.valuesPerField, random));
  for (std::size_t i = 0; i < continuous; ++i)
    fields.push_back(MakeContinuous(shape.categoricalFields + i, random));
  return fields;
}

// Writes one document; the order of the calls is the order of the text.
class PmmlWriter {
 public:
  PmmlWriter(const PmmlShape& shape, const std::vector<Field>& fields)
      : shape_(shape), fields_(fields), random_(shape.treeSeed) {}

  std::string Write() {
    out_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<PMML version=\"4.3\" xmlns=\"http://www.dmg.org/PMML-4_3\">\n";
    WriteHeader();
    WriteDictionary();
    WriteTransformations();
    if (shape_.bytes > 0) WriteModel();
    out_ += "</PMML>\n";
    return std::move(out_);
  }

 private:
  void WriteHeader() {
    out_ +=
        " <Header copyright=\"Generated data\" description=\"Classification tree\">\n"
        "  <Application name=\"tree-writer\" version=\"1.4\"/>\n"
        "  <Timestamp>2024-03-17 10:49:42</Timestamp>\n </Header>\n";
  }

  void WriteDictionary() {
    out_ += " <DataDictionary numberOfFields=\"" + std::to_string(fields_.size()) + "\">\n";
    for (const Field& field : fields_) {
      if (field.values.empty()) {
        WriteContinuousField(field);
      } else {
        WriteCategoricalField(field);
      }
    }
    out_ += " </DataDictionary>\n";
  }

  void WriteContinuousField(const Field& field) {
    out_ += "  <DataField name=\"" + field.name + "\" displayName=\"Measured " + field.name +
            "\" optype=\"continuous\" dataType=\"double\">\n   <Interval closure=\"closedClosed\" "
            "leftMargin=\"" +
            Decimal(field.low, 9) + "\" rightMargin=\"" + Decimal(field.high, 9) +
            "\"/>\n   <Value value=\"-9999\" property=\"missing\" displayValue=\"not measured\"/>\n"
            "  </DataField>\n";
  }

  void WriteCategoricalField(const Field& field) {
    out_ += "  <DataField name=\"" + field.name + "\" displayName=\"Kind of " + field.name +
            "\" optype=\"categorical\" dataType=\"" + (field.text ? "string" : "integer") + "\">\n";
    for (std::size_t i = 0; i < field.values.size(); ++i) {
      if (shape_.omitSomeValues && random_.Below(12) == 0) continue;
      const bool missing = i + 1 == field.values.size() && field.name.size() % 4 == 0;
      WriteValue(field.values[i], missing);
    }
    out_ += "  </DataField>\n";
  }

  void WriteValue(const Value& value, bool missing) {
    out_ += "   <Value value=\"" + value.text + "\"";
    if (!value.label.empty()) out_ += " displayValue=\"" + value.label + "\"";
    if (missing) out_ += " property=\"missing\"";
    out_ += "/>\n";
  }

  void WriteTransformations() {
    out_ += " <TransformationDictionary>\n";
    for (std::size_t i = 0; i < 2; ++i) {
      const Field& field = fields_[fields_.size() - 1 - i];
      out_ += "  <DerivedField name=\"scaled_" + field.name +
              "\" optype=\"continuous\" dataType=\"double\">\n   <NormContinuous field=\"" +
              field.name + "\">\n    <LinearNorm orig=\"" + Decimal(field.low, 9) +
              "\" norm=\"0\"/>\n    <LinearNorm orig=\"" + Decimal(field.high, 9) +
              "\" norm=\"1\"/>\n   </NormContinuous>\n  </DerivedField>\n";
    }
    out_ += " </TransformationDictionary>\n";
  }

  void WriteModel() {
    out_ += " <TreeModel modelName=\"tree_" + std::to_string(shape_.treeSeed) +
            "\" functionName=\"classification\" algorithmName=\"rpart\" "
            "splitCharacteristic=\"binarySplit\" missingValueStrategy=\"defaultChild\">\n"
            "  <MiningSchema>\n";
    for (const Field& field : fields_)
      out_ += "   <MiningField name=\"" + field.name + "\" usageType=\"active\"/>\n";
    out_ += "  </MiningSchema>\n";
    const std::size_t room = shape_.bytes > out_.size() ? shape_.bytes - out_.size() : 1;
    WriteNode(1, "<True/>", room, 100 + random_.Below(100000), 2);
    out_ += " </TreeModel>\n";
  }

  // `room` is about the number of bytes that the node with its descendants may take.
  void WriteNode(std::size_t id, const std::string& predicate, std::size_t room,
                 std::size_t records, std::size_t depth) {
    const std::string indent(std::min<std::size_t>(depth, 24), ' ');
    const std::size_t start = out_.size();
    out_ += indent + "<Node id=\"" + std::to_string(id) + "\" score=\"" +
            (random_.Below(2) == 0 ? "yes" : "no") + "\" recordCount=\"" + std::to_string(records) +
            "\" defaultChild=\"" + std::to_string(2 * id) + "\">\n" + indent + " " + predicate +
            "\n";
    WriteScores(indent, records);
    const std::size_t used = out_.size() - start + indent.size() + 8;
    if (room > used + 600) WriteChildren(id, room - used, records, depth + 1);
    out_ += indent + "</Node>\n";
  }

  void WriteScores(const std::string& indent, std::size_t records) {
    const std::size_t yes = random_.Below(records + 1);
    for (const bool positive : {true, false}) {
      const std::size_t count = positive ? yes : records - yes;
      out_ += indent + " <ScoreDistribution value=\"" + (positive ? "yes" : "no") +
              "\" recordCount=\"" + std::to_string(count) + "\" confidence=\"" +
              Decimal(static_cast<double>(count) / static_cast<double>(records + 1), 15) + "\"/>\n";
    }
  }

  void WriteChildren(std::size_t id, std::size_t room, std::size_t records, std::size_t depth) {
    const auto [left, right] = MakePredicates();
    const double share = 0.3 + 0.4 * random_.Real();
    const auto leftRoom = static_cast<std::size_t>(share * static_cast<double>(room));
    const std::size_t leftRecords = 1 + random_.Below(records + 1);
    const std::size_t start = out_.size();
    WriteNode(2 * id, left, leftRoom, leftRecords, depth);
    const std::size_t taken = out_.size() - start;
    WriteNode(2 * id + 1, right, room > taken ? room - taken : 0, records + 2 - leftRecords, depth);
  }

  struct PredicatePair {
    std::string left;
    std::string right;
  };

  PredicatePair MakePredicates() {
    const std::size_t kind = random_.Below(3);
    const bool numeric = kind == 0;
    const std::size_t categorical = shape_.categoricalFields;
    const Field& field = numeric
                             ? fields_[categorical + random_.Below(fields_.size() - categorical)]
                             : fields_[random_.Below(categorical)];
    if (numeric) return NumericPredicates(field);
    return SetPredicates(field);
  }

  PredicatePair NumericPredicates(const Field& field) {
    const std::string cut = Decimal(field.low + random_.Real() * (field.high - field.low), 8);
    const auto predicate = [&](const char* op) {
      return "<SimplePredicate field=\"" + field.name + "\" operator=\"" + op + "\" value=\"" +
             cut + "\"/>";
    };
    return {predicate("lessThan"), predicate("greaterOrEqual")};
  }

  PredicatePair SetPredicates(const Field& field) {
    std::string list;
    std::size_t count = 0;
    for (const Value& value : field.values) {
      if (count > 0 && random_.Below(2) == 0) continue;
      list +=
          (count++ == 0 ? "" : " ") + (field.text ? "&quot;" + value.text + "&quot;" : value.text);
    }
    const auto predicate = [&](const char* op) {
      return "<SimpleSetPredicate field=\"" + field.name + "\" booleanOperator=\"" + op +
             "\"><Array n=\"" + std::to_string(count) + "\" type=\"" +
             (field.text ? "string" : "int") + "\">" + list + "</Array></SimpleSetPredicate>";
    };
    return {predicate("isIn"), predicate("isNotIn")};
  }

  const PmmlShape& shape_;
  const std::vector<Field>& fields_;
  Random random_;
  std::string out_;
};

}  // namespace

std::string MakePmml(const PmmlShape& shape) {
  const std::vector<Field> fields = MakeFields(shape);
  return PmmlWriter(shape, fields).Write();
}

std::string MegabytePmml() { return MakePmml({200, 10, 1 << 20, 3, 4}); }

TempDirectory::TempDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "mcx_bench.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
  path_ = pattern;
}

TempDirectory::~TempDirectory() {
  std::error_code ignored;  // a left-over directory is no reason to end the measurement
  std::filesystem::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  if (!file) throw std::runtime_error("cannot write " + path);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace bench
