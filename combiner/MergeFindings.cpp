#include "combiner/MergeFindings.h"

#include <algorithm>

namespace MCXPrsUtil {
namespace {

// A sentence shows this many values at most, so that a long list stays readable.
constexpr std::size_t kShownValues = 5;

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

std::string QuotedList(const std::vector<std::string>& texts) {
  std::string list;
  const std::size_t shown = std::min(texts.size(), kShownValues);
  for (std::size_t i = 0; i < shown; ++i) list += (i == 0 ? "" : ", ") + Quoted(texts[i]);
  if (texts.size() > shown) list += " and " + std::to_string(texts.size() - shown) + " more";
  return list;
}

std::string Position(std::size_t position) { return "position " + std::to_string(position + 1); }

std::string QuotedOrUnnamed(const std::optional<std::string>& name) {
  return name ? Quoted(*name) : "a field without a name";
}

// Different lists give different keys, whatever their texts hold.
std::string KeyOf(const TestedTexts& texts) {
  std::string key;
  for (const std::optional<std::string>& text : texts) {
    key += text ? std::to_string(text->size()) + ':' + *text : "-";
  }
  return key;
}

bool TestsNothing(const TestedTexts& texts) {
  return std::none_of(texts.begin(), texts.end(), [](const auto& text) { return text; });
}

bool TestsAll(const TestedTexts& texts) {
  return std::all_of(texts.begin(), texts.end(), [](const auto& text) { return text; });
}

// True if `wide` is selected wherever `texts` are.
bool Covers(const TestedTexts& wide, const TestedTexts& texts) {
  const auto covers = [](const auto& one, const auto& other) { return !one || one == other; };
  return std::equal(wide.begin(), wide.end(), texts.begin(), texts.end(), covers);
}

std::string FromSource(const std::string& source) {
  return source.empty() ? "" : " from " + source;
}

}  // namespace

void MergeFindings::Add(const std::string& sentence) {
  sentences_.push_back(source_.empty() ? sentence : source_ + ": " + sentence);
}

void MergeFindings::AddOncePerSource(const std::string& sentence) {
  if (told_of_source_.insert(sentence).second) Add(sentence);
}

void MergeFindings::SetSource(const std::string& path) {
  source_ = path;
  told_of_source_.clear();
}

void MergeFindings::ForgetDocument() {
  segments_.clear();
  wide_segments_.clear();
  told_local_last_ = false;
}

void MergeFindings::VariableMissing(std::size_t position) {
  Add("the variable list has no variable at " + Position(position) +
      ", so no predicate tests the split value given there.");
}

void MergeFindings::VariableUnnamed(std::size_t position) {
  Add("the split variable at " + Position(position) +
      " has no name, so no predicate tests its values.");
}

void MergeFindings::KeptOut(const std::string& reason) {
  Add("the model was kept out: " + reason + ".");
}

void MergeFindings::NoSegment(const std::string& reason) {
  Add("no segment was added for this file: " + reason + ".");
}

void MergeFindings::NoSegmentation(bool dictionary_was_merged) {
  const std::string reason =
      "the combined document has no Segmentation, as its first model was refused or has an empty "
      "functionName";
  dictionary_was_merged ? NoSegment(reason) : KeptOut(reason);
}

void MergeFindings::NoDictionary() { Add("the document has no DataDictionary."); }

void MergeFindings::NoSchema() { Add("the model has no MiningSchema."); }

void MergeFindings::SplitFieldsLeftOut(bool has_dictionary, bool has_schema) {
  std::string consequence = "the dictionaries and schemas of later files are not taken over";
  if (has_dictionary) {
    consequence =
        "the fields of later files are appended even where its DataDictionary has them, "
        "numberOfFields counts only those, and no later schema is taken over";
  } else if (has_schema) {
    consequence =
        "the fields of later files are appended even where its MiningSchema has them, and no later "
        "dictionary is taken over";
  }
  Add("the combined document does not declare the split variables, because the first file lacks a "
      "DataDictionary or its model a MiningSchema; nothing is recorded of this file, so " +
      consequence + ".");
}

void MergeFindings::SeveralModels(std::size_t count, const std::string& chosen) {
  Add("the document holds " + std::to_string(count) + " model elements; only its first " + chosen +
      " was looked at.");
}

void MergeFindings::VersionDiffers(const std::string& here, const std::string& combined) {
  Add("the PMML version is " + Quoted(here) + ", but the combined document declares " +
      Quoted(combined) + ".");
}

void MergeFindings::NamespaceMissing(const std::string& declaration, const std::string& here) {
  Add("the document declares " + declaration + " as " + Quoted(here) +
      ", but the combined document does not declare it, so names that need it have no namespace "
      "there.");
}

void MergeFindings::NamespaceDiffers(const std::string& declaration, const std::string& here,
                                     const std::string& combined) {
  Add("the document declares " + declaration + " as " + Quoted(here) +
      ", but the combined document keeps " + Quoted(combined) + ".");
}

void MergeFindings::EntityUndeclared(const std::string& entity) {
  AddOncePerSource("a copied part refers to the entity " + Quoted(entity) +
                   ", which the combined document does not declare, so a reader will refuse it.");
}

void MergeFindings::DefaultsLost() {
  AddOncePerSource(
      "attributes whose values come from the document type only are missing in the combined "
      "document.");
}

void MergeFindings::TooDeep(int deepest_level) {
  AddOncePerSource(
      "a copied part is nested deeper than level " + std::to_string(deepest_level) +
      " of the combined document; writing it may take more stack than the thread has.");
}

void MergeFindings::CombinerUsedAgain() {
  Add("this combiner has exported a document before, whose fields still count as known and hold "
      "their positions; values may be missing from the combined dictionary and its numberOfFields "
      "is too large.");
}

void MergeFindings::UnnamedFields(const std::string& where, std::size_t count) {
  const bool one = count == 1;
  Add("the " + where + " holds " + std::to_string(count) + (one ? " field" : " fields") +
      " without a name, which " + (one ? "takes" : "take") + " no part in a merge.");
}

void MergeFindings::SplitVariableDeclared(const std::string& name, const std::string& where) {
  Add("the " + where + " declares the split variable " + Quoted(name) +
      " already, so the combined " + where + " declares it twice.");
}

void MergeFindings::SplitVariableDeclaredLater(const std::string& name, const std::string& where) {
  AddOncePerSource("the " + where + " declares the split variable " + Quoted(name) +
                   " itself, which the combined " + where + " declares already.");
}

void MergeFindings::TypeDiffers(const std::string& field, const std::string& attribute,
                                const std::string& here, const std::string& combined) {
  Add("the " + attribute + " of field " + Quoted(field) + " is " + Quoted(here) +
      ", but the combined dictionary keeps " + Quoted(combined) + ".");
}

void MergeFindings::UsageDiffers(const std::string& field, const std::string& here,
                                 const std::string& combined) {
  Add("the usageType of field " + Quoted(field) + " is " + Quoted(here) +
      ", but the combined schema keeps " + Quoted(combined) + ".");
}

void MergeFindings::IntervalsDiffer(const std::string& field) {
  Add("the intervals of field " + Quoted(field) +
      " differ from those in the combined dictionary, which are kept.");
}

void MergeFindings::ValuesOnOneSide(const std::string& field, bool listed_here) {
  const std::string here = listed_here ? "lists values" : "lists no values";
  const std::string first = listed_here ? "none" : "some";
  Add("field " + Quoted(field) + " " + here +
      ", but the file that brought it into the combined "
      "dictionary listed " +
      first + ".");
}

void MergeFindings::PropertyDiffers(const std::string& field, const std::string& value,
                                    const std::string& here, const std::string& combined) {
  Add("the property of value " + Quoted(value) + " of field " + Quoted(field) + " is " +
      Quoted(here) + ", but the combined dictionary keeps " + Quoted(combined) + ".");
}

void MergeFindings::OrderDiffers(const std::string& field, std::size_t position,
                                 const std::optional<std::string>& combined) {
  Add("the dictionary lists its fields in another order: it has " + Quoted(field) + " at " +
      Position(position) + ", where the combined dictionary has " + QuotedOrUnnamed(combined) +
      "; no values were concerned.");
}

void MergeFindings::ValuesWentElsewhere(const std::string& field, std::size_t position,
                                        const std::optional<std::string>& combined,
                                        const std::vector<std::string>& added) {
  Add("field " + Quoted(field) + " stands at " + Position(position) +
      ", where the combined dictionary has " + QuotedOrUnnamed(combined) +
      ", so its values were merged into that field" +
      (added.empty() ? " (none was new there)." : ", which got " + QuotedList(added) + "."));
}

void MergeFindings::ValuesNotMerged(const std::string& field, std::size_t position,
                                    bool was_exported) {
  Add("the values of field " + Quoted(field) + " were not merged, because " +
      (was_exported ? "the recorded field at " + Position(position) +
                          " belongs to a document that was exported."
                    : "the combined dictionary has no field at " + Position(position) + "."));
}

void MergeFindings::ValueAddedAgain(const std::string& field, const std::string& value) {
  Add("field " + Quoted(field) + " lists the new value " + Quoted(value) +
      " more than once, and it was added each time.");
}

void MergeFindings::SplitValueEmpty(const std::string& variable, bool is_only_one) {
  Add("the split value of " + Quoted(variable) + " is empty, so the " +
      (is_only_one ? "segment has no predicate." : "predicate of the segment does not test it."));
}

void MergeFindings::SplitValueUnknown(const std::string& variable, const std::string& value) {
  Add("the split value " + Quoted(value) + " is no category of the split variable " +
      Quoted(variable) + ".");
}

void MergeFindings::SplitValueMalformed(const std::string& variable) {
  Add("the split value of " + Quoted(variable) +
      " is not well-formed UTF-8 and was written as an empty text.");
}

void MergeFindings::SplitValueCut(const std::string& variable) {
  Add("the split value of " + Quoted(variable) + " was cut off at its first zero byte.");
}

void MergeFindings::SplitValueUnwritable(const std::string& variable) {
  Add("the split value of " + Quoted(variable) +
      " holds a character that XML cannot hold, so the combined document cannot be written.");
}

void MergeFindings::DeclarationUnwritable(const std::string& variable) {
  Add("the name, the label or a category of the split variable " + Quoted(variable) +
      " holds a character that XML cannot hold, so the combined document cannot be written.");
}

void MergeFindings::LocalTransformationsLast() {
  if (told_local_last_) return;
  told_local_last_ = true;
  Add("derived fields are put into LocalTransformations at the end of the model, where the PMML "
      "schema does not allow them; a validating reader will refuse the combined document.");
}

void MergeFindings::LocalTransformationsTwice() {
  Add("the model has LocalTransformations of its own, so its segment has two.");
}

void MergeFindings::TransformationLost(const std::string& element) {
  Add("the TransformationDictionary holds " + element +
      ", which is not taken over into the segment.");
}

void MergeFindings::CheckRepeatedSegment(const TestedTexts& texts) {
  std::vector<std::string> shown;
  for (const std::optional<std::string>& text : texts) shown.push_back(text.value_or(""));
  const auto [entry, is_new] = segments_.emplace(KeyOf(texts), source_);
  if (!is_new) {
    Add("the split values " + QuotedList(shown) + " were added before" + FromSource(entry->second) +
        "; this later segment can never be selected.");
    return;
  }
  const auto wide =
      std::find_if(wide_segments_.begin(), wide_segments_.end(),
                   [&texts](const WideSegment& one) { return Covers(one.texts, texts); });
  if (wide != wide_segments_.end()) {
    Add("an earlier segment" + FromSource(wide->source) +
        " does not test every split variable and "
        "accepts the split values " +
        QuotedList(shown) +
        " too; this later segment can never be "
        "selected.");
  }
  // A segment that tests nothing has no valid predicate, so it is open what a reader makes of it.
  if (!TestsAll(texts) && !TestsNothing(texts)) wide_segments_.push_back({texts, source_});
}

}  // namespace MCXPrsUtil
