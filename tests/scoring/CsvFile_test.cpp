#include "reference/CsvFile.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Records = std::vector<std::vector<std::string>>;

reference::CsvTable Read(const std::string& text) {
  std::istringstream in(text);
  return reference::ReadCsv(in);
}

TEST(CsvFile, FirstRecordNamesTheColumns) {
  const auto table = Read("a,b\n1,2\n3,4\n");
  EXPECT_EQ(table.columns, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(table.records, (Records{{"1", "2"}, {"3", "4"}}));
}

TEST(CsvFile, CellsMayBeEmpty) { EXPECT_EQ(Read("a,b,c\n,,\n").records, (Records{{"", "", ""}})); }

TEST(CsvFile, QuotedCellHoldsCommasQuotationMarksAndLineEnds) {
  EXPECT_EQ(Read("a,b\n\"1,\"\"2\"\"\n3\",4\n").records, (Records{{"1,\"2\"\n3", "4"}}));
}

TEST(CsvFile, LinesMayEndWithCarriageReturnAndTheLastOneWithNothing) {
  EXPECT_EQ(Read("a,b\r\n1,2\r\n3,4").records, (Records{{"1", "2"}, {"3", "4"}}));
}

TEST(CsvFile, WhatIsNoTableIsRefused) {
  for (const char* text :
       {"", "a,b\n1\n", "a,b\n1,2,3\n", "a\n\"1\n", "a\n\"1\"2\n", "a\n1\r2\n"}) {
    EXPECT_THROW(Read(text), std::runtime_error) << text;
  }
}

}  // namespace
