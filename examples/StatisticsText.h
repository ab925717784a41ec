// Shows distributions to people.
#ifndef MCX_EXAMPLES_STATISTICSTEXT_H
#define MCX_EXAMPLES_STATISTICSTEXT_H

#include <iosfwd>

#include "DescriptionTable.h"
#include "StatisticsDescription.h"

namespace examples {

// The model's name, then per field its summary and a histogram: a line per bin or category with its
// frequency, its share of all records and a bar.
void PrintStatistics(std::ostream& out, const ModelStatistics& model, const TableOptions& options);

}  // namespace examples

#endif  // MCX_EXAMPLES_STATISTICSTEXT_H
