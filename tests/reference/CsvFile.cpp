#include "reference/CsvFile.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace reference {
namespace {

// Takes the text behind an opening quotation mark up to the closing one; two marks stand for one.
std::string TakeQuoted(std::string_view& text) {
  std::string cell;
  for (;;) {
    const auto mark = text.find('"');
    if (mark == text.npos) throw std::runtime_error("CSV: a quotation mark is never closed");
    cell.append(text.substr(0, mark));
    text.remove_prefix(mark + 1);
    if (text.empty() || text.front() != '"') return cell;
    cell.push_back('"');
    text.remove_prefix(1);
  }
}

std::string TakeCell(std::string_view& text) {
  if (!text.empty() && text.front() == '"') {
    text.remove_prefix(1);
    return TakeQuoted(text);
  }
  const auto length = std::min(text.find_first_of(",\r\n"), text.size());
  std::string cell(text.substr(0, length));
  text.remove_prefix(length);
  return cell;
}

// Takes the separator behind a cell; true when another cell of the same record follows.
bool TakeSeparator(std::string_view& text) {
  if (text.empty()) return false;
  if (text.front() == ',') {
    text.remove_prefix(1);
    return true;
  }
  if (text.front() == '\r') text.remove_prefix(1);
  if (text.empty() || text.front() != '\n') throw std::runtime_error("CSV: text behind a cell");
  text.remove_prefix(1);
  return false;
}

std::vector<std::string> TakeRecord(std::string_view& text) {
  std::vector<std::string> cells;
  do {
    cells.push_back(TakeCell(text));
  } while (TakeSeparator(text));
  return cells;
}

}  // namespace

CsvTable ReadCsv(std::istream& in) {
  const std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  std::string_view text(content);
  if (text.empty()) throw std::runtime_error("CSV: no record");
  CsvTable table;
  table.columns = TakeRecord(text);
  while (!text.empty()) {
    table.records.push_back(TakeRecord(text));
    if (table.records.back().size() != table.columns.size()) {
      throw std::runtime_error("CSV: a record differs from the header in its number of cells");
    }
  }
  return table;
}

}  // namespace reference
