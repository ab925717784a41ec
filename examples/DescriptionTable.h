// Shows the description of a document to people.
#ifndef MCX_EXAMPLES_DESCRIPTIONTABLE_H
#define MCX_EXAMPLES_DESCRIPTIONTABLE_H

#include <cstddef>
#include <iosfwd>
#include <string>

#include "DocumentDescription.h"

namespace examples {

struct TableOptions {
  std::size_t width = 100;  // columns of the terminal
  bool allValues = false;   // show long lists of values in full
};

// The source and what it is, the parameters of settings, tables of the variables, the statistics of
// models, and the notes.
void PrintDescription(std::ostream& out, const DocumentDescription& description,
                      const TableOptions& options);

// One line that names the document, the field or parameter and what is wrong.
std::string ProblemLine(const std::string& source, const Problem& problem);

}  // namespace examples

#endif  // MCX_EXAMPLES_DESCRIPTIONTABLE_H
