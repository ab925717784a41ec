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

// Different lists give different keys, whatever their texts hold.
std::string KeyOf(const std::vector<std::string>& values) {
  std::string key;
  for (const std::string& value : values) key += std::to_string(value.size()) + ':' + value;
  return key;
}

}  // namespace

void MergeFindings::Add(const std::string& sentence) {
  sentences_.push_back(source_.empty() ? sentence : source_ + ": " + sentence);
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

void MergeFindings::NoDictionary() { Add("the document has no DataDictionary."); }

void MergeFindings::NoSchema() { Add("the model has no MiningSchema."); }

void MergeFindings::SplitFieldsLeftOut() {
  Add("the combined document does not declare the split variables, because the first file lacks a "
      "DataDictionary or its model a MiningSchema.");
}

void MergeFindings::SeveralModels(std::size_t count, const std::string& chosen) {
  Add("the document holds " + std::to_string(count) + " model elements; only its first " + chosen +
      " was looked at.");
}

void MergeFindings::VersionDiffers(const std::string& here, const std::string& combined) {
  Add("the PMML version is " + Quoted(here) + ", but the combined document declares " +
      Quoted(combined) + ".");
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

void MergeFindings::TypeDiffers(const std::string& field, const std::string& attribute,
                                const std::string& here, const std::string& combined) {
  Add("the " + attribute + " of field " + Quoted(field) + " is " + Quoted(here) +
      ", but the combined dictionary keeps " + Quoted(combined) + ".");
}

void MergeFindings::OrderDiffers(const std::string& field, std::size_t position,
                                 const std::string& combined) {
  Add("the dictionary lists its fields in another order: it has " + Quoted(field) + " at " +
      Position(position) + ", where the combined dictionary has " + Quoted(combined) +
      "; no values were concerned.");
}

void MergeFindings::ValuesWentElsewhere(const std::string& field, std::size_t position,
                                        const std::string& combined,
                                        const std::vector<std::string>& added) {
  Add("field " + Quoted(field) + " stands at " + Position(position) +
      ", where the combined dictionary has " + Quoted(combined) +
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

void MergeFindings::LocalTransformationsTwice() {
  Add("the model has LocalTransformations of its own, so its segment has two.");
}

void MergeFindings::TransformationLost(const std::string& element) {
  Add("the TransformationDictionary holds " + element +
      ", which is not taken over into the segment.");
}

void MergeFindings::CheckRepeatedSegment(const std::vector<std::string>& values) {
  const auto [entry, is_new] = segments_.emplace(KeyOf(values), source_);
  if (is_new) return;
  Add("the split values " + QuotedList(values) + " were added before" +
      (entry->second.empty() ? "" : " from " + entry->second) +
      "; this later segment can never be selected.");
}

}  // namespace MCXPrsUtil
