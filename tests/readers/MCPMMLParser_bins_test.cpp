// SetBinsFrTransDict of the PMML reader.
#include <gtest/gtest.h>

#include <cfloat>
#include <ostream>
#include <string>
#include <vector>

#include "PmmlText.h"
#include "mccommon/MCMissingValue.h"

namespace {

using MCXPrsUtil::MCPMMLParser;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

struct BinsCase {
  const char* rule;
  std::string dictionary;  // the children of "TransformationDictionary"
  bool found;
  Numbers cuts;
  Texts values;
  friend void PrintTo(const BinsCase& test, std::ostream* out) { *out << test.rule; }
};

class SetBinsFrTransDict : public testing::TestWithParam<BinsCase> {};

TEST_P(SetBinsFrTransDict, ReadsTheBinsOfTheFieldAge) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml("", TransDict(GetParam().dictionary))).IsOK());
  Numbers cuts = {7, 8, 9};
  Texts values = {"old"};
  EXPECT_EQ(reader.SetBinsFrTransDict("age", cuts, values), GetParam().found) << GetParam().rule;
  EXPECT_EQ(cuts, GetParam().cuts) << GetParam().rule;
  EXPECT_EQ(values, GetParam().values) << GetParam().rule;
  EXPECT_TRUE(reader.GetStatus().IsOK());
}

const std::string kA = Bin("binValue='a'", "leftMargin='0' rightMargin='10'");
const std::string kB = Bin("binValue='b'", "leftMargin='10' rightMargin='20'");
const std::string kC = Bin("binValue='c'", "leftMargin='20'");

INSTANTIATE_TEST_SUITE_P(
    Dictionaries, SetBinsFrTransDict,
    testing::Values(
        BinsCase{"three bins, the last open",
                 Binned("age", kA + kB + kC),
                 true,
                 {0, 10, 20, DBL_MAX},
                 {"a", "b", "c"}},
        BinsCase{"no bins", Binned("age", ""), true, {0}, {}},
        BinsCase{"an empty dictionary", "", false, {}, {}},
        BinsCase{"a dictionary of blanks", " \n ", false, {}, {}},
        BinsCase{"another field", Binned("Age", kA), false, {}, {}},
        BinsCase{"a first interval open below",
                 Binned("age", Bin("binValue='a'", "rightMargin='5'") + kB),
                 true,
                 {-DBL_MAX, 5, 20},
                 {"a", "b"}},
        BinsCase{"margins that are no numbers count as open",
                 Binned("age", Bin("binValue='a'", "leftMargin='x' rightMargin='INF'")),
                 true,
                 {-DBL_MAX, DBL_MAX},
                 {"a"}},
        BinsCase{"NaN is a number, the missing value",
                 Binned("age", Bin("binValue='a'", "leftMargin='NaN' rightMargin='1'")),
                 true,
                 {MCMV::gMissingValue, 1},
                 {"a"}},
        BinsCase{"descending order stays", Binned("age", kB + kA), true, {10, 20, 10}, {"b", "a"}},
        BinsCase{"later left margins are ignored",
                 Binned("age", kA + Bin("binValue='b'", "leftMargin='15' rightMargin='20'")),
                 true,
                 {0, 10, 20},
                 {"a", "b"}},
        BinsCase{"a later interval without left margin",
                 Binned("age", kA + Bin("binValue='b'", "rightMargin='20'")),
                 true,
                 {0, 10, 20},
                 {"a", "b"}},
        BinsCase{"a bin without value still cuts",
                 Binned("age", kA + Bin("", "leftMargin='10' rightMargin='20'") + kC),
                 true,
                 {0, 10, 20, DBL_MAX},
                 {"a", "c"}},
        BinsCase{"an empty bin value is a value",
                 Binned("age", Bin("binValue=''", "leftMargin='0' rightMargin='1'")),
                 true,
                 {0, 1},
                 {""}},
        BinsCase{"a bin without interval has a value only",
                 Binned("age", "<DiscretizeBin binValue='x'/>" + kA),
                 true,
                 {0, 10},
                 {"x", "a"}},
        BinsCase{"several intervals in a bin all cut",
                 Binned("age",
                        "<DiscretizeBin binValue='x'><Interval leftMargin='1' "
                        "rightMargin='2'/> <Interval leftMargin='2' rightMargin='3'/>"
                        "</DiscretizeBin>"),
                 true,
                 {1, 2, 3},
                 {"x"}},
        BinsCase{"an interval without attributes",
                 Binned("age",
                        "<DiscretizeBin><Interval/>"
                        "</DiscretizeBin>"),
                 true,
                 {-DBL_MAX, DBL_MAX},
                 {}},
        BinsCase{"other nodes are passed over",
                 Binned("age", " <!-- c --><Extension/>" + kA + "text<?p q?>" + kB),
                 true,
                 {0, 10, 20},
                 {"a", "b"}},
        BinsCase{"the first match wins, in a later field",
                 Binned("age", kA) + Binned("age", kB + kC),
                 true,
                 {0, 10},
                 {"a"}},
        BinsCase{"the first match wins, in one field",
                 "<DerivedField><Discretize field='x'/><Discretize field='age'>" + kB +
                     "</Discretize><Discretize field='age'/></DerivedField>",
                 true,
                 {10, 20},
                 {"b"}},
        BinsCase{"a Discretize that is no child of a DerivedField",
                 "<Discretize field='age'>" + kA +
                     "</Discretize><DefineFunction><Discretize "
                     "field='age'/></DefineFunction><DerivedField><Apply><Discretize field='age'/>"
                     "</Apply></DerivedField>",
                 false,
                 {},
                 {}},
        BinsCase{"the derived field's own name does not count",
                 "<DerivedField name='age'><Discretize field='x'/></DerivedField>",
                 false,
                 {},
                 {}},
        BinsCase{"a prefixed Discretize",
                 "<DerivedField><p:Discretize xmlns:p='u' field='age'/>"
                 "</DerivedField>",
                 false,
                 {},
                 {}}));

TEST(MCPMMLParserBins, NoTransformationDictionaryIsNotFound) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml("")).IsOK());
  Numbers cuts = {1};
  Texts values = {"x"};
  EXPECT_FALSE(reader.SetBinsFrTransDict("age", cuts, values));
  EXPECT_TRUE(cuts.empty());
  EXPECT_TRUE(values.empty());
}

TEST(MCPMMLParserBins, DiscretizeNeedsAnAttributeButAnAbsentFieldIsTheEmptyName) {
  MCPMMLParser reader;
  Numbers cuts;
  Texts values;
  ASSERT_TRUE(
      ParseText(reader, Pmml("", TransDict("<DerivedField><Discretize/></DerivedField>"))).IsOK());
  EXPECT_FALSE(reader.SetBinsFrTransDict("", cuts, values));

  ASSERT_TRUE(ParseText(reader, Pmml("", TransDict("<DerivedField><Discretize/><Discretize "
                                                   "dataType='x'>" +
                                                   kA + "</Discretize></DerivedField>")))
                  .IsOK());
  EXPECT_TRUE(reader.SetBinsFrTransDict("", cuts, values));
  EXPECT_EQ(cuts, (Numbers{0, 10}));
  EXPECT_FALSE(reader.SetBinsFrTransDict("age", cuts, values));
}

TEST(MCPMMLParserBins, NamesAndBinValuesAreUtf8) {
  MCPMMLParser reader;
  const std::string name = "\xE5\xB9\xB4\xE9\xBE\x84 \xC3\xA9";  // two Chinese characters, e acute
  const std::string value = "\xF0\x9D\x84\x9E";                  // a character beyond 16 bits
  ASSERT_TRUE(
      ParseText(reader, Pmml("", TransDict(Binned(name, Bin("binValue='" + value + "'", "")))))
          .IsOK());
  Numbers cuts;
  Texts values;
  EXPECT_TRUE(reader.SetBinsFrTransDict(name, cuts, values));
  EXPECT_EQ(values, Texts{value});
}

TEST(MCPMMLParserBins, NameMayBeOneOfTheOutputs) {
  MCPMMLParser reader;
  ASSERT_TRUE(ParseText(reader, Pmml("", TransDict(Binned("age", kA)))).IsOK());
  Numbers cuts;
  Texts values = {"age"};
  EXPECT_TRUE(reader.SetBinsFrTransDict(values[0], cuts, values));
  EXPECT_EQ(values, Texts{"a"});
}

}  // namespace
