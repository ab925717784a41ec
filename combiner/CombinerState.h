// Everything that a combiner holds.
#ifndef MCXPRSUTIL_COMBINER_COMBINERSTATE_H
#define MCXPRSUTIL_COMBINER_COMBINERSTATE_H

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "combiner/MergeFindings.h"
#include "combiner/OutputRecord.h"
#include "mccommon/MCStatus.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"

namespace MCXPrsUtil {

// A split variable in PMML terms.
struct SplitVariable {
  std::string name;
  std::string label;
  std::string optype;
  std::string data_type;
  std::vector<std::string> values;  // of its categories
};

struct MCXSplitPMMLCombiner::State {
  explicit State(const MCMTD_NAMESPACE::MCVarList& list) : var_list(list) {}

  bool IsSplitVariable(const std::string& name) const {
    return std::any_of(split_variables.begin(), split_variables.end(),
                       [&name](const SplitVariable& variable) { return variable.name == name; });
  }

  const MCMTD_NAMESPACE::MCVarList& var_list;  // borrowed
  MCCommon::MCStatus status;                   // of the last AddModel or ExportMiningModel
  int n_models = 0;

  // Without the positions where the list has no variable.
  std::vector<SplitVariable> split_variables;
  std::unordered_set<std::string> split_values;  // of all variables together
  // The values of each variable by its name, for findings. A variable that is not categorical and
  // has no category accepts every value and is not here.
  std::unordered_map<std::string, std::unordered_set<std::string>> split_categories;

  std::vector<std::string> standard_models;
  std::string function_name;  // of the first model; empty before

  // The combined document. Only the export releases it: see the destructor's description.
  XERCES_CPP_NAMESPACE::DOMDocument* doc = nullptr;
  // Nodes in it, null where there is no such element.
  XERCES_CPP_NAMESPACE::DOMNode* data_dict = nullptr;
  XERCES_CPP_NAMESPACE::DOMNode* mining_schema = nullptr;
  XERCES_CPP_NAMESPACE::DOMNode* segmentation = nullptr;
  OutputFields data_fields;
  OutputNames mining_fields;

  MergeFindings findings;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_COMBINER_COMBINERSTATE_H
