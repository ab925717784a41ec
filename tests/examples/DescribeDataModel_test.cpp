// Runs describe_pmml on data models.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "RunProgram.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using testing_examples::ProgramResult;
using testing_examples::RunProgram;
using Json = nlohmann::json;

const std::string kModel = std::string(MCX_EXAMPLE_DATA) + "/survey_model.xml";

ProgramResult Describe(const std::vector<std::string>& arguments, const std::string& input = "") {
  return RunProgram(MCX_DESCRIBE_PMML, arguments, {input, false});
}

Json Document(const ProgramResult& result) { return Json::parse(result.out).at("documents").at(0); }

std::string Model(const std::string& fields) {
  return "<DataModel><Fields>" + fields + "</Fields></DataModel>";
}

TEST(DescribeDataModel, ShowsVariablesWithTheirRoles) {
  const ProgramResult result =
      Describe({"--width", "120", "--fields", "age,income,weight,satisfaction", kModel});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, StartsWith(kModel + ": data model, 4 variables\n"));
  EXPECT_THAT(result.out, HasSubstr("16 to 110"));
  EXPECT_THAT(result.out, HasSubstr("0 and above"));
  EXPECT_THAT(result.out, HasSubstr("frequency weight"));
  EXPECT_THAT(result.out, HasSubstr("5 = Completely"));
}

TEST(DescribeDataModel, WritesJsonForPrograms) {
  const Json document = Document(Describe({"--json", kModel}));
  EXPECT_EQ(document["kind"], "dataModel");
  ASSERT_EQ(document["variables"].size(), 10U);
  EXPECT_EQ(document["variables"][1], Json::parse(R"({
    "name": "age", "label": "Age in years", "kind": "continuous",
    "range": {"lower": 16, "upper": 110}, "missingValues": [], "role": "input"})"));
  EXPECT_EQ(document["variables"][0]["role"], "none");
  EXPECT_EQ(document["variables"][2]["kind"], "categoricalText");
  EXPECT_EQ(document["variables"][8]["role"], "target");
  EXPECT_EQ(document["variables"][9]["role"], "frequency weight");
  EXPECT_FALSE(document.contains("parameters"));
}

TEST(DescribeDataModel, WhatCannotBeReadIsTold) {
  const std::string good = "<Field name='a' storage='real' measure='continuous'/>";
  const std::string rest = "; the fields behind it cannot be read";
  const struct {
    const char* rule;
    std::string document;
    std::string text;
  } cases[] = {
      {"no fields", "<DataModel/>", "the data model has no Fields (status 113)"},
      {"malformed", "<DataModel><Fields>", "the document could not be parsed: line 1, column "},
      {"no name", Model(good + "<Field storage='real' measure='continuous'/>"),
       "field number 2: it has no name" + rest + " (status 108)"},
      {"no storage", Model(good + "<Field name='b' measure='continuous'/>"),
       "field b: it has no storage" + rest + " (status 108)"},
      {"no measure", Model(good + "<Field name='b' storage='real'/>"),
       "field b: it has no measure" + rest + " (status 108)"},
      {"storage", Model(good + "<Field name='b' storage='bit' measure='continuous'/>"),
       "field b: the storage \"bit\" cannot be read" + rest + " (status 109)"},
      {"twice", Model(good + good), "field a: it was refused: its name is empty or used twice"},
  };
  for (const auto& c : cases) {
    const ProgramResult result = Describe({"-"}, c.document);
    EXPECT_EQ(result.exitCode, 1) << c.rule;
    EXPECT_THAT(result.error, HasSubstr(c.text)) << c.rule;
  }
}

TEST(DescribeDataModel, FieldsInFrontOfABadOneAreShown) {
  const ProgramResult result = Describe(
      {"--json", "-"}, Model("<Field name='a' storage='real' measure='continuous'/><Field/>"));
  EXPECT_EQ(Document(result)["variables"].size(), 1U);
  EXPECT_EQ(Document(result)["problems"].at(0)["status"], 108);
}

TEST(DescribeDataModel, AFieldThatIsNotThereIsTold) {
  const ProgramResult result = Describe({"--fields", "age,nope", kModel});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("field nope: there is no such field\n"));
}

}  // namespace
