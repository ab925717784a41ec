// List-valued parameters.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "SettingsText.h"
#include "mccommon/MCMissingValue.h"

namespace {

using MCCommon::MCStatus;

std::string Entry(const std::string& value) { return "<Value value='" + value + "'/>"; }

// The array of one parameter, read into a list that is not empty.
template <class Value>
struct ArrayCase {
  const char* rule;
  std::string attributes;
  std::string content;
  MCStatus status;
  std::vector<Value> after;
  friend void PrintTo(const ArrayCase& test, std::ostream* out) { *out << test.rule; }
};

template <class Value>
void CheckArray(const ArrayCase<Value>& test) {
  const auto reader = ReaderOf(Group("g", Parameter("p", test.attributes, test.content)));
  std::vector<Value> values(5);
  EXPECT_EQ(reader->GetArray("p", values), NotGiven(120)) << "it stands in a group";
  EXPECT_EQ(values, std::vector<Value>(5));
  EXPECT_EQ(reader->GetArray("p", values, reader->GetComplexParameter("g")), test.status);
  EXPECT_EQ(values, test.after);
}

// What every type has in common.
template <class Value>
std::vector<ArrayCase<Value>> CommonCases(Value one, Value two) {
  const std::string list = List(Entry("1") + Entry("2"));
  return {
      {"a single value", "value='1'", "", {}, {one}},
      {"a list", "", list, {}, {one, two}},
      {"the list wins over the value", "value='7'", list, {}, {one, two}},
      {"an empty list wins over the value", "value='7'", List(""), NotGiven(123), {}},
      {"isList does not matter", "isList='false' value='7'", list, {}, {one, two}},
      {"isList without a list", "isList='true' value='1'", "", {}, {one}},
      {"the type does not matter", "type='boolean'", list, {}, {one, two}},
      {"the first list counts", "", List(Entry("1")) + list, {}, {one}},
      {"other nodes in the list",
       "",
       List("\n <X value='7'/>" + Entry("1") + "<!-- c --><value value='7'/>" + Entry("2")),
       {},
       {one, two}},
      {"neither value nor list", "", Entry("1"), NotGiven(123), {}},
      {"a list without entries", "", List("<X/> "), NotGiven(123), {}},
      {"a list below another element", "", "<X>" + list + "</X>", NotGiven(123), {}},
      {"an entry without a value stops the walk",
       "",
       List(Entry("1") + Entry("2") + "<Value/>" + Entry("3")),
       NotGiven(123),
       {one, two}},
      {"a first entry without a value", "", List("<Value v='1'/>"), NotGiven(123), {}},
  };
}

using IntCase = ArrayCase<int>;
class IntArray : public testing::TestWithParam<IntCase> {};
TEST_P(IntArray, IsRead) { CheckArray(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Common, IntArray, testing::ValuesIn(CommonCases<int>(1, 2)));
INSTANTIATE_TEST_SUITE_P(
    Values, IntArray,
    testing::Values(
        IntCase{"zero", "value='0'", "", {}, {0}},
        IntCase{"a negative value", "value='-1'", "", Error(109), {}},
        IntCase{"a value that is no number", "value='x'", "", Error(109), {}},
        IntCase{"an empty value", "value=''", "", Error(109), {}},
        IntCase{"a fraction", "value='1.5'", "", Error(109), {}},
        IntCase{"beyond int", "value='2147483648'", "", Error(109), {}},
        IntCase{"a negative entry stops the walk",
                "",
                List(Entry("5") + Entry("-1") + Entry("6")),
                Error(109),
                {5}},
        IntCase{"an empty entry is no number", "", List(Entry("5") + Entry("")), Error(109), {5}},
        IntCase{"the first failure counts: the number",
                "",
                List(Entry("x") + "<Value/>"),
                Error(109),
                {}},
        IntCase{"the first failure counts: the absence",
                "",
                List("<Value/>" + Entry("x")),
                NotGiven(123),
                {}}));

using DoubleCase = ArrayCase<double>;
class DoubleArray : public testing::TestWithParam<DoubleCase> {};
TEST_P(DoubleArray, IsRead) { CheckArray(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Common, DoubleArray, testing::ValuesIn(CommonCases<double>(1, 2)));
INSTANTIATE_TEST_SUITE_P(
    Values, DoubleArray,
    testing::Values(DoubleCase{"negative and fractional numbers",
                               "",
                               List(Entry("-1.5") + Entry("1e2") + Entry("NaN")),
                               {},
                               {-1.5, 100, MCMV::gMissingValue}},
                    DoubleCase{"a value that is no number", "value='x'", "", Error(109), {}},
                    DoubleCase{"an infinity", "value='INF'", "", Error(109), {}},
                    DoubleCase{"an entry that is no number stops the walk",
                               "",
                               List(Entry("1") + Entry("x") + Entry("2")),
                               Error(109),
                               {1}},
                    DoubleCase{"an empty entry", "", List(Entry("")), Error(109), {}}));

using StringCase = ArrayCase<std::string>;
class StringArray : public testing::TestWithParam<StringCase> {};
TEST_P(StringArray, IsRead) { CheckArray(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Common, StringArray,
                         testing::ValuesIn(CommonCases<std::string>("1", "2")));
INSTANTIATE_TEST_SUITE_P(
    Values, StringArray,
    testing::Values(
        StringCase{"an empty value is no entry", "value=''", "", {}, {}},
        StringCase{"an empty entry in the middle",
                   "",
                   List(Entry("a") + Entry("") + Entry("b")),
                   {},
                   {"a", "b"}},
        StringCase{"only empty entries", "", List(Entry("") + Entry("")), {}, {}},
        StringCase{"white space is text", "", List(Entry(" ") + Entry(" b")), {}, {" ", " b"}},
        StringCase{"beyond ASCII", "value='\u00E4&#x1F600;'", "", {}, {"\u00E4\U0001F600"}},
        StringCase{"twice the same", "", List(Entry("a") + Entry("a")), {}, {"a", "a"}}));

TEST(SettingsArrays, MissingParameterLeavesTheOutput) {
  const auto reader = ReaderOf("<MatrixParmeter name='p'/>" + Group("p", ""));
  std::vector<int> ints = {1};
  std::vector<double> doubles = {1.5};
  std::vector<std::string> texts = {"x"};
  EXPECT_EQ(reader->GetArray("p", ints), NotGiven(120));
  EXPECT_EQ(reader->GetArray("p", doubles), NotGiven(120));
  EXPECT_EQ(reader->GetArray("p", texts), NotGiven(120));
  EXPECT_EQ(ints, std::vector<int>{1});
  EXPECT_EQ(doubles, std::vector<double>{1.5});
  EXPECT_EQ(texts, std::vector<std::string>{"x"});
}

TEST(SettingsArrays, LongListIsReadInOrder) {
  constexpr int kEntries = 100000;
  std::string entries;
  for (int i = 0; i < kEntries; ++i) entries += Entry(std::to_string(i));
  const auto reader = ReaderOf(Parameter("p", "", List(entries)));
  std::vector<int> values;
  ASSERT_TRUE(reader->GetArray("p", values).IsOK());
  ASSERT_EQ(values.size(), static_cast<std::size_t>(kEntries));
  for (int i = 0; i < kEntries; ++i) ASSERT_EQ(values[static_cast<std::size_t>(i)], i);
}

}  // namespace
