// A table of text with aligned columns and wrapped cells.
#ifndef MCX_EXAMPLES_TEXTTABLE_H
#define MCX_EXAMPLES_TEXTTABLE_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace examples {

// The content of a cell: items that are shown as a list. Lines break between items; an item is
// broken only when it is wider than its column.
struct TextCell {
  std::vector<std::string> items;
  bool oneItemPerLine = false;
};

// Collects rows and prints them so that every column is as wide as it must be and the table as
// narrow as asked. A column that is empty in every row is left out.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> headings);

  // One cell per heading. The items must be printable (see Printable()).
  void AddRow(std::vector<TextCell> cells);

  // `width` is the widest line wanted; a table with many columns may come out wider, because a
  // column never gets narrower than its heading and some characters.
  void Print(std::ostream& out, std::size_t width) const;

 private:
  std::vector<std::size_t> UsedColumns() const;
  std::size_t UsedWidth(std::size_t column, std::size_t width) const;
  std::vector<std::size_t> ColumnWidths(const std::vector<std::size_t>& columns,
                                        std::size_t width) const;

  std::vector<std::string> headings_;
  std::vector<std::vector<TextCell>> rows_;
};

}  // namespace examples

#endif  // MCX_EXAMPLES_TEXTTABLE_H
