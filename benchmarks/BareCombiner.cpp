#include "BareCombiner.h"

#include <xercesc/util/XMLString.hpp>

namespace bench {
namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

DOMElement* FindChild(const DOMElement& parent, const XMLCh* name) {
  DOMElement* child = parent.getFirstElementChild();
  while (child != nullptr && !xercesc::XMLString::equals(child->getTagName(), name))
    child = child->getNextElementSibling();
  return child;
}

// ASCII only, which is all that the generated split values hold.
std::u16string Widen(const std::string& text) { return {text.begin(), text.end()}; }

void Set(DOMElement& element, const XMLCh* name, const std::string& value) {
  element.setAttribute(name, Widen(value).c_str());
}

}  // namespace

DOMElement& BareCombiner::Append(DOMNode& parent, const XMLCh* name) {
  DOMElement* element = output_->createElement(name);
  parent.appendChild(element);
  return *element;
}

DOMNode* BareCombiner::Copy(const DOMNode* source, DOMNode& parent, bool deep) {
  return parent.appendChild(output_->importNode(source, deep));
}

void BareCombiner::Add(const std::string& path, const std::string& splitValue) {
  const auto parser = BareParseFile(path);
  const DOMElement& pmml = *parser->getDocument()->getDocumentElement();
  const DOMElement& model = *FindChild(pmml, u"TreeModel");
  if (!output_) {
    Begin(pmml, model);
  } else if (merge_ == Merge::kDictionaryValues) {
    MergeValues(*FindChild(pmml, u"DataDictionary"));
  }
  AddSegment(pmml, model, splitValue);
}

void BareCombiner::Begin(const DOMElement& pmml, const DOMElement& model) {
  output_.reset(
      xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument());
  DOMNode& root = *Copy(&pmml, *output_, false);
  Copy(FindChild(pmml, u"Header"), root, true);
  auto& dictionary =
      static_cast<DOMElement&>(*Copy(FindChild(pmml, u"DataDictionary"), root, true));
  DOMElement& miningModel = Append(root, u"MiningModel");
  miningModel.setAttribute(u"functionName", model.getAttribute(u"functionName"));
  auto& schema =
      static_cast<DOMElement&>(*Copy(FindChild(model, u"MiningSchema"), miningModel, true));
  AddSplitVariable(dictionary, schema);
  segmentation_ = &Append(miningModel, u"Segmentation");
  segmentation_->setAttribute(u"multipleModelMethod", u"selectFirst");
}

void BareCombiner::AddSplitVariable(DOMElement& dictionary, DOMElement& schema) {
  DOMElement& field = Append(dictionary, u"DataField");
  Set(field, u"name", split_.name);
  Set(field, u"displayName", split_.label);
  Set(field, u"optype", "categorical");
  Set(field, u"dataType", "string");
  for (const std::string& value : split_.values) Set(Append(field, u"Value"), u"value", value);
  DOMElement& miningField = Append(schema, u"MiningField");
  Set(miningField, u"name", split_.name);
  Set(miningField, u"usageType", "active");
  if (merge_ == Merge::kDictionaryValues) RecordFields(dictionary);
  Set(dictionary, u"numberOfFields", std::to_string(dictionary.getChildElementCount()));
}

void BareCombiner::RecordFields(const DOMElement& dictionary) {
  for (DOMElement* field = dictionary.getFirstElementChild(); field != nullptr;
       field = field->getNextElementSibling()) {
    fields_.push_back({field, {}});
    for (const DOMElement* value = field->getFirstElementChild(); value != nullptr;
         value = value->getNextElementSibling())
      fields_.back().values.insert(value->getAttribute(u"value"));
  }
}

// All dictionaries list the same fields in the same order.
void BareCombiner::MergeValues(const DOMElement& dictionary) {
  auto output = fields_.begin();
  for (const DOMElement* field = dictionary.getFirstElementChild(); field != nullptr;
       field = field->getNextElementSibling(), ++output) {
    for (const DOMElement* value = field->getFirstElementChild(); value != nullptr;
         value = value->getNextElementSibling()) {
      if (!xercesc::XMLString::equals(value->getTagName(), u"Value")) continue;
      if (output->values.insert(value->getAttribute(u"value")).second)
        Copy(value, *output->element, true);
    }
  }
}

void BareCombiner::AddSegment(const DOMElement& pmml, const DOMElement& model,
                              const std::string& splitValue) {
  DOMElement& segment = Append(*segmentation_, u"Segment");
  DOMElement& predicate = Append(segment, u"SimplePredicate");
  Set(predicate, u"field", split_.name);
  Set(predicate, u"operator", "equal");
  Set(predicate, u"value", splitValue);
  DOMNode& copy = *Copy(&model, segment, true);
  const DOMElement* derived = FindChild(pmml, u"TransformationDictionary")->getFirstElementChild();
  DOMElement& local = Append(copy, u"LocalTransformations");
  for (; derived != nullptr; derived = derived->getNextElementSibling()) Copy(derived, local, true);
}

void BareCombiner::Export(const std::string& path) {
  BareWriteFile(*output_, path);
  output_.reset();
}

}  // namespace bench
