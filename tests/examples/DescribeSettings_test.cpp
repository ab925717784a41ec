// Runs describe_pmml on build settings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "RunProgram.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing_examples::ProgramResult;
using testing_examples::RunProgram;
using Json = nlohmann::json;

const std::string kSettings = std::string(MCX_EXAMPLE_DATA) + "/settings.xml";

ProgramResult Describe(const std::vector<std::string>& arguments, const std::string& input = "") {
  return RunProgram(MCX_DESCRIBE_PMML, arguments, {input, false});
}

Json Document(const ProgramResult& result) { return Json::parse(result.out).at("documents").at(0); }

std::string Settings(const std::string& parameters, const std::string& fields = "",
                     const std::string& derived = "") {
  return "<PMML><MiningBuildTask><Extension><Parameters>" + parameters +
         "</Parameters></Extension></MiningBuildTask><DataDictionary>" + fields +
         "</DataDictionary><TransformationDictionary>" + derived +
         "</TransformationDictionary></PMML>";
}

TEST(DescribeSettings, ShowsParametersAsATree) {
  const ProgramResult result = Describe({"--width", "100", kSettings});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(result.error, "");
  EXPECT_THAT(result.out,
              StartsWith(kSettings + ": settings, 18 parameters, 6 variables, 4 derived fields\n"));
  EXPECT_THAT(result.out, HasSubstr(R"(
minimumNodeSizes        integer list of 3     100, 50, 25
misclassificationCosts  double matrix, 3 x 3   0  1   2.5
                                               1  0  1.25
                                              10  4     0
categoriesToMerge       string matrix, 2 x 2  On foot     Bicycle
                                              Bus & tram  Train
stopping                group                 3 parameters
  minimumChange         double                1e-04
  parentShare           double                0.02
  validation            group                 2 parameters
    method              enum                  crossValidation
    folds               integer               10
)"));
  EXPECT_THAT(result.out, HasSubstr("summary, \"gains, by node\", risk\n"));
  EXPECT_THAT(result.out, HasSubstr("(no value)\n"));
}

TEST(DescribeSettings, ShowsRolesVariablesAndDerivedFields) {
  const ProgramResult result = Describe({"--bins", "--width", "160", kSettings});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("predictors              age, income, region, transport\n"));
  EXPECT_THAT(result.out, HasSubstr("frequency weight        weight\n"));
  EXPECT_THAT(result.out, HasSubstr("998 = Refused"));
  EXPECT_THAT(result.out, HasSubstr("111 to 997"));
  EXPECT_THAT(result.out, HasSubstr("16 to 39 (16..40)"));
  EXPECT_THAT(result.out, HasSubstr("\nDerived fields\n"));
  EXPECT_THAT(result.out, HasSubstr("Years since coming of age"));
}

TEST(DescribeSettings, WritesJsonForPrograms) {
  const Json document = Document(Describe({"--json", kSettings}));
  EXPECT_EQ(document["kind"], "settings");
  const Json& parameters = document["parameters"];
  ASSERT_EQ(parameters.size(), 18U);
  EXPECT_EQ(parameters[2], Json::parse(R"({"name": "maxDepth", "type": "integer", "value": 5})"));
  EXPECT_EQ(parameters[4]["value"], true);
  EXPECT_EQ(parameters[6]["value"], nullptr);
  EXPECT_EQ(parameters[14], Json::parse(R"({"name": "minimumNodeSizes", "type": "integer",
                                            "list": [100, 50, 25]})"));
  EXPECT_EQ(parameters[15]["matrix"], Json::parse("[[0, 1, 2.5], [1, 0, 1.25], [10, 4, 0]]"));
  EXPECT_EQ(parameters[17]["group"][2]["group"][1]["value"], 10);
  EXPECT_EQ(document["roles"]["target"], Json::parse(R"(["satisfaction"])"));
  EXPECT_EQ(document["roles"]["FrequencyWeightVar"], Json::parse(R"(["weight"])"));
  EXPECT_FALSE(document["roles"].contains("ContResponses"));
  EXPECT_EQ(document["variables"][0]["dataType"], "integer");
  EXPECT_EQ(document["variables"][0]["range"], Json::parse(R"({"lower": 16, "upper": 110})"));
  EXPECT_EQ(document["derivedVariables"].size(), 4U);
  EXPECT_EQ(document["derivedVariables"][0]["categories"].size(), 3U);
  EXPECT_EQ(document["problems"], Json::array());
}

TEST(DescribeSettings, ParametersThatDoNotFitTheirTypeAreToldAndShownAsText) {
  const struct {
    const char* rule;
    std::string parameter;
    std::string text;
  } cases[] = {
      {"int", "<Parameter name='p' type='integer' value='4.5'/>",
       "parameter g/p: \"4.5\" is not a whole number from 0 on (status 109)"},
      {"negative", "<Parameter name='p' type='integer' value='-3'/>",
       "parameter g/p: \"-3\" is not a whole number from 0 on (status 109)"},
      {"double", "<Parameter name='p' type='double' value='INF'/>",
       "parameter g/p: \"INF\" is not a number (status 109)"},
      {"bool", "<Parameter name='p' type='boolean' value='True'/>",
       "parameter g/p: \"True\" is not true or false (status 109)"},
      {"list",
       "<Parameter name='p' type='integer'><ListValue><Value value='1'/><Value value='x'/>"
       "</ListValue></Parameter>",
       "parameter g/p: entry 2 is not a whole number from 0 on (status 109)"},
  };
  for (const auto& c : cases) {
    const std::string group = "<ComplexParameter name='g'>" + c.parameter + "</ComplexParameter>";
    const ProgramResult result = Describe({"--json", "-"}, Settings(group));
    EXPECT_EQ(result.exitCode, 1) << c.rule;
    EXPECT_THAT(result.error, HasSubstr(c.text)) << c.rule;
    const Json shown = Document(result)["parameters"][0]["group"][0];
    EXPECT_TRUE(shown.value("value", shown.value("list", Json("1")).back()).is_string()) << c.rule;
    EXPECT_EQ(Document(result)["problems"][0]["parameter"], "g/p") << c.rule;
  }
}

TEST(DescribeSettings, ParametersThatAreNeverFoundAreNoted) {
  const ProgramResult result = Describe(
      {"-"}, Settings("<Parameter name='p' value='first'/><Parameter name='p' value='2nd'/>"
                      "<Parameter value='x'/><MatrixParameter name='m'/>"));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("p          no type  first\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("2nd")));
  EXPECT_THAT(result.out, HasSubstr("Note: parameter p: there is an earlier one of this name"));
  EXPECT_THAT(result.out, HasSubstr("Note: a Parameter without a name is not read"));
  EXPECT_THAT(result.out, HasSubstr("the format spells it MatrixParmeter"));
}

TEST(DescribeSettings, RaggedAndEmptyMatricesAndListsAreShown) {
  const ProgramResult result = Describe(
      {"-"}, Settings("<MatrixParmeter name='r'><ArrayParameter><Value value='1'/></ArrayParameter>"
                      "<ArrayParameter><Value value='2'/><Value value='3'/></ArrayParameter>"
                      "</MatrixParmeter><MatrixParmeter name='e'/>"
                      "<Parameter name='l'><ListValue/></Parameter>"));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("matrix, 2 x 1 to 2"));
  EXPECT_THAT(result.out, HasSubstr("matrix, no rows"));
  EXPECT_THAT(result.out, HasSubstr("list of 0"));
}

TEST(DescribeSettings, GroupsThatNestWithoutEndAreCutOff) {
  std::string deep;
  std::string end;
  for (int i = 0; i < 5000; ++i) {
    deep += "<ComplexParameter name='g'>";
    end += "</ComplexParameter>";
  }
  const ProgramResult result = Describe({"--json", "-"}, Settings(deep + end));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("groups nest deeper than 100"));
}

TEST(DescribeSettings, FieldsAndRolesThatCannotBeReadAreTold) {
  const std::string good = "<DataField name='a' dataType='double' optype='continuous'/>";
  const ProgramResult result =
      Describe({"--json", "-"},
               Settings("<Parameter name='CatPredictors' isList='true'/>"
                        "<Parameter name='ContPredictors'><ListValue/></Parameter>",
                        good + "<DataField name='b' dataType='boolean' optype='categorical'/>",
                        "<DerivedField name='d' dataType='double'/>"));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(
      result.error,
      HasSubstr("field b: its data type \"boolean\" or one of its intervals cannot be read; "
                "the fields behind it cannot be read (status 109)"));
  EXPECT_THAT(result.error, HasSubstr("field d: it has no optype"));
  EXPECT_THAT(result.error,
              HasSubstr("parameter CatPredictors: the parameter is declared as a list "
                        "but holds none (status 122)"));
  EXPECT_THAT(result.error, HasSubstr("parameter ContPredictors: it names no variables"));
  EXPECT_EQ(Document(result)["variables"].size(), 1U);
}

TEST(DescribeSettings, WithoutBinsForEveryFieldNoneAreShown) {
  const std::string text = Settings("",
                                    "<DataField name='a' dataType='double' optype='continuous'/>"
                                    "<DataField name='b' dataType='double' optype='continuous'/>");
  const ProgramResult result = Describe({"--bins", "-"}, text);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("Note: bins are not shown, because none are declared for a\n"));
  EXPECT_THAT(result.out, HasSubstr("2 variables"));
}

TEST(DescribeSettings, ATaskWithoutParametersIsReadAsPmml) {
  const ProgramResult result = Describe({"-"}, "<PMML><MiningBuildTask/><DataDictionary/></PMML>");
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, StartsWith("standard input: 0 variables\n"));
  EXPECT_THAT(result.out, HasSubstr("the MiningBuildTask holds no parameters"));
}

TEST(DescribeSettings, WithoutDataDictionaryTheyAreRefused) {
  const ProgramResult result = Describe(
      {"-"},
      "<PMML><MiningBuildTask><Extension><Parameters/></Extension></MiningBuildTask></PMML>");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("has no DataDictionary (status 106)"));
}

}  // namespace
