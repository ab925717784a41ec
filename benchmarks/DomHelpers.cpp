// Single calls of the DOM helpers, in batches over the names and numbers of real documents.

#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLString.hpp>

#include "BareXerces.h"
#include "Cases.h"
#include "Documents.h"
#include "Suite.h"

namespace bench {
namespace {

using xercesc::DOMElement;

struct Document {
  explicit Document(const std::string& text) : parser(BareParseText(text)) {
    Collect(parser->getDocument()->getDocumentElement());
  }
  void Collect(DOMElement* element) {
    elements.push_back(element);
    for (DOMElement* child = element->getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling())
      Collect(child);
  }

  std::unique_ptr<xercesc::XercesDOMParser> parser;
  std::vector<DOMElement*> elements;
};

// ---- Tag names ----

struct TagName {
  const char* utf8;
  const XMLCh* utf16;
};

constexpr std::array<TagName, 12> kTagNames = {{{"DataField", u"DataField"},
                                                {"Value", u"Value"},
                                                {"Interval", u"Interval"},
                                                {"MiningField", u"MiningField"},
                                                {"Node", u"Node"},
                                                {"SimplePredicate", u"SimplePredicate"},
                                                {"SimpleSetPredicate", u"SimpleSetPredicate"},
                                                {"Array", u"Array"},
                                                {"ScoreDistribution", u"ScoreDistribution"},
                                                {"Extension", u"Extension"},
                                                {"DerivedField", u"DerivedField"},
                                                {"True", u"True"}}};

struct TagQuestion {
  const DOMElement* element;
  TagName name;
};

// Every element of a document, in turn with its own name and with another one.
struct TagQuestions {
  explicit TagQuestions(const std::string& text) : document(text) {
    std::size_t other = 0;
    for (const DOMElement* element : document.elements) {
      for (const TagName& name : kTagNames) {
        if (!xercesc::XMLString::equals(element->getTagName(), name.utf16)) continue;
        questions.push_back({element, name});
        questions.push_back({element, kTagNames[other++ * 7 % kTagNames.size()]});
      }
    }
  }

  Document document;
  std::vector<TagQuestion> questions;
};

template <class Equal>
Variant AnswerAll(std::string name, const std::shared_ptr<TagQuestions>& input, Equal equal) {
  auto answers = std::make_shared<std::string>(input->questions.size(), '?');
  return {std::move(name),
          [input, answers, equal] {
            char* answer = answers->data();
            for (const TagQuestion& question : input->questions)
              *answer++ = equal(question) ? 'y' : 'n';
          },
          [answers] { return *answers; }};
}

Comparison CompareTagNames() {
  auto input = std::make_shared<TagQuestions>(MakePmml({12, 5, 20 << 10, 5, 6}));
  Comparison comparison;
  comparison.operations = input->questions.size();
  comparison.ours = AnswerAll("TagNameEquals", input, [](const TagQuestion& question) {
    return MCXPrsUtil::TagNameEquals(*question.element, question.name.utf8);
  });
  comparison.peers = {{AnswerAll("XMLString::equals, ready UTF-16", input,
                                 [](const TagQuestion& question) {
                                   return xercesc::XMLString::equals(question.element->getTagName(),
                                                                     question.name.utf16);
                                 }),
                       Limit{1.5}}};
  return comparison;
}

// ---- Transcoding ----

constexpr std::array<const char*, 10> kTwelveCharacters = {
    "MiningSchema", "DerivedField", "Segmentation", "functionName", "NormDiscrete",
    "NeuralInputs", "NeuralOutput", "TargetValues", "defaultScore", "SetPredicate"};

// The straightforward form: a transcoder per call, 1000 units at a time.
std::vector<XMLCh> TranscodeWithNewTranscoder(const char* text) {
  xercesc::XMLTransService::Codes code{};
  const std::unique_ptr<xercesc::XMLTranscoder> transcoder(
      xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor("UTF-8", code, 4000));
  std::vector<XMLCh> wide;
  const auto* bytes = reinterpret_cast<const XMLByte*>(text);
  XMLSize_t left = std::strlen(text);
  while (left > 0) {
    XMLCh chunk[1000];
    unsigned char sizes[1000];
    XMLSize_t eaten = 0;
    const XMLSize_t made = transcoder->transcodeFrom(bytes, left, chunk, 1000, eaten, sizes);
    wide.insert(wide.end(), chunk, chunk + made);
    bytes += eaten;
    left -= eaten;
  }
  wide.push_back(0);
  return wide;
}

template <class Convert>
Variant ConvertAll(std::string name, Convert convert) {
  auto converted = std::make_shared<std::array<std::vector<XMLCh>, kTwelveCharacters.size()>>();
  return {std::move(name),
          [converted, convert] {
            for (std::size_t i = 0; i < kTwelveCharacters.size(); ++i)
              (*converted)[i] = convert(kTwelveCharacters[i]);
            Keep(converted->data());
          },
          [converted] {
            const Utf8Maker toUtf8;
            std::string text;
            for (const auto& wide : *converted) text += toUtf8(wide.data()) + " ";
            return text;
          }};
}

Comparison ConvertNames() {
  Comparison comparison;
  comparison.operations = kTwelveCharacters.size();
  comparison.ours = ConvertAll("ToUTF16", MCXPrsUtil::ToUTF16);
  comparison.peers = {
      {ConvertAll("a transcoder per call", TranscodeWithNewTranscoder), Limit{0.15}}};
  return comparison;
}

// ---- Numbers ----

constexpr const char* kNumberName = "confidence";
constexpr const XMLCh* kNumberNameUtf16 = u"confidence";

struct Numbers {
  explicit Numbers(const std::string& text) : document(text) {
    for (const DOMElement* element : document.elements) {
      const auto* attribute = element->getAttributeNode(kNumberNameUtf16);
      if (attribute == nullptr) continue;
      elements.push_back(element);
      texts.push_back(attribute->getValue());
    }
  }

  Document document;
  std::vector<const DOMElement*> elements;
  std::vector<const XMLCh*> texts;
};

template <class Read>
Variant ReadAll(std::string name, const std::shared_ptr<Numbers>& input, Read read) {
  auto values = std::make_shared<std::vector<double>>(input->texts.size());
  return {std::move(name),
          [input, values, read] {
            for (std::size_t i = 0; i < values->size(); ++i) (*values)[i] = read(*input, i);
          },
          [values] {
            return std::string(reinterpret_cast<const char*>(values->data()),
                               values->size() * sizeof(double));
          }};
}

// XMLDouble gets its text for nothing; we look the attribute up as well.
Comparison ReadNumbers(std::size_t digits) {
  std::string document = MakePmml({12, 5, 20 << 10, 5, 6});
  if (digits < 15) {
    std::size_t at = 0;
    while ((at = document.find("confidence=\"0.", at)) != std::string::npos) {
      const std::size_t first = at + std::strlen("confidence=\"0.");
      const std::size_t last = document.find('"', first);
      at = first;
      if (last - first > digits) document.erase(first + digits, last - first - digits);
    }
  }
  auto input = std::make_shared<Numbers>(document);
  Comparison comparison;
  comparison.operations = input->texts.size();
  comparison.ours = ReadAll("GetDoubleAttribute", input, [](const Numbers& numbers, std::size_t i) {
    double value = -1;
    MCXPrsUtil::GetDoubleAttribute(*numbers.elements[i], kNumberName, value);
    return value;
  });
  comparison.peers = {{ReadAll("XMLDouble of ready text", input,
                               [](const Numbers& numbers, std::size_t i) {
                                 return xercesc::XMLDouble(numbers.texts[i]).getValue();
                               }),
                       Limit{0.5}}};
  return comparison;
}

}  // namespace

void AddDomHelperCases(Suite& suite) {
  suite.Add("helpers", "TagNameEquals", "half equal, half not", CompareTagNames);
  suite.Add("helpers", "ToUTF16", "12 ASCII characters", ConvertNames);
  suite.Add("helpers", "GetDoubleAttribute", "15 digits", [] { return ReadNumbers(15); });
  suite.Add("helpers", "GetDoubleAttribute", "3 digits", [] { return ReadNumbers(3); });
}

}  // namespace bench
