// Runs describe_pmml on documents with univariate statistics.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "RunProgram.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing_examples::ProgramResult;
using testing_examples::ReadFile;
using testing_examples::RunProgram;
using Json = nlohmann::json;

const std::string kAirQuality = std::string(MCX_EXAMPLE_DATA) + "/airquality_stats.pmml";

ProgramResult Describe(const std::vector<std::string>& arguments, const std::string& input = "") {
  return RunProgram(MCX_DESCRIBE_PMML, arguments, {input, false});
}

std::string Document(const std::string& fields, const std::string& statistics) {
  return "<PMML><DataDictionary>" + fields + "</DataDictionary><TreeModel><ModelStats>" +
         statistics + "</ModelStats></TreeModel></PMML>";
}

std::string Categorical(const std::string& name, const std::string& values = "") {
  return "<DataField name='" + name + "' optype='categorical' dataType='string'>" + values +
         "</DataField>";
}

std::string Counted(const std::string& field, const std::string& total,
                    const std::string& frequencies) {
  return "<UnivariateStats field='" + field + "'><Counts totalFreq='" + total +
         "'/><DiscrStats><Array type='real'>" + frequencies +
         "</Array></DiscrStats></UnivariateStats>";
}

// The statistics of the first model in the program's JSON.
Json Statistics(const ProgramResult& result) {
  return Json::parse(result.out).at("documents").at(0).at("statistics").at(0).at("fields");
}

// The part of the file that R wrote about a field.
std::string PartOfFile(const std::string& field) {
  const std::string text = ReadFile(kAirQuality);
  const std::size_t begin = text.find("<UnivariateStats field=\"" + field + "\"");
  return text.substr(begin, text.find("</UnivariateStats>", begin) - begin);
}

double NumberInFile(const std::string& part, const std::string& attribute) {
  std::smatch match;
  EXPECT_TRUE(std::regex_search(part, match, std::regex(attribute + "=\"([^\"]*)\""))) << attribute;
  return std::stod(match[1]);
}

std::vector<double> ArrayInFile(const std::string& part) {
  std::smatch match;
  EXPECT_TRUE(std::regex_search(part, match, std::regex("<Array[^>]*>([^<]*)<")));
  std::istringstream in(match[1]);
  std::vector<double> numbers;
  for (double number = 0; in >> number;) numbers.push_back(number);
  return numbers;
}

TEST(DescribeStatistics, AreThoseThatRComputed) {
  const ProgramResult result = Describe({"--json", kAirQuality});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const Json fields = Statistics(result);
  ASSERT_EQ(fields.size(), 5U);
  for (const Json& field : fields) {
    const std::string part = PartOfFile(field["field"]);
    EXPECT_EQ(field["total"], NumberInFile(part, "totalFreq"));
    const bool continuous = field["kind"] == "continuous";
    const Json& entries = field[continuous ? "bins" : "categories"];
    std::vector<double> frequencies;
    for (const Json& entry : entries) frequencies.push_back(entry["frequency"]);
    EXPECT_EQ(frequencies, ArrayInFile(part)) << field["field"];
    if (!continuous) continue;
    for (const char* figure : {"minimum", "maximum", "mean", "standardDeviation"}) {
      EXPECT_EQ(field[figure], NumberInFile(part, figure)) << field["field"] << ' ' << figure;
    }
  }
}

TEST(DescribeStatistics, BinsAreOpenWhereTheIntervalsAre) {
  const Json wind = Statistics(Describe({"--json", kAirQuality})).at(2);
  ASSERT_EQ(wind["field"], "Wind");
  EXPECT_EQ(wind["bins"].front(), Json::parse(R"({"lower": null, "upper": 4, "frequency": 4})"));
  EXPECT_EQ(wind["bins"].back(), Json::parse(R"({"lower": 16, "upper": null, "frequency": 7})"));
}

TEST(DescribeStatistics, CategoriesHaveTheLabelsOfTheDictionary) {
  const Json month = Statistics(Describe({"--json", kAirQuality})).at(0);
  ASSERT_EQ(month["field"], "Month");
  EXPECT_EQ(month["categories"].at(1),
            Json::parse(R"({"value": 6, "label": "June", "frequency": 30})"));
}

TEST(DescribeStatistics, AreShownAsHistograms) {
  const ProgramResult result = Describe({"--width", "60", "--field", "Wind", kAirQuality});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr(R"(
Statistics of the TreeModel "airquality_stats"

  Wind: Wind speed (mph)
    153 records, minimum 1.7, maximum 20.7, mean 9.95752, standard deviation 3.523
    below 4        4    2.6 %  ##
     4 to 7       29   19.0 %  ##################
     7 to 10      48   31.4 %  #############################
    10 to 13      41   26.8 %  #########################
    13 to 16      24   15.7 %  ###############
    16 and above   7    4.6 %  ####
)"));
}

TEST(DescribeStatistics, RecordsInNoBinAreCountedApart) {
  const ProgramResult result = Describe({"--field", "Ozone", kAirQuality});
  EXPECT_THAT(result.out, HasSubstr("(missing or other)  37   24.2 %  "));
}

TEST(DescribeStatistics, AreLeftOutOnRequest) {
  const ProgramResult result = Describe({"--no-statistics", kAirQuality});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("Highest temperature"));
  EXPECT_THAT(result.out, Not(HasSubstr("Statistics")));
}

TEST(DescribeStatistics, CategoriesAreCountedWhereTheDictionaryHasAnotherNumber) {
  const std::string text =
      Document(Categorical("a", "<Value value='x'/>"), Counted("a", "3", "1 2"));
  const ProgramResult result = Describe({"-"}, text);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("category 1  1   33.3 %  "));
  EXPECT_THAT(result.out, HasSubstr("category 2  2   66.7 %  "));
}

TEST(DescribeStatistics, FrequenciesOfWeightedDataAreAlignedAtThePoint) {
  const std::string text =
      Document(Categorical("a", "<Value value='x'/><Value value='y'/><Value value='z'/>"),
               Counted("a", "112", "100 11.75 0.25"));
  const ProgramResult result = Describe({"--width", "80", "-"}, text);
  EXPECT_THAT(result.out, HasSubstr("    x  100.00   89.3 %  ####"));
  EXPECT_THAT(result.out, HasSubstr("    y   11.75   10.5 %  ######\n"));
  EXPECT_THAT(result.out, HasSubstr("    z    0.25    0.2 %  .\n"));
}

TEST(DescribeStatistics, AnEmptyDistributionIsShown) {
  const std::string text =
      Document(Categorical("a"), Counted("a", "0", "0 0") + Counted("b", "0", ""));
  const ProgramResult result = Describe({"-"}, text);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("category 2  0\n"));
  EXPECT_THAT(result.out, HasSubstr("b\n    0 records\n    no frequencies\n"));
}

TEST(DescribeStatistics, LongDistributionsAreShortenedUnlessAllIsAskedFor) {
  std::string frequencies;
  for (int i = 0; i < 100; ++i) frequencies += " 1";
  const std::string text = Document(Categorical("a"), Counted("a", "100", frequencies));
  EXPECT_THAT(Describe({"-"}, text).out, HasSubstr("... (100 in all; --all shows them)\n"));
  EXPECT_THAT(Describe({"-"}, text).out, Not(HasSubstr("category 41")));
  EXPECT_THAT(Describe({"--all", "-"}, text).out, HasSubstr("category 100"));
}

TEST(DescribeStatistics, EveryModelIsWalked) {
  const std::string stats = "<ModelStats>" + Counted("a", "1", "1") + "</ModelStats>";
  const ProgramResult result =
      Describe({"--json", "-"}, "<PMML><DataDictionary/><TreeModel>" + stats +
                                    "</TreeModel><RegressionModel modelName='r'>" + stats +
                                    "</RegressionModel></PMML>");
  const Json statistics = Json::parse(result.out).at("documents").at(0).at("statistics");
  ASSERT_EQ(statistics.size(), 2U);
  EXPECT_EQ(statistics[0]["model"], "TreeModel");
  EXPECT_EQ(statistics[1]["model"], "RegressionModel");
  EXPECT_EQ(statistics[1]["name"], "r");
}

TEST(DescribeStatistics, WhatCannotBeReadIsToldAndTheOthersShown) {
  const std::string counts = "<Counts totalFreq='1'/>";
  const struct {
    const char* rule;
    std::string statistics;
    const char* text;
  } cases[] = {
      {"no field", "<UnivariateStats>" + counts + "</UnivariateStats>",
       "they name no field (status 108)"},
      {"no counts", "<UnivariateStats field='b'/>",
       "field b: its statistics are not shown: "
       "they have no Counts (status 113)"},
      {"no distribution", "<UnivariateStats field='b'>" + counts + "</UnivariateStats>",
       "they have neither NumericInfo nor a DiscrStats with an Array (status 113)"},
      {"no bins", "<UnivariateStats field='b'>" + counts + "<NumericInfo/></UnivariateStats>",
       "they have NumericInfo, but no ContStats (status 116)"},
      {"no frequencies",
       "<UnivariateStats field='b'>" + counts +
           "<NumericInfo/><ContStats><Interval closure='openOpen' leftMargin='0' "
           "rightMargin='1'/></ContStats></UnivariateStats>",
       "their ContStats has intervals, but no Array of frequencies (status 113)"},
      {"negative frequency", Counted("b", "1", "-1"), "one of them is negative (status 114)"},
      {"total", Counted("b", "x", "1"), "no valid number where one is needed (status 109)"},
  };
  for (const auto& c : cases) {
    const ProgramResult result =
        Describe({"--json", "-"}, Document("", c.statistics + Counted("z", "1", "1")));
    EXPECT_EQ(result.exitCode, 1) << c.rule;
    EXPECT_THAT(result.error, HasSubstr(c.text)) << c.rule;
    ASSERT_EQ(Statistics(result).size(), 1U) << c.rule;
    EXPECT_EQ(Statistics(result)[0]["field"], "z") << c.rule;
  }
}

}  // namespace
