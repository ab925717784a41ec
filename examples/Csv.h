// Comma-separated values as RFC 4180 describes them.
#ifndef MCX_EXAMPLES_CSV_H
#define MCX_EXAMPLES_CSV_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace examples {

// A text that breaks the rules of quoting.
class CsvError : public std::runtime_error {
 public:
  CsvError(const std::string& what, int line) : std::runtime_error(what), line_(line) {}
  int Line() const { return line_; }  // from 1

 private:
  int line_;
};

struct CsvRecord {
  int line = 0;  // where it begins, from 1
  std::vector<std::string> fields;
};

// Reads all records of a text. Lines end with LF or CR LF, also within quotes; empty lines and a
// byte order mark at the beginning are skipped. Throws CsvError.
std::vector<CsvRecord> ReadCsv(std::string_view text);

// Reads one record from the beginning of `text` up to the first `end` outside quotes and sets
// `length` to the number of bytes before it; npos when there is no `end`. Throws CsvError.
CsvRecord ReadCsvUpTo(std::string_view text, char end, std::size_t& length);

}  // namespace examples

#endif  // MCX_EXAMPLES_CSV_H
