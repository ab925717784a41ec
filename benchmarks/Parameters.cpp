// Looking up the parameters of a settings document, against a bare walk over the same elements.

#include <mcxprsutil/MCSettingsParser.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "BareText.h"
#include "BareXerces.h"
#include "Cases.h"
#include "ReaderDocuments.h"
#include "Suite.h"

namespace bench {
namespace {

using xercesc::DOMElement;
using xercesc::XMLString;

constexpr std::size_t kParameters = 1000;
// In one run. With the nine rounds that are the default a comparison makes 100 000 or more.
constexpr std::size_t kLookUps = 10000;

struct Key {
  std::string utf8;
  std::u16string utf16;  // the names are ASCII
};

// A document, and the names to ask for, in the order of the questions.
struct Input {
  Input() : parser(BareParseText(MakeParameters(kParameters))) {
    std::istringstream stream(MakeParameters(kParameters));
    if (!reader.ParseToDOM(stream).IsOK()) throw std::runtime_error("cannot read the document");
    const DOMElement& root = *parser->getDocument()->getDocumentElement();
    const DOMElement& task = *ChildNamed(root, u"MiningBuildTask");
    scope = ChildNamed(*ChildNamed(task, u"Extension"), u"Parameters");
    for (const DOMElement* child = scope->getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling())
      children.push_back({child, child->getAttribute(u"name")});
  }

  // `stride` has no factor in common with the number of parameters: every one gets its turn. 0
  // asks for the first one again and again.
  void Ask(std::size_t stride) {
    const std::vector<std::string> names = ParameterNames(kParameters);
    for (std::size_t i = 0; i < kLookUps; ++i) {
      const std::string& name = names[i * stride % kParameters];
      keys.push_back({name, std::u16string(name.begin(), name.end())});
    }
  }

  struct NamedChild {
    const DOMElement* element;
    const XMLCh* name;
  };

  MCXPrsUtil::MCSettingsParser reader;
  std::unique_ptr<xercesc::XercesDOMParser> parser;
  const DOMElement* scope = nullptr;
  std::vector<NamedChild> children;
  std::vector<Key> keys;
};

const DOMElement* FindByWalk(const Input& input, const XMLCh* key) {
  const DOMElement* child = input.scope->getFirstElementChild();
  while (child != nullptr &&
         !(HasName(*child, u"Parameter") && XMLString::equals(child->getAttribute(u"name"), key)))
    child = child->getNextElementSibling();
  return child;
}

// The quickest way to the text of an attribute: getAttribute() finds it by a dynamic_cast. Good for
// attributes that are there and hold one text, as those of a parsed document without entities do.
const XMLCh* TextNodeOf(const DOMElement& element, const XMLCh* name) {
  return element.getAttributeNode(name)->getFirstChild()->getNodeValue();
}

const DOMElement* FindByQuickWalk(const Input& input, const XMLCh* key) {
  const xercesc::DOMNode* node = input.scope->getFirstChild();
  for (; node != nullptr; node = node->getNextSibling()) {
    if (node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) continue;
    const auto& child = static_cast<const DOMElement&>(*node);
    if (HasName(child, u"Parameter") && XMLString::equals(TextNodeOf(child, u"name"), key))
      return &child;
  }
  return nullptr;
}

// The names alone, without any way through the tree.
const DOMElement* FindByNames(const Input& input, const XMLCh* key) {
  for (const Input::NamedChild& child : input.children) {
    if (XMLString::equals(child.name, key)) return child.element;
  }
  return nullptr;
}

template <class LookUp>
Variant AnswerAll(std::string name, const std::shared_ptr<Input>& input, LookUp lookUp) {
  auto answers = std::make_shared<std::vector<double>>(input->keys.size());
  return {std::move(name),
          [input, answers, lookUp] {
            double* answer = answers->data();
            for (const Key& key : input->keys) *answer++ = lookUp(*input, key);
          },
          [answers] {
            std::string bits(answers->size() * sizeof(double), '\0');
            std::memcpy(bits.data(), answers->data(), bits.size());
            return bits;
          }};
}

double LookUp(const Input& input, const Key& key) {
  double value = 0;
  if (!input.reader.GetParameter(key.utf8.c_str(), value).IsOK())
    throw std::runtime_error("GetParameter failed");
  return value;
}

template <class Find>
Variant LookUpBy(std::string name, const std::shared_ptr<Input>& input, Find find) {
  return AnswerAll(std::move(name), input, [find](const Input& from, const Key& key) {
    return NumberAttribute(*find(from, key.utf16.c_str()), u"value");
  });
}

Comparison CompareLookUps(std::size_t stride, Limit limit) {
  auto input = std::make_shared<Input>();
  input->Ask(stride);
  Comparison comparison;
  comparison.operations = input->keys.size();
  comparison.ours = AnswerAll("GetParameter", input, LookUp);
  comparison.peers = {{LookUpBy("bare walk", input, FindByWalk), limit},
                      {LookUpBy("quickest bare walk", input, FindByQuickWalk), limit},
                      {LookUpBy("comparing the names alone", input, FindByNames), {}}};
  return comparison;
}

}  // namespace

void AddParameterCases(Suite& suite) {
  suite.Add("readers", "GetParameter", "all of 1000 in turn",
            [] { return CompareLookUps(389, Limit{1.1}); });
  // What a look-up costs beside its walk. The allowance is about one step of that.
  suite.Add("readers", "GetParameter", "the first of 1000", [] {
    return CompareLookUps(0, Limit{1, 100});
  });
}

}  // namespace bench
