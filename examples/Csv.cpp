#include "Csv.h"

#include <utility>

namespace examples {
namespace {

// Walks over a text and takes one field after the other off it.
class CsvScanner {
 public:
  CsvScanner(std::string_view text, char end) : text_(text), end_(end) {}

  bool AtEnd() const { return position_ >= text_.size(); }
  std::size_t Position() const { return position_; }

  // Takes the record up to the end mark, which stays.
  CsvRecord Record() {
    CsvRecord record;
    record.line = line_;
    record.fields.push_back(Field());
    while (!AtEnd() && text_[position_] == ',') {
      ++position_;
      record.fields.push_back(Field());
    }
    return record;
  }

  void SkipEndMark() {
    if (AtEnd()) return;
    if (text_[position_] == '\r') ++position_;
    if (!AtEnd()) ++position_;
    ++line_;
  }

 private:
  std::string Field() { return !AtEnd() && text_[position_] == '"' ? QuotedField() : PlainField(); }

  std::string PlainField() {
    const std::size_t first = position_;
    while (!AtFieldEnd()) {
      if (text_[position_] == '"')
        throw CsvError("a quote inside a value that is not quoted", line_);
      ++position_;
    }
    return std::string(text_.substr(first, position_ - first));
  }

  std::string QuotedField() {
    const int first_line = line_;
    std::string field;
    for (++position_; !AtEnd(); ++position_) {
      const char c = text_[position_];
      if (c == '"' && !IsDoubledQuote()) {
        ++position_;
        if (!AtFieldEnd()) throw CsvError("text behind the closing quote of a value", line_);
        return field;
      }
      if (c == '"') ++position_;
      if (c == '\n') ++line_;
      field += c;
    }
    throw CsvError("a quote is not closed", first_line);
  }

  bool IsDoubledQuote() const {
    return position_ + 1 < text_.size() && text_[position_ + 1] == '"';
  }

  bool AtFieldEnd() const {
    if (AtEnd()) return true;
    const char c = text_[position_];
    if (c == ',' || c == end_) return true;
    return end_ == '\n' && text_.substr(position_, 2) == "\r\n";
  }

  std::string_view text_;
  char end_;
  std::size_t position_ = 0;
  int line_ = 1;
};

bool IsEmptyLine(const CsvRecord& record) {
  return record.fields.size() == 1 && record.fields.front().empty();
}

}  // namespace

std::vector<CsvRecord> ReadCsv(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    text.remove_prefix(kByteOrderMark.size());
  }
  std::vector<CsvRecord> records;
  CsvScanner scanner(text, '\n');
  while (!scanner.AtEnd()) {
    CsvRecord record = scanner.Record();
    scanner.SkipEndMark();
    if (!IsEmptyLine(record)) records.push_back(std::move(record));
  }
  return records;
}

CsvRecord ReadCsvUpTo(std::string_view text, char end, std::size_t& length) {
  CsvScanner scanner(text, end);
  CsvRecord record = scanner.Record();
  length = scanner.AtEnd() ? std::string_view::npos : scanner.Position();
  return record;
}

}  // namespace examples
