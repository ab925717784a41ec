#ifndef MCXPRSUTIL_TESTS_REFERENCE_CSVFILE_H_
#define MCXPRSUTIL_TESTS_REFERENCE_CSVFILE_H_

#include <istream>
#include <string>
#include <vector>

namespace reference {

/// A table of texts: the first record names the columns.
struct CsvTable {
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> records;  // each as long as `columns`
};

/// Reads comma separated values as RFC 4180 writes them; lines may also end with a line feed alone.
///
/// @throw std::runtime_error when a record has another number of cells than the first one, when a
///        quotation mark is never closed, or when there is no record at all.
CsvTable ReadCsv(std::istream& in);

}  // namespace reference

#endif  // MCXPRSUTIL_TESTS_REFERENCE_CSVFILE_H_
