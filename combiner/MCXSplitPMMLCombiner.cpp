// Construction, the split variables, and what a caller can ask for.
#include "mcxprsutil/MCXSplitPMMLCombiner.h"

#include <utility>

#include "combiner/CombinerState.h"
#include "mcxprsutil/MCPMMLTags.h"
#include "xml/StatusCodes.h"

namespace MCXPrsUtil {
namespace {

using MCMTD_NAMESPACE::IMCCategorySet;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;

enum VariableKind { kContinuous = 1, kCategoricalNumeric = 2, kCategoricalText = 3 };
constexpr int kIntegerFormat = 1;

std::vector<std::string> CategoriesOf(const IMCVariable& variable) {
  std::vector<std::string> categories;
  const IMCCategorySet* set = variable.GetCategorySet();
  if (set == nullptr) return categories;
  const int count = variable.GetNCategories();
  for (int j = 0; j < count; ++j) categories.push_back(set->GetValueText(j));
  return categories;
}

}  // namespace

MCXSplitPMMLCombiner::MCXSplitPMMLCombiner(const MCVarList& list)
    : state_(std::make_unique<State>(list)) {
  InitStandardPMMLModels();
  InitSplitVarMetadata(list);
}

MCXSplitPMMLCombiner::~MCXSplitPMMLCombiner() = default;

MCCommon::MCStatus MCXSplitPMMLCombiner::GetStatus() const { return state_->status; }

int MCXSplitPMMLCombiner::GetNModels() const { return state_->n_models; }

const std::vector<std::string>& MCXSplitPMMLCombiner::GetDiagnostics() const {
  return state_->findings.GetSentences();
}

void MCXSplitPMMLCombiner::Display(std::ostream&) const {}

MCCommon::MCStatus MCXSplitPMMLCombiner::IsEqualValues(
    const std::vector<std::string>& values) const {
  for (const std::string& value : values) {
    if (state_->split_values.count(value) == 0) return Failure(kSplitValuesMismatch);
  }
  return MCCommon::MCStatus();
}

void MCXSplitPMMLCombiner::InitSplitVarMetadata(const MCVarList& list) {
  for (unsigned int i = 0; i < list.Size(); ++i) {
    const IMCVariable* variable = list.GetVarAt(static_cast<int>(i));
    if (variable == nullptr) {
      state_->findings.VariableMissing(i);
      continue;
    }
    SplitVariable split;
    GetSplitVariableInfo(variable, split.name, split.label, split.optype, split.data_type);
    if (split.name.empty()) state_->findings.VariableUnnamed(i);
    split.values = CategoriesOf(*variable);
    state_->split_values.insert(split.values.begin(), split.values.end());
    if (split.optype == MCPMMLTags::XML_VAL_CATEGORICAL || !split.values.empty()) {
      state_->split_categories[split.name].insert(split.values.begin(), split.values.end());
    }
    state_->split_variables.push_back(std::move(split));
  }
}

bool MCXSplitPMMLCombiner::GetSplitVariableInfo(const IMCVariable* v, std::string& name,
                                                std::string& label, std::string& optype,
                                                std::string& dataType) {
  if (v == nullptr) return false;
  name = v->GetName();
  label = v->GetLabel();
  switch (v->GetKind()) {
    case kContinuous:
      optype = MCPMMLTags::XML_VAL_CONTINUOUS;
      dataType = MCPMMLTags::XML_VAL_DOUBLE;
      break;
    case kCategoricalNumeric:
      optype = MCPMMLTags::XML_VAL_CATEGORICAL;
      dataType = MCPMMLTags::XML_VAL_DOUBLE;
      break;
    case kCategoricalText:
      optype = MCPMMLTags::XML_VAL_CATEGORICAL;
      dataType = MCPMMLTags::XML_VAL_STRING;
      break;
    default:
      break;
  }
  // Whatever the kind: a text variable of integer format is "integer" on purpose.
  if (v->GetValueFormat() == kIntegerFormat) dataType = MCPMMLTags::XML_VAL_INTEGER;
  return true;
}

std::string MCXSplitPMMLCombiner::GetSplitVarName(int index) const {
  if (index < 0) return std::string();
  const IMCVariable* variable = state_->var_list.GetVarAt(index);
  return variable == nullptr ? std::string() : variable->GetName();
}

}  // namespace MCXPrsUtil
