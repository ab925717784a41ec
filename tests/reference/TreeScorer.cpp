#include "reference/TreeScorer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace reference {
namespace {

using xercesc::DOMElement;

// ---- Documents and texts

std::optional<std::string> Attribute(const DOMElement& e, const char* name) {
  const XMLCh* text = MCXPrsUtil::GetAttribute(e, name);
  if (text == nullptr) return std::nullopt;
  return MCXPrsUtil::ToUTF8(text);
}

std::string TagName(const DOMElement& e) { return MCXPrsUtil::ToUTF8(e.getTagName()); }

std::string Required(const DOMElement& e, const char* name) {
  std::optional<std::string> text = Attribute(e, name);
  if (!text) throw std::runtime_error(TagName(e) + " has no attribute " + name);
  return *text;
}

// A null name means every child element.
std::vector<const DOMElement*> Children(const DOMElement& parent, const char* name) {
  std::vector<const DOMElement*> children;
  const DOMElement* e = MCXPrsUtil::GetFirstChildElmt(parent, name);
  for (; e != nullptr; e = MCXPrsUtil::GetNextSiblingElmt(*e, name)) children.push_back(e);
  return children;
}

const DOMElement& RequiredChild(const DOMElement& parent, const char* name) {
  const DOMElement* child = MCXPrsUtil::GetFirstChildElmt(parent, name);
  if (child == nullptr) throw std::runtime_error(TagName(parent) + " has no child " + name);
  return *child;
}

double Number(const std::string& text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) throw std::runtime_error("not a number: " + text);
  return number;
}

// The items of an array of strings: separated by blanks, an item with blanks in quotation marks.
std::vector<std::string> ArrayItems(const std::string& text) {
  std::vector<std::string> items;
  bool inItem = false;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool blank = std::string_view(" \t\r\n").find(text[i]) != std::string_view::npos;
    if (blank && !quoted) {
      inItem = false;
      continue;
    }
    if (!inItem) items.emplace_back();
    inItem = true;
    const bool escape = text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '"';
    if (text[i] == '"') {
      quoted = !quoted;
    } else {
      items.back().push_back(escape ? text[++i] : text[i]);
    }
  }
  return items;
}

// ---- Fields

struct Field {
  bool numeric = false;
  std::optional<std::string> value;  // none: missing
};

bool SameValue(const Field& field, const std::string& other) {
  return field.numeric ? Number(*field.value) == Number(other) : *field.value == other;
}

// The fields that a model sees.
class Scope {
 public:
  void Add(const std::string& name, Field field) { fields_[name] = std::move(field); }
  const Field& Get(const std::string& name) const {
    const auto found = fields_.find(name);
    if (found == fields_.end()) throw std::runtime_error("a field that is not declared: " + name);
    return found->second;
  }

 private:
  std::map<std::string, Field> fields_;
};

bool InInterval(const DOMElement& interval, double x) {
  const std::string closure = Required(interval, "closure");
  const bool closedLeft = closure == "closedOpen" || closure == "closedClosed";
  const bool closedRight = closure == "openClosed" || closure == "closedClosed";
  if (const auto left = Attribute(interval, "leftMargin")) {
    if (x < Number(*left) || (x == Number(*left) && !closedLeft)) return false;
  }
  if (const auto right = Attribute(interval, "rightMargin")) {
    if (x > Number(*right) || (x == Number(*right) && !closedRight)) return false;
  }
  return true;
}

// A field that lists neither values nor intervals takes everything.
bool IsValid(const DOMElement& dataField, const Field& field) {
  if (!field.value) return true;
  const auto values = Children(dataField, "Value");
  const auto intervals = Children(dataField, "Interval");
  if (values.empty() && intervals.empty()) return true;
  const bool listed = std::any_of(values.begin(), values.end(), [&](const DOMElement* v) {
    if (Attribute(*v, "property").value_or("valid") != "valid") {
      throw std::runtime_error("a value that is not valid is declared");
    }
    return SameValue(field, Required(*v, "value"));
  });
  return listed || std::any_of(intervals.begin(), intervals.end(), [&](const DOMElement* i) {
           return InInterval(*i, Number(*field.value));
         });
}

const DOMElement& DataFieldOf(const DOMElement& pmml, const std::string& name) {
  for (const DOMElement* e : Children(RequiredChild(pmml, "DataDictionary"), "DataField")) {
    if (Required(*e, "name") == name) return *e;
  }
  throw std::runtime_error("a field that the dictionary does not declare: " + name);
}

std::vector<std::string> ActiveFields(const DOMElement& model) {
  std::vector<std::string> names;
  for (const DOMElement* e : Children(RequiredChild(model, "MiningSchema"), "MiningField")) {
    const std::string usage = Attribute(*e, "usageType").value_or("active");
    if (usage == "active") names.push_back(Required(*e, "name"));
  }
  return names;
}

Field FieldOfRow(const DOMElement& dataField, const DataRow& row) {
  Field field;
  field.numeric = Required(dataField, "dataType") != "string";
  const auto cell = row.find(Required(dataField, "name"));
  if (cell != row.end() && !cell->second.empty()) field.value = cell->second;
  return field;
}

// The fields of a document's model; none when a value is invalid.
std::optional<Scope> ScopeOfRow(const DOMElement& pmml, const DOMElement& model,
                                const DataRow& row) {
  Scope scope;
  for (const std::string& name : ActiveFields(model)) {
    const DOMElement& dataField = DataFieldOf(pmml, name);
    const Field field = FieldOfRow(dataField, row);
    if (!IsValid(dataField, field)) return std::nullopt;
    scope.Add(name, field);
  }
  return scope;
}

Field Discretized(const DOMElement& derivedField, const Scope& scope) {
  const DOMElement& discretize = RequiredChild(derivedField, "Discretize");
  const Field& source = scope.Get(Required(discretize, "field"));
  Field field;
  field.numeric = Required(derivedField, "dataType") != "string";
  if (!source.value) return field;
  for (const DOMElement* bin : Children(discretize, "DiscretizeBin")) {
    if (!InInterval(RequiredChild(*bin, "Interval"), Number(*source.value))) continue;
    field.value = Required(*bin, "binValue");
    break;
  }
  return field;
}

// `parent` may be null: there are no derived fields then.
void AddDerivedFields(const DOMElement* parent, Scope& scope) {
  if (parent == nullptr) return;
  for (const DOMElement* e : Children(*parent, "DerivedField")) {
    scope.Add(Required(*e, "name"), Discretized(*e, scope));
  }
}

// ---- Predicates

enum class Truth { kFalse, kTrue, kUnknown };

Truth FromBool(bool b) { return b ? Truth::kTrue : Truth::kFalse; }

template <class T>
bool Compare(const std::string& op, const T& left, const T& right) {
  static const std::map<std::string, std::function<bool(const T&, const T&)>> kOperators = {
      {"equal", std::equal_to<T>()},      {"notEqual", std::not_equal_to<T>()},
      {"lessThan", std::less<T>()},       {"lessOrEqual", std::less_equal<T>()},
      {"greaterThan", std::greater<T>()}, {"greaterOrEqual", std::greater_equal<T>()},
  };
  const auto found = kOperators.find(op);
  if (found == kOperators.end()) throw std::runtime_error("an operator that is not known: " + op);
  return found->second(left, right);
}

Truth EvaluateSimple(const DOMElement& predicate, const Scope& scope) {
  const Field& field = scope.Get(Required(predicate, "field"));
  const std::string op = Required(predicate, "operator");
  if (op == "isMissing") return FromBool(!field.value);
  if (op == "isNotMissing") return FromBool(field.value.has_value());
  if (!field.value) return Truth::kUnknown;
  const std::string value = Required(predicate, "value");
  if (field.numeric) return FromBool(Compare(op, Number(*field.value), Number(value)));
  return FromBool(Compare(op, *field.value, value));
}

Truth EvaluateSet(const DOMElement& predicate, const Scope& scope) {
  const Field& field = scope.Get(Required(predicate, "field"));
  const std::string op = Required(predicate, "booleanOperator");
  if (op != "isIn" && op != "isNotIn") throw std::runtime_error("no operator of sets: " + op);
  if (!field.value) return Truth::kUnknown;
  const auto items =
      ArrayItems(MCXPrsUtil::ToUTF8(RequiredChild(predicate, "Array").getTextContent()));
  const bool found = std::any_of(items.begin(), items.end(),
                                 [&](const std::string& i) { return SameValue(field, i); });
  return FromBool(found == (op == "isIn"));
}

Truth Evaluate(const DOMElement& predicate, const Scope& scope);

// "and": one false part decides, then one unknown; "or": one true part decides, then one unknown.
Truth EvaluateCompound(const DOMElement& predicate, const Scope& scope) {
  const std::string op = Required(predicate, "booleanOperator");
  if (op != "and" && op != "or") throw std::runtime_error("an operator that is not known: " + op);
  const Truth decides = FromBool(op == "or");
  bool unknown = false;
  for (const DOMElement* part : Children(predicate, nullptr)) {
    const Truth truth = Evaluate(*part, scope);
    if (truth == decides) return decides;
    if (truth == Truth::kUnknown) unknown = true;
  }
  return unknown ? Truth::kUnknown : FromBool(op == "and");
}

Truth Evaluate(const DOMElement& predicate, const Scope& scope) {
  const std::string kind = TagName(predicate);
  if (kind == "True") return Truth::kTrue;
  if (kind == "False") return Truth::kFalse;
  if (kind == "SimplePredicate") return EvaluateSimple(predicate, scope);
  if (kind == "SimpleSetPredicate") return EvaluateSet(predicate, scope);
  if (kind == "CompoundPredicate") return EvaluateCompound(predicate, scope);
  throw std::runtime_error("a predicate that is not known: " + kind);
}

// A `Node` or a `Segment` has exactly one predicate.
Truth EvaluatePredicateOf(const DOMElement& owner, const Scope& scope) {
  static constexpr std::array kKinds = {"True", "False", "SimplePredicate", "SimpleSetPredicate",
                                        "CompoundPredicate"};
  const DOMElement* predicate = nullptr;
  for (const char* kind : kKinds) {
    for (const DOMElement* e : Children(owner, kind)) {
      if (predicate != nullptr) throw std::runtime_error(TagName(owner) + " has two predicates");
      predicate = e;
    }
  }
  if (predicate == nullptr) throw std::runtime_error(TagName(owner) + " has no predicate");
  return Evaluate(*predicate, scope);
}

// ---- Trees

struct Step {
  const DOMElement* node;  // null: no prediction
  bool done;
};

Step WhenUnknown(const DOMElement& node, const std::string& strategy) {
  if (strategy == "lastPrediction") return {&node, true};
  if (strategy == "nullPrediction") return {nullptr, true};
  throw std::runtime_error("a missing value strategy that is not known: " + strategy);
}

Step WhenNoChildIsTrue(const DOMElement& node, const std::string& strategy) {
  if (strategy == "returnLastPrediction") return {&node, true};
  if (strategy == "returnNullPrediction") return {nullptr, true};
  throw std::runtime_error("a no true child strategy that is not known: " + strategy);
}

// From `node` to the child whose predicate is true, or the end of the way.
Step NextNode(const DOMElement& tree, const DOMElement& node, const Scope& scope) {
  const std::string missing = Attribute(tree, "missingValueStrategy").value_or("none");
  const auto children = Children(node, "Node");
  if (children.empty()) return {&node, true};
  for (const DOMElement* child : children) {
    const Truth truth = EvaluatePredicateOf(*child, scope);
    if (truth == Truth::kTrue) return {child, false};
    if (truth == Truth::kUnknown && missing != "none") return WhenUnknown(node, missing);
  }
  return WhenNoChildIsTrue(node,
                           Attribute(tree, "noTrueChildStrategy").value_or("returnNullPrediction"));
}

std::optional<Prediction> PredictionOf(const DOMElement& node) {
  const auto score = Attribute(node, "score");
  if (!score) return std::nullopt;
  Prediction prediction{*score, {}};
  for (const DOMElement* e : Children(node, "ScoreDistribution")) {
    prediction.probabilities[Required(*e, "value")] = Required(*e, "probability");
  }
  return prediction;
}

std::optional<Prediction> ScoreTree(const DOMElement& tree, const Scope& scope) {
  const DOMElement& root = RequiredChild(tree, "Node");
  if (EvaluatePredicateOf(root, scope) != Truth::kTrue) return std::nullopt;
  Step step{&root, false};
  while (!step.done) step = NextNode(tree, *step.node, scope);
  return step.node == nullptr ? std::nullopt : PredictionOf(*step.node);
}

// ---- Models

const DOMElement& ModelIn(const DOMElement& parent) {
  const auto trees = Children(parent, "TreeModel");
  const auto segmented = Children(parent, "MiningModel");
  if (trees.size() + segmented.size() != 1) {
    throw std::runtime_error(TagName(parent) + " does not hold exactly one known model");
  }
  return trees.empty() ? *segmented.front() : *trees.front();
}

std::optional<Prediction> ScoreModel(const DOMElement& model, Scope scope);

Scope NarrowedTo(const DOMElement& model, const Scope& outer) {
  Scope inner;
  for (const std::string& name : ActiveFields(model)) inner.Add(name, outer.Get(name));
  return inner;
}

std::optional<Prediction> ScoreSegments(const DOMElement& miningModel, const Scope& scope) {
  const DOMElement& segmentation = RequiredChild(miningModel, "Segmentation");
  if (Required(segmentation, "multipleModelMethod") != "selectFirst") {
    throw std::runtime_error("only selectFirst is known");
  }
  for (const DOMElement* segment : Children(segmentation, "Segment")) {
    if (EvaluatePredicateOf(*segment, scope) != Truth::kTrue) continue;
    const DOMElement& model = ModelIn(*segment);
    return ScoreModel(model, NarrowedTo(model, scope));
  }
  return std::nullopt;
}

std::optional<Prediction> ScoreModel(const DOMElement& model, Scope scope) {
  AddDerivedFields(MCXPrsUtil::GetFirstChildElmt(model, "LocalTransformations"), scope);
  return TagName(model) == "TreeModel" ? ScoreTree(model, scope) : ScoreSegments(model, scope);
}

}  // namespace

TreeScorer::TreeScorer(std::istream& in) {
  const MCCommon::MCStatus status = reader_.ParseToDOM(in);
  if (!status.IsOK() || !reader_.IsWellFormed()) {
    throw std::runtime_error("not well-formed: " + reader_.GetParseError());
  }
  if (!MCXPrsUtil::TagNameEquals(*reader_.GetDocument()->getDocumentElement(), "PMML")) {
    throw std::runtime_error("not a PMML document");
  }
}

std::optional<Prediction> TreeScorer::Score(const DataRow& row) const {
  const DOMElement& pmml = *reader_.GetDocument()->getDocumentElement();
  const DOMElement& model = ModelIn(pmml);
  std::optional<Scope> scope = ScopeOfRow(pmml, model, row);
  if (!scope) return std::nullopt;
  AddDerivedFields(MCXPrsUtil::GetFirstChildElmt(pmml, "TransformationDictionary"), *scope);
  return ScoreModel(model, *std::move(scope));
}

}  // namespace reference
