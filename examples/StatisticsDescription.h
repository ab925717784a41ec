// The univariate statistics of models as plain data that can be shown.
#ifndef MCX_EXAMPLES_STATISTICSDESCRIPTION_H
#define MCX_EXAMPLES_STATISTICSDESCRIPTION_H

#include <optional>
#include <string>
#include <vector>

#include "VariableDescription.h"

namespace examples {

// A bin of a continuous field, or a category.
struct FrequencyDescription {
  RangeDescription range;                    // of a bin
  std::optional<ValueDescription> category;  // not set where the dictionary does not tell which
  double frequency = 0;
};

struct FieldStatistics {
  std::string field;
  std::string label;  // from the dictionary; may be empty
  double total = 0;   // number of records, those without a value included
  bool continuous = false;
  std::optional<double> minimum;  // the summary is that of continuous fields
  std::optional<double> maximum;
  std::optional<double> mean;
  std::optional<double> standardDeviation;
  std::vector<FrequencyDescription> frequencies;
};

struct ModelStatistics {
  std::string element;  // "TreeModel" and the like
  std::string name;     // may be empty
  std::vector<FieldStatistics> fields;
};

}  // namespace examples

#endif  // MCX_EXAMPLES_STATISTICSDESCRIPTION_H
