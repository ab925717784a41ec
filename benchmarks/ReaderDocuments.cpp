#include "ReaderDocuments.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string_view>

#include "BareText.h"
#include "BareXerces.h"
#include "Documents.h"

namespace bench {
namespace {

using xercesc::DOMElement;

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string DictionaryPmml() { return MakePmml({1500, 10, 0, 9, 10}); }

std::string Attribute(std::string_view name, const std::string& value) {
  return " " + std::string(name) + "=\"" + value + "\"";
}

std::string ReplaceAll(std::string text, std::string_view from, std::string_view to) {
  std::size_t at = text.find(from);
  while (at != std::string::npos) {
    text.replace(at, from.size(), to);
    at = text.find(from, at + to.size());
  }
  return text;
}

void InsertBefore(std::string& text, std::string_view mark, const std::string& inserted) {
  const std::size_t at = text.find(mark);
  if (at == std::string::npos) throw std::logic_error("the generated document lacks its mark");
  text.insert(at, inserted);
}

// ---- Data models ----

// Writes the fields of a dictionary as a data model has them.
class DataModelWriter {
 public:
  std::string Write(const DOMElement& dictionary) {
    std::string text = std::string(kDeclaration) + "<DataModel>\n <Fields>\n";
    for (const DOMElement* field = dictionary.getFirstElementChild(); field != nullptr;
         field = field->getNextElementSibling())
      text += MakeField(*field);
    return text + " </Fields>\n</DataModel>\n";
  }

 private:
  std::string Text(const DOMElement& element, const XMLCh* name) const {
    return toUtf8_(element.getAttribute(name));
  }

  // The first continuous field is the weight; every ninth field is a target.
  std::string Role(bool continuous) {
    ++fields_;
    if (continuous && !weight_) return weight_ = true, "freqWeight";
    return fields_ % 9 == 0 ? "target" : "input";
  }

  std::string MakeField(const DOMElement& field) {
    const std::string measure = Text(field, u"optype");
    const std::string type = Text(field, u"dataType");
    const bool continuous = measure == "continuous";
    return "  <Field" + Attribute("name", Text(field, u"name")) +
           Attribute("displayLabel", Text(field, u"displayName")) +
           Attribute("storage", type == "double" ? "real" : type) +
           Attribute("measure", continuous ? measure : "nominal") +
           Attribute("role", Role(continuous)) + ">\n" +
           (continuous ? MakeRange(field) : MakeValues(field)) + "  </Field>\n";
  }

  std::string MakeRange(const DOMElement& field) const {
    const DOMElement& interval = *ChildNamed(field, u"Interval");
    return "   <Range" + Attribute("minValue", Text(interval, u"leftMargin")) +
           Attribute("maxValue", Text(interval, u"rightMargin")) + "/>\n";
  }

  std::string MakeValues(const DOMElement& field) const {
    std::string text = "   <Values>\n";
    for (const DOMElement* value = field.getFirstElementChild(); value != nullptr;
         value = value->getNextElementSibling()) {
      text += "    <Value" + Attribute("value", Text(*value, u"value"));
      if (value->hasAttribute(u"displayValue"))
        text += Attribute("displayLabel", Text(*value, u"displayValue"));
      text += "/>\n";
    }
    return text + "   </Values>\n";
  }

  Utf8Maker toUtf8_;
  std::size_t fields_ = 0;
  bool weight_ = false;
};

// ---- Settings ----

std::string BuildTask(const std::string& parameters) {
  return " <MiningBuildTask>\n  <Extension extender=\"builder\">\n   <Parameters>\n" + parameters +
         "   </Parameters>\n  </Extension>\n </MiningBuildTask>\n";
}

std::string NumericParameter(const std::string& name, std::size_t value) {
  return "    <Parameter" + Attribute("name", name) + Attribute("type", "double") +
         Attribute("value", std::to_string(value) + ".25") + "/>\n";
}

// The fields of the dictionary of `pmml` as derived fields.
std::string DerivedFields(const std::string& pmml) {
  const std::size_t start = pmml.find("  <DataField");
  const std::size_t end = pmml.find(" </DataDictionary>");
  std::string fields = ReplaceAll(pmml.substr(start, end - start), "DataField", "DerivedField");
  fields = ReplaceAll(fields, "<Interval", "<Extension name=\"range\"><Interval");
  return ReplaceAll(fields, "\"/>\n   <Value value=\"-9999\"",
                    "\"/></Extension>\n   <Value value=\"-9999\"");
}

// ---- Statistics ----

// Numbers as data have them. The engine's output is fixed by the standard; its distributions are
// not.
class Sampler {
 public:
  double Real() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }
  std::uint64_t Below(std::uint64_t bound) { return engine_() % bound; }

 private:
  std::mt19937_64 engine_{20240317};
};

std::string Decimal(double value, int digits) {
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*g", digits, value);
  return buffer.data();
}

std::string FieldName(std::size_t index) { return "measure_" + std::to_string(index); }

std::string MakeIntervals(double low, double width, std::size_t bins) {
  std::string text;
  std::string left = Decimal(low, 15);
  for (std::size_t i = 1; i <= bins; ++i) {
    const std::string right = Decimal(low + width * static_cast<double>(i), 15);
    text += "     <Interval closure=\"openClosed\"" + Attribute("leftMargin", left) +
            Attribute("rightMargin", right) + "/>\n";
    left = right;
  }
  return text;
}

std::string MakeFrequencies(std::size_t bins, bool weighted, Sampler& sampler) {
  std::string text = "     <Array" + Attribute("n", std::to_string(bins)) +
                     Attribute("type", weighted ? "real" : "int") + ">";
  for (std::size_t i = 0; i < bins; ++i) {
    if (i > 0) text += ' ';
    text += weighted ? Decimal(sampler.Real() * 5000, 8) : std::to_string(sampler.Below(20000));
  }
  return text + "</Array>\n";
}

std::string MakeDistribution(std::size_t index, std::size_t bins, Sampler& sampler) {
  const double low = sampler.Real() * 200 - 100;
  const double width = sampler.Real() * 3 + 0.01;
  const double high = low + width * static_cast<double>(bins);
  return "   <UnivariateStats" + Attribute("field", FieldName(index)) +
         ">\n    <Counts totalFreq=\"600000\" missingFreq=\"" +
         std::to_string(sampler.Below(1000)) + "\"/>\n    <NumericInfo" +
         Attribute("minimum", Decimal(low, 15)) + Attribute("maximum", Decimal(high, 15)) +
         Attribute("mean", Decimal((low + high) / 2, 15)) +
         Attribute("standardDeviation", Decimal((high - low) / 6, 15)) + "/>\n    <ContStats>\n" +
         MakeIntervals(low, width, bins) + MakeFrequencies(bins, index % 2 == 0, sampler) +
         "    </ContStats>\n   </UnivariateStats>\n";
}

}  // namespace

std::string MakeDataModel() {
  const auto parser = BareParseText(DictionaryPmml());
  const DOMElement& root = *parser->getDocument()->getDocumentElement();
  return DataModelWriter().Write(*ChildNamed(root, u"DataDictionary"));
}

std::string MakeSettingsWithFields() {
  std::string text = DictionaryPmml();
  InsertBefore(text, " </TransformationDictionary>", DerivedFields(text));
  InsertBefore(text, " <DataDictionary", BuildTask(NumericParameter("depth", 5)));
  return text;
}

std::string MakeStatistics(std::size_t fields, std::size_t bins) {
  Sampler sampler;
  std::string dictionary;
  std::string distributions;
  for (std::size_t i = 0; i < fields; ++i) {
    dictionary += "  <DataField" + Attribute("name", FieldName(i)) +
                  " optype=\"continuous\" dataType=\"double\"/>\n";
    distributions += MakeDistribution(i, bins, sampler);
  }
  return std::string(kDeclaration) + "<PMML version=\"4.3\">\n <Header/>\n <DataDictionary>\n" +
         dictionary + " </DataDictionary>\n <TreeModel>\n  <ModelStats>\n" + distributions +
         "  </ModelStats>\n </TreeModel>\n</PMML>\n";
}

std::vector<std::string> ParameterNames(std::size_t count) {
  constexpr std::array<std::string_view, 13> kSubjects = {
      "minimumRecords", "maximumDepth", "pruning",   "costs",     "learningRate",
      "iterations",     "seed",         "tolerance", "surrogate", "minimumGain",
      "momentum",       "hiddenUnits",  "confidence"};
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i)
    names.push_back(std::string(kSubjects[i % kSubjects.size()]) + "." + std::to_string(i));
  return names;
}

std::string MakeParameters(std::size_t count) {
  std::string parameters;
  for (const std::string& name : ParameterNames(count))
    parameters += NumericParameter(name, parameters.size() % 997);
  return std::string(kDeclaration) + "<PMML version=\"4.3\">\n" + BuildTask(parameters) +
         " <DataDictionary/>\n</PMML>\n";
}

}  // namespace bench
