// What was learned from one document.
#ifndef MCX_EXAMPLES_DOCUMENTDESCRIPTION_H
#define MCX_EXAMPLES_DOCUMENTDESCRIPTION_H

#include <optional>
#include <string>
#include <vector>

#include "ParameterDescription.h"
#include "StatisticsDescription.h"
#include "VariableDescription.h"

namespace examples {

// What the programs look for in a document.
struct DescribeOptions {
  bool bins = false;                // read the bins of continuous fields where there are some
  bool statistics = true;           // read the statistics of models
  std::vector<std::string> fields;  // the fields wanted; empty for all
};

// Something that could not be read.
struct Problem {
  int code = 0;             // the library's status; 0 for what the program found itself
  std::string field;        // the field it is about; empty when it is not about one
  std::string text;         // a clause without a full stop
  std::optional<int> line;  // where the parser stopped
  std::optional<int> column;
  std::string parameter;  // the parameter it is about, behind its groups: "group/name"
};

enum class DocumentKind { kPmml, kDataModel, kSettings };

struct DocumentDescription {
  std::string source;  // the file as the user named it
  std::vector<VariableDescription> variables;
  std::vector<Problem> problems;   // empty when everything was read
  std::vector<std::string> notes;  // worth knowing, but nothing went wrong
  DocumentKind kind = DocumentKind::kPmml;
  std::vector<ModelStatistics> statistics;            // of PMML documents
  std::vector<ParameterDescription> parameters;       // of settings
  std::vector<RoleDescription> roles;                 // of settings
  std::vector<VariableDescription> derivedVariables;  // of settings
};

}  // namespace examples

#endif  // MCX_EXAMPLES_DOCUMENTDESCRIPTION_H
