#include "support/VarListText.h"

#include "mccommon/MCFormat.h"
#include "mccommon/MCVarEncoder.h"
#include "mccommon/MCVariable.h"

namespace test_support {
namespace {

using MCMTD_NAMESPACE::MCCategorySet;
using MCMTD_NAMESPACE::MCVarEncoder;
using MCMTD_NAMESPACE::MCVariable;

// No stream: that would keep it to itself when memory is short.
std::string Text(double number) { return MCXML_NAMESPACE::Format(number, false, nullptr); }

void Add(const MCVariable& variable, std::string& text) {
  text += variable.GetName() + '|' + variable.GetLabel();
  for (const int code :
       {variable.GetKind(), static_cast<int>(variable.GetRole()), variable.GetDataType()}) {
    text += '|' + std::to_string(code);
  }
  if (variable.HasRange()) {
    text += '|' + Text(variable.GetMinimum()) + ".." + Text(variable.GetMaximum());
  }
  for (const double cut : variable.GetCutPoints()) text += '|' + Text(cut);
  const MCCategorySet* set = variable.GetCategorySet();
  if (set == nullptr) return;
  for (int i = 0; i < set->Size(); ++i) {
    text += '|' + set->GetValueText(i) + '=' + set->GetLabelText(i);
  }
}

void Add(const MCVarEncoder& encoder, std::string& text) {
  for (const std::string& label : encoder.GetBinLabels()) text += "|bin " + label;
  for (const auto& missing : encoder.GetMissingNumbers()) {
    text += "|missing " + Text(missing.value) + '=' + missing.label;
  }
  for (const auto& missing : encoder.GetMissingTexts()) {
    text += "|missing " + missing.value + '=' + missing.label;
  }
  if (encoder.HasInvalidRange()) {
    text += "|invalid " + Text(encoder.GetInvalidLower()) + ".." + Text(encoder.GetInvalidUpper());
  }
}

}  // namespace

std::string TextOf(const MCMTD_NAMESPACE::MCVarList& list) {
  std::string text;
  for (int i = 0; list.GetStoredVar(i) != nullptr; ++i) {
    Add(*list.GetStoredVar(i), text);
    Add(*list.GetStoredEncoder(i), text);
    text += '\n';
  }
  return text;
}

}  // namespace test_support
