#include "Csv.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using examples::CsvError;
using examples::ReadCsv;
using examples::ReadCsvUpTo;
using Rows = std::vector<std::vector<std::string>>;

Rows FieldsOf(const std::string& text) {
  Rows rows;
  for (const auto& record : ReadCsv(text)) rows.push_back(record.fields);
  return rows;
}

struct CsvCase {
  const char* rule;
  std::string text;
  Rows rows;
};

TEST(Csv, ReadsWhatTheFormatAllows) {
  const CsvCase cases[] = {
      {"nothing", "", {}},
      {"a record needs no line end", "a,b", {{"a", "b"}}},
      {"lines end with LF", "a\nb\n", {{"a"}, {"b"}}},
      {"lines end with CR LF", "a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
      {"a CR elsewhere is text", "a\rb\n", {{"a\rb"}}},
      {"empty lines are skipped", "a\n\n\r\nb", {{"a"}, {"b"}}},
      {"empty fields stay", ",a,\n", {{"", "a", ""}}},
      {"spaces belong to the value", " a , b\n", {{" a ", " b"}}},
      {"quotes protect commas", "\"a,b\",c", {{"a,b", "c"}}},
      {"quotes protect line ends", "\"a\r\nb\"\nc", {{"a\r\nb"}, {"c"}}},
      {"doubled quotes are one", "\"a\"\"b\"", {{"a\"b"}}},
      {"a quoted field may be empty", "\"\",x", {{"", "x"}}},
      {"a byte order mark is skipped",
       "\xEF\xBB\xBF"
       "a,b",
       {{"a", "b"}}},
      {"other bytes are text", "\xC3\xA9,\xFF", {{"\xC3\xA9", "\xFF"}}},
  };
  for (const CsvCase& c : cases) EXPECT_EQ(FieldsOf(c.text), c.rows) << c.rule;
}

TEST(Csv, RefusesBrokenQuotingWithItsLine) {
  const struct {
    const char* text;
    int line;
    const char* what;
  } cases[] = {
      {"a\n\"b", 2, "a quote is not closed"},
      {"\"a\nb\nc", 1, "a quote is not closed"},
      {"a\nb\"c\n", 2, "a quote inside a value that is not quoted"},
      {"\"a\n\"b\n", 2, "text behind the closing quote of a value"},
  };
  for (const auto& c : cases) {
    try {
      ReadCsv(c.text);
      ADD_FAILURE() << c.text;
    } catch (const CsvError& error) {
      EXPECT_EQ(error.Line(), c.line) << c.text;
      EXPECT_STREQ(error.what(), c.what) << c.text;
    }
  }
}

TEST(Csv, RecordsKnowTheirLine) {
  const auto records = ReadCsv("a\n\n\"b\nc\"\nd\n");
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records[0].line, 1);
  EXPECT_EQ(records[1].line, 3);
  EXPECT_EQ(records[2].line, 5);
}

TEST(Csv, AnEndMarkWithinQuotesIsText) {
  std::size_t length = 0;
  const auto record = ReadCsvUpTo("a,\"b=c\"=d=e", '=', length);
  EXPECT_EQ(record.fields, (std::vector<std::string>{"a", "b=c"}));
  EXPECT_EQ(length, 7U);
}

TEST(Csv, AMissingEndMarkIsTold) {
  std::size_t length = 0;
  ReadCsvUpTo("a,b", '=', length);
  EXPECT_EQ(length, std::string::npos);
}

}  // namespace
