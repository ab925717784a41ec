#include "TextTable.h"

#include <algorithm>
#include <numeric>
#include <ostream>
#include <string_view>
#include <utility>

#include "DisplayWidth.h"

namespace examples {
namespace {

constexpr std::string_view kGap = "  ";
constexpr std::string_view kIndent = "  ";
constexpr std::size_t kNarrowestColumn = 10;
constexpr std::size_t kLongestWord = 24;

using Lines = std::vector<std::string>;

// Appends an item, broken at a space where there is one if it is wider than the column. What
// follows a break is indented by `hanging`.
void AppendItem(Lines& lines, std::string_view item, std::size_t width, std::string_view hanging) {
  std::string_view indent;
  while (DisplayWidth(item) > width - indent.size()) {
    const std::size_t fits = PrefixThatFits(item, width - indent.size());
    const std::size_t space = item.substr(0, fits + 1).rfind(' ');
    const bool atSpace = space != std::string_view::npos && space > 0;
    lines.push_back(std::string(indent).append(item.substr(0, atSpace ? space : fits)));
    item.remove_prefix(atSpace ? space + 1 : fits);
    indent = hanging;
  }
  lines.push_back(std::string(indent).append(item));
}

Lines WrapCell(const TextCell& cell, std::size_t width) {
  // In a list an indented line is not taken for the next item.
  const std::string_view hanging = cell.items.size() > 1 ? kIndent : "";
  Lines lines;
  bool startsLine = true;
  for (std::size_t i = 0; i < cell.items.size(); ++i) {
    const bool separated = !cell.oneItemPerLine && i + 1 < cell.items.size();
    const std::string item = cell.items[i] + (separated ? "," : "");
    if (!startsLine && DisplayWidth(lines.back()) + 1 + DisplayWidth(item) <= width) {
      lines.back() += " " + item;
      continue;
    }
    const std::size_t before = lines.size();
    AppendItem(lines, item, width, hanging);
    startsLine = cell.oneItemPerLine || lines.size() > before + 1;
  }
  return lines;
}

// The widths at which a cell needs no line break of ours, at which no item is broken, and at which
// no word of usual length is broken.
struct CellWidths {
  std::size_t natural = 0;
  std::size_t unbroken = 0;
  std::size_t word = 0;
};

std::size_t LongestWord(std::string_view text) {
  std::size_t longest = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    longest = std::max(longest, DisplayWidth(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return longest;
}

CellWidths MeasureCell(const TextCell& cell) {
  CellWidths widths;
  if (cell.items.empty()) return widths;
  const std::size_t comma = cell.oneItemPerLine || cell.items.size() == 1 ? 0 : 1;
  std::size_t sum = 0;
  for (const std::string& item : cell.items) {
    const std::size_t width = DisplayWidth(item);
    widths.unbroken = std::max(widths.unbroken, width + comma);
    sum += width + 2;
    const std::size_t hanging = cell.items.size() > 1 ? kIndent.size() : 0;
    widths.word = std::max(widths.word, LongestWord(item) + comma + hanging);
  }
  widths.natural = cell.oneItemPerLine ? widths.unbroken : sum - 2;
  return widths;
}

// Takes from the widest column first, so that a long list wraps before a name does, until the table
// fits or no column may get narrower.
void Shrink(std::vector<std::size_t>& widths, const std::vector<std::size_t>& narrowest,
            std::size_t room) {
  std::size_t total = std::accumulate(widths.begin(), widths.end(), std::size_t{0});
  while (total > room) {
    std::size_t widest = widths.size();
    for (std::size_t i = 0; i < widths.size(); ++i) {
      if (widths[i] <= narrowest[i]) continue;
      if (widest == widths.size() || widths[i] > widths[widest]) widest = i;
    }
    if (widest == widths.size()) return;
    --widths[widest];
    --total;
  }
}

// Widens each column to what it would like as long as there is room for all of it.
void Widen(std::vector<std::size_t>& widths, const std::vector<std::size_t>& wanted,
           std::size_t room) {
  std::size_t total = std::accumulate(widths.begin(), widths.end(), std::size_t{0});
  for (std::size_t i = 0; i < widths.size(); ++i) {
    if (wanted[i] <= widths[i] || total + wanted[i] - widths[i] > room) continue;
    total += wanted[i] - widths[i];
    widths[i] = wanted[i];
  }
}

void PrintLine(std::ostream& out, const Lines& texts, const std::vector<std::size_t>& widths) {
  std::string line;
  std::size_t column = 0;
  std::size_t written = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (!texts[i].empty()) {
      line.append(column - written, ' ');
      line += texts[i];
      written = column + DisplayWidth(texts[i]);
    }
    column += widths[i] + kGap.size();
  }
  out << line << '\n';
}

void PrintRow(std::ostream& out, const std::vector<Lines>& cells,
              const std::vector<std::size_t>& widths) {
  std::size_t height = 1;
  for (const Lines& cell : cells) height = std::max(height, cell.size());
  for (std::size_t i = 0; i < height; ++i) {
    Lines texts;
    for (const Lines& cell : cells) texts.push_back(i < cell.size() ? cell[i] : "");
    PrintLine(out, texts, widths);
  }
}

}  // namespace

TextTable::TextTable(std::vector<std::string> headings) : headings_(std::move(headings)) {}

void TextTable::AddRow(std::vector<TextCell> cells) {
  cells.resize(headings_.size());
  rows_.push_back(std::move(cells));
}

std::vector<std::size_t> TextTable::UsedColumns() const {
  std::vector<std::size_t> used;
  for (std::size_t c = 0; c < headings_.size(); ++c) {
    const bool filled = std::any_of(rows_.begin(), rows_.end(),
                                    [c](const auto& row) { return !row[c].items.empty(); });
    if (filled) used.push_back(c);
  }
  return used;
}

std::size_t TextTable::UsedWidth(std::size_t column, std::size_t width) const {
  std::size_t used = DisplayWidth(headings_[column]);
  for (const auto& row : rows_) {
    for (const std::string& line : WrapCell(row[column], width)) {
      used = std::max(used, DisplayWidth(line));
    }
  }
  return used;
}

std::vector<std::size_t> TextTable::ColumnWidths(const std::vector<std::size_t>& columns,
                                                 std::size_t width) const {
  std::vector<std::size_t> natural;
  std::vector<std::size_t> unbroken;
  std::vector<std::size_t> narrowest;
  for (std::size_t c : columns) {
    const std::size_t heading = DisplayWidth(headings_[c]);
    CellWidths column{heading, heading, std::max(heading, kNarrowestColumn)};
    for (const auto& row : rows_) {
      const CellWidths cell = MeasureCell(row[c]);
      column.natural = std::max(column.natural, cell.natural);
      column.unbroken = std::max(column.unbroken, cell.unbroken);
      column.word = std::max(column.word, std::min(cell.word, kLongestWord));
    }
    natural.push_back(column.natural);
    unbroken.push_back(column.unbroken);
    narrowest.push_back(column.word);
  }
  const std::size_t gaps = columns.empty() ? 0 : kGap.size() * (columns.size() - 1);
  const std::size_t room = width > gaps ? width - gaps : 0;
  std::vector<std::size_t> widths = natural;
  // Lists wrap between their items first; only then are items broken.
  Shrink(widths, unbroken, room);
  Shrink(widths, narrowest, room);
  // Lines that break early leave room, which spares another column its breaks.
  for (std::size_t i = 0; i < columns.size(); ++i) widths[i] = UsedWidth(columns[i], widths[i]);
  Widen(widths, unbroken, room);
  Widen(widths, natural, room);
  return widths;
}

void TextTable::Print(std::ostream& out, std::size_t width) const {
  const std::vector<std::size_t> columns = UsedColumns();
  const std::vector<std::size_t> widths = ColumnWidths(columns, width);
  std::vector<Lines> heading;
  std::vector<Lines> rule;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    heading.push_back({headings_[columns[i]]});
    rule.push_back({std::string(widths[i], '-')});
  }
  PrintRow(out, heading, widths);
  PrintRow(out, rule, widths);
  for (const auto& row : rows_) {
    std::vector<Lines> cells;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      cells.push_back(WrapCell(row[columns[i]], widths[i]));
    }
    PrintRow(out, cells, widths);
  }
}

}  // namespace examples
