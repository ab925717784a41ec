// Matrix parameters.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "SettingsText.h"
#include "mccommon/MCMissingValue.h"

namespace {

template <class Value>
using Rows = std::vector<std::vector<Value>>;
using Text = std::string;

std::string Matrix(const std::string& content) {
  return "<MatrixParmeter name='m'>" + content + "</MatrixParmeter>";
}

std::string Row(const std::vector<std::string>& cells) {
  std::string text = "<ArrayParameter>";
  for (const std::string& cell : cells) text += "<Value value='" + cell + "'/>";
  return text + "</ArrayParameter>";
}

// One matrix, read into outputs that are empty: what each type makes of it.
struct MatrixCase {
  const char* rule;
  std::string content;
  Rows<int> ints;
  Rows<double> doubles;
  Rows<Text> texts;
  friend void PrintTo(const MatrixCase& test, std::ostream* out) { *out << test.rule; }
};

class SettingsMatrix : public testing::TestWithParam<MatrixCase> {};

TEST_P(SettingsMatrix, IsReadByEveryType) {
  const auto reader = ReaderOf(Matrix(GetParam().content));
  Rows<int> ints;
  EXPECT_TRUE(reader->GetMatrix("m", ints).IsOK());
  EXPECT_EQ(ints, GetParam().ints);
  Rows<double> doubles;
  EXPECT_TRUE(reader->GetMatrix("m", doubles).IsOK());
  EXPECT_EQ(doubles, GetParam().doubles);
  Rows<Text> texts;
  EXPECT_TRUE(reader->GetMatrix("m", texts).IsOK());
  EXPECT_EQ(texts, GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, SettingsMatrix,
    testing::Values(
        MatrixCase{"no rows", "", {}, {}, {}},
        MatrixCase{"one row", Row({"1", "2"}), {{}, {1, 2}}, {{}, {1, 2}}, {{"1", "2"}}},
        MatrixCase{"two rows without white space",
                   Row({"1"}) + Row({"2"}),
                   {{}, {}, {1}, {2}},
                   {{}, {}, {1}, {2}},
                   {{"1"}, {"2"}}},
        MatrixCase{"two rows with white space make five nodes",
                   "\n" + Row({"1", "0"}) + "\n" + Row({"0", "2"}) + "\n",
                   {{}, {}, {}, {}, {}, {1, 0}, {0, 2}},
                   {{}, {}, {}, {}, {}, {1, 0}, {0, 2}},
                   {{"1", "0"}, {"0", "2"}}},
        MatrixCase{"comments and other elements count as nodes, not as rows",
                   "<!-- c --><X><Value value='9'/></X><?pi?>" + Row({"1"}),
                   {{}, {}, {}, {}, {1}},
                   {{}, {}, {}, {}, {1}},
                   {{"1"}}},
        MatrixCase{"white space alone", " ", {{}}, {{}}, {}},
        MatrixCase{"an empty row is a row",
                   "<ArrayParameter/>" + Row({"1"}),
                   {{}, {}, {}, {1}},
                   {{}, {}, {}, {1}},
                   {{}, {"1"}}},
        MatrixCase{"rows of different lengths",
                   Row({"1", "2", "3"}) + Row({"4"}),
                   {{}, {}, {1, 2, 3}, {4}},
                   {{}, {}, {1, 2, 3}, {4}},
                   {{"1", "2", "3"}, {"4"}}},
        MatrixCase{"a word is left out of the numbers",
                   Row({"1", "x", "2"}),
                   {{}, {1, 2}},
                   {{}, {1, 2}},
                   {{"1", "x", "2"}}},
        MatrixCase{"a negative number and a fraction are no ints",
                   Row({"-1", "2.5", "3"}),
                   {{}, {3}},
                   {{}, {-1, 2.5, 3}},
                   {{"-1", "2.5", "3"}}},
        MatrixCase{"what no number can hold",
                   Row({"2147483648", "INF", "1e400", "0"}),
                   {{}, {0}},
                   {{}, {2147483648.0, 0}},
                   {{"2147483648", "INF", "1e400", "0"}}},
        MatrixCase{"NaN is the missing value",
                   Row({"NaN"}),
                   {{}, {}},
                   {{}, {MCMV::gMissingValue}},
                   {{"NaN"}}},
        MatrixCase{"an empty text is a cell", Row({"", "1"}), {{}, {1}}, {{}, {1}}, {{"", "1"}}},
        MatrixCase{"cells without a value, other nodes and other names are skipped",
                   "<ArrayParameter value='8'>t<Value/><Value v='7'/><!-- c --><X value='6'/>"
                   "<value value='5'/><Value a='0' value='4'/> </ArrayParameter>",
                   {{}, {4}},
                   {{}, {4}},
                   {{"4"}}},
        MatrixCase{"cells below another element are none",
                   "<ArrayParameter><X><Value value='1'/></X></ArrayParameter>",
                   {{}, {}},
                   {{}, {}},
                   {{}}},
        MatrixCase{"cells without a row are none", "<Value value='1'/>", {{}}, {{}}, {}},
        MatrixCase{"names of rows are case-sensitive",
                   "<arrayParameter><Value value='1'/></arrayParameter>",
                   {{}},
                   {{}},
                   {}},
        MatrixCase{"text beyond ASCII", Row({"\u00E4"}), {{}, {}}, {{}, {}}, {{"\u00E4"}}}));

// Earlier content.

TEST(SettingsMatrices, EarlierRowsWithinTheNodeCountKeepTheirContent) {
  const auto reader = ReaderOf(Matrix(" " + Row({"1"}) + " "));
  Rows<int> ints = {{7, 8}, {9}};
  EXPECT_TRUE(reader->GetMatrix("m", ints).IsOK());
  EXPECT_EQ(ints, (Rows<int>{{7, 8}, {9}, {}, {1}}));
  Rows<double> doubles = {{7.5}};
  EXPECT_TRUE(reader->GetMatrix("m", doubles).IsOK());
  EXPECT_EQ(doubles, (Rows<double>{{7.5}, {}, {}, {1}}));
}

TEST(SettingsMatrices, EarlierRowsBeyondTheNodeCountAreDropped) {
  const auto reader = ReaderOf(Matrix(Row({"1"})));
  Rows<int> ints = {{7}, {8}, {9}};
  EXPECT_TRUE(reader->GetMatrix("m", ints).IsOK());
  EXPECT_EQ(ints, (Rows<int>{{7}, {1}}));
  Rows<double> doubles = {{7}, {8}, {9}};
  EXPECT_TRUE(reader->GetMatrix("m", doubles).IsOK());
  EXPECT_EQ(doubles, (Rows<double>{{7}, {1}}));
}

TEST(SettingsMatrices, EarlierRowsOfTextsAreDropped) {
  const auto reader = ReaderOf(Matrix(" " + Row({"1"})));
  Rows<Text> texts = {{"a"}, {"b"}, {"c"}};
  EXPECT_TRUE(reader->GetMatrix("m", texts).IsOK());
  EXPECT_EQ(texts, (Rows<Text>{{"1"}}));
}

TEST(SettingsMatrices, SecondReadAppendsBehindTheFirst) {
  const auto reader = ReaderOf(Matrix(Row({"1"}) + Row({"2"})));
  Rows<int> rows;
  EXPECT_TRUE(reader->GetMatrix("m", rows).IsOK());
  rows[0] = {5};
  EXPECT_TRUE(reader->GetMatrix("m", rows).IsOK());
  EXPECT_EQ(rows, (Rows<int>{{5}, {}, {1}, {2}}));
}

// Look-up.

TEST(SettingsMatrices, AreKnownByTheirOwnSpellingOnly) {
  for (const char* tag : {"MatrixParameter", "Parameter", "ComplexParameter", "matrixParmeter"}) {
    const std::string open = std::string("<") + tag + " name='m' value='1'>";
    const auto reader = ReaderOf(open + Row({"1"}) + "</" + tag + ">");
    Rows<int> ints = {{7}};
    Rows<double> doubles = {{7}};
    Rows<Text> texts = {{"7"}};
    EXPECT_EQ(reader->GetMatrix("m", ints), NotGiven(120)) << tag;
    EXPECT_EQ(reader->GetMatrix("m", doubles), NotGiven(120)) << tag;
    EXPECT_EQ(reader->GetMatrix("m", texts), NotGiven(120)) << tag;
    EXPECT_EQ(ints, (Rows<int>{{7}}));
    EXPECT_EQ(doubles, (Rows<double>{{7}}));
    EXPECT_EQ(texts, (Rows<Text>{{"7"}}));
  }
}

TEST(SettingsMatrices, FirstOfANameCountsAndNamelessOnesDoNot) {
  const auto reader = ReaderOf("<MatrixParmeter>" + Row({"0"}) + "</MatrixParmeter>" +
                               Matrix(Row({"1"})) + Matrix(Row({"2"})));
  Rows<Text> texts;
  EXPECT_TRUE(reader->GetMatrix("m", texts).IsOK());
  EXPECT_EQ(texts, (Rows<Text>{{"1"}}));
}

TEST(SettingsMatrices, AreReadFromTheScope) {
  const auto reader = ReaderOf(Group("g", Matrix(Row({"1"}))));
  void* group = reader->GetComplexParameter("g");
  Rows<int> ints;
  EXPECT_EQ(reader->GetMatrix("m", ints), NotGiven(120));
  EXPECT_TRUE(reader->GetMatrix("m", ints, group).IsOK());
  EXPECT_EQ(ints, (Rows<int>{{}, {1}}));
  Rows<double> doubles;
  EXPECT_EQ(reader->GetMatrix("m", doubles), NotGiven(120));
  EXPECT_TRUE(reader->GetMatrix("m", doubles, group).IsOK());
  EXPECT_EQ(doubles, (Rows<double>{{}, {1}}));
  Rows<Text> texts;
  EXPECT_EQ(reader->GetMatrix("m", texts), NotGiven(120));
  EXPECT_TRUE(reader->GetMatrix("m", texts, group).IsOK());
  EXPECT_EQ(texts, (Rows<Text>{{"1"}}));
}

}  // namespace
