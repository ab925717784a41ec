// Runs describe_pmml as a user would.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "RunProgram.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing_examples::ProgramResult;
using testing_examples::ReadFile;
using testing_examples::RunProgram;
using testing_examples::TemporaryFolder;
using Json = nlohmann::json;

const std::string kSurvey = std::string(MCX_EXAMPLE_DATA) + "/survey.pmml";

ProgramResult Describe(const std::vector<std::string>& arguments, const std::string& input = "") {
  return RunProgram(MCX_DESCRIBE_PMML, arguments, {input, false});
}

std::string Document(const std::string& fields, const std::string& transformations = "") {
  return "<PMML version='4.4'><DataDictionary>" + fields + "</DataDictionary>" + transformations +
         "</PMML>";
}

std::string Field(const std::string& name, const std::string& opType, const std::string& dataType,
                  const std::string& values = "") {
  return "<DataField name='" + name + "' optype='" + opType + "' dataType='" + dataType + "'>" +
         values + "</DataField>";
}

std::string Bins(const std::string& field, const std::vector<std::string>& margins) {
  std::string bins = "<DerivedField><Discretize field='" + field + "'>";
  for (std::size_t i = 0; i + 1 < margins.size(); ++i) {
    bins += "<DiscretizeBin binValue='b" + std::to_string(i) + "'><Interval leftMargin='" +
            margins[i] + "' rightMargin='" + margins[i + 1] + "'/></DiscretizeBin>";
  }
  return "<TransformationDictionary>" + bins + "</Discretize></DerivedField>" +
         "</TransformationDictionary>";
}

// The variables of the only document in the program's JSON.
Json Variables(const ProgramResult& result) {
  return Json::parse(result.out).at("documents").at(0).at("variables");
}

Json Problems(const ProgramResult& result) {
  return Json::parse(result.out).at("documents").at(0).at("problems");
}

TEST(DescribePmml, ShowsTheSurveyAsATable) {
  const ProgramResult result = Describe({"--width", "90", "--fields", "age,household", kSurvey});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.out, kSurvey + R"(: 2 variables

Name       Label                     Kind         Values      Missing values    Invalid
---------  ------------------------  -----------  ----------  ----------------  ----------
age        Age in years              continuous               998 = Refused,    111 to 997
                                                              999 = No answer
household  Persons in the household  categorical  1, 2, 3, 4
                                     (numbers)
)");
}

TEST(DescribePmml, ShowsEveryVariableOfTheSampleData) {
  const ProgramResult result = Describe({kSurvey});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, StartsWith(kSurvey + ": 9 variables\n"));
  for (const char* text :
       {"age", "region", "language", "transport", "satisfaction", "household", "income", "distance",
        "interview_day", "-1000000", "\"\" = Left blank"}) {
    EXPECT_THAT(result.out, HasSubstr(text));
  }
}

TEST(DescribePmml, KeepsToTheWidth) {
  for (int width : {100, 120, 200}) {
    const ProgramResult result = Describe({"--width", std::to_string(width), kSurvey});
    std::size_t begin = result.out.find('\n') + 1;  // behind the line with the path
    for (std::size_t end = result.out.find('\n', begin); end != std::string::npos;
         end = result.out.find('\n', begin)) {
      const std::string line = result.out.substr(begin, end - begin);
      const auto characters = std::count_if(line.begin(), line.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
      });
      EXPECT_LE(characters, width) << line;
      begin = end + 1;
    }
  }
}

TEST(DescribePmml, ShowsBinsOnRequestOnly) {
  EXPECT_THAT(Describe({kSurvey}).out, Not(HasSubstr("Bins")));
  const ProgramResult result = Describe({"--bins", "--width", "300", kSurvey});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("16 to 29 (16..30)"));
  EXPECT_THAT(result.out, HasSubstr("65 and older (65..110)"));
  EXPECT_THAT(result.out, HasSubstr("below 1500 (..1500)"));
  EXPECT_THAT(result.out, HasSubstr("6000 and more (6000..)"));
  EXPECT_THAT(result.out, HasSubstr("2.5..10"));
  EXPECT_THAT(result.out, Not(HasSubstr("Note")));
}

TEST(DescribePmml, WritesJsonForPrograms) {
  const ProgramResult result = Describe({"--json", "--bins", kSurvey});
  EXPECT_EQ(result.exitCode, 0);
  const Json variables = Variables(result);
  ASSERT_EQ(variables.size(), 9U);
  EXPECT_EQ(variables[0], Json::parse(R"({
    "name": "age", "label": "Age in years", "kind": "continuous",
    "range": {"lower": 16, "upper": 110},
    "bins": [{"lower": 16, "upper": 30, "label": "16 to 29"},
             {"lower": 30, "upper": 45, "label": "30 to 44"},
             {"lower": 45, "upper": 65, "label": "45 to 64"},
             {"lower": 65, "upper": 110, "label": "65 and older"}],
    "missingValues": [{"value": 998, "label": "Refused"}, {"value": 999, "label": "No answer"}],
    "invalidRange": {"lower": 111, "upper": 997}})"));
  EXPECT_EQ(variables[5], Json::parse(R"({
    "name": "household", "label": "Persons in the household", "kind": "categoricalNumeric",
    "categories": [{"value": 1, "label": ""}, {"value": 2, "label": ""},
                   {"value": 3, "label": ""}, {"value": 4, "label": ""}],
    "missingValues": []})"));
  EXPECT_EQ(variables[2]["kind"], "categoricalText");
  EXPECT_EQ(variables[2]["categories"][4]["label"], "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E");
  EXPECT_EQ(variables[6]["bins"][0]["lower"], nullptr);
  EXPECT_EQ(variables[6]["bins"][3]["upper"], nullptr);
  EXPECT_EQ(Problems(result), Json::array());
}

TEST(DescribePmml, ReadsStandardInput) {
  const ProgramResult result = Describe({"-"}, ReadFile(kSurvey));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, StartsWith("standard input: 9 variables\n"));
}

TEST(DescribePmml, ShowsTheFieldsAskedForInDocumentOrder) {
  const ProgramResult result = Describe({"--json", "--fields", "income,age", kSurvey});
  ASSERT_EQ(Variables(result).size(), 2U);
  EXPECT_EQ(Variables(result)[0]["name"], "age");
  EXPECT_EQ(Variables(result)[1]["name"], "income");
}

TEST(DescribePmml, AFieldNameMayHoldACommaAndOptionsMayBeRepeated) {
  const std::string text =
      Document(Field("a,b", "continuous", "double") + Field("c", "continuous", "double") +
               Field("d", "continuous", "double"));
  const ProgramResult result = Describe({"--json", "--field", "a,b", "--fields", "c", "-"}, text);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  ASSERT_EQ(Variables(result).size(), 2U);
  EXPECT_EQ(Variables(result)[0]["name"], "a,b");
}

TEST(DescribePmml, AFieldThatIsNotThereIsTold) {
  const ProgramResult result = Describe({"--fields", "age,nope", kSurvey});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, HasSubstr("1 variable\n"));
  EXPECT_EQ(result.error, "describe_pmml: " + kSurvey + ": field nope: there is no such field\n");
}

TEST(DescribePmml, ShortensLongListsUnlessAllIsAskedFor) {
  std::string values;
  for (int i = 0; i < 40; ++i) values += "<Value value='v" + std::to_string(i) + "'/>";
  const std::string text = Document(Field("x", "categorical", "string", values));
  EXPECT_THAT(Describe({"-"}, text).out, HasSubstr("... (40 in all)"));
  EXPECT_THAT(Describe({"-"}, text).out, Not(HasSubstr("v10")));
  EXPECT_THAT(Describe({"--all", "-"}, text).out, HasSubstr("v39"));
  EXPECT_THAT(Describe({"--all", "-"}, text).out, Not(HasSubstr("...")));
}

TEST(DescribePmml, QuotesValuesWhoseEndCannotBeSeen) {
  const std::string text =
      Document(Field("x", "categorical", "string",
                     "<Value value='a, b'/><Value value='c=d'/><Value value=''/>"
                     "<Value value=' e'/><Value value='f g'/>"));
  EXPECT_THAT(Describe({"-"}, text).out, HasSubstr(R"("a, b", "c=d", "", " e", f g)"));
}

TEST(DescribePmml, NeverLetsADocumentSteerTheTerminal) {
  const std::string text =
      Document(Field("a\xC2\x9B"
                     "2J",
                     "continuous", "double"));
  EXPECT_THAT(Describe({"-"}, text).out, HasSubstr("a\\u009b2J"));
}

TEST(DescribePmml, AnEmptyDictionaryIsNoFailure) {
  const ProgramResult result = Describe({"-"}, Document(""));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "standard input: 0 variables\n");
}

TEST(DescribePmml, MissingFilesAndFoldersAreToldAndOthersShown) {
  const TemporaryFolder folder;
  const ProgramResult result = Describe({folder.Path("no.pmml"), kSurvey, folder.Path()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, StartsWith(kSurvey + ": 9 variables"));
  EXPECT_EQ(result.error, "describe_pmml: " + folder.Path("no.pmml") +
                              ": cannot be opened: No such file or directory\n"
                              "describe_pmml: " +
                              folder.Path() + ": this is a folder\n");
}

TEST(DescribePmml, MalformedXmlIsToldWithLineAndColumn) {
  const std::string text = "<PMML>\n  <DataDictionary>\n  </oops>";
  const ProgramResult result = Describe({"--json", "-"}, text);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("standard input: the document could not be parsed: line 3, "
                                      "column "));
  EXPECT_THAT(result.error, HasSubstr("(status 104)"));
  const Json problem = Problems(result).at(0);
  EXPECT_EQ(problem["status"], 104);
  EXPECT_EQ(problem["line"], 3);
  EXPECT_GT(problem["column"], 2);
}

TEST(DescribePmml, HardenedRefusesWhatReachesOutside) {
  const TemporaryFolder folder;
  const std::string secret = folder.Write("secret.txt", "the secret");
  const std::string file =
      folder.Write("a.pmml", "<!DOCTYPE PMML [<!ENTITY e SYSTEM '" + secret + "'>]>" +
                                 Document("&e;" + Field("x", "continuous", "double")));
  EXPECT_EQ(Describe({file}).exitCode, 0);
  const ProgramResult result = Describe({"--hardened", file});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.error,
              HasSubstr("document type declaration, which the parse policy does not allow"));
  EXPECT_EQ(Describe({"--hardened", kSurvey}).out, Describe({kSurvey}).out);
}

TEST(DescribePmml, HardenedReadsNoMoreThanThePolicyAllows) {
  const ProgramResult result = Describe({"--hardened", "/dev/zero"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("/dev/zero: the document could not be parsed"));
}

TEST(DescribePmml, AnEmptyFileIsMalformed) {
  const ProgramResult result = Describe({"-"}, "");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.error, HasSubstr("(status 104)"));
}

TEST(DescribePmml, OtherDocumentsAreTold) {
  EXPECT_THAT(Describe({"-"}, "<html/>").error,
              HasSubstr("another kind of document: its outermost element is not the expected one "
                        "(status 105)"));
  EXPECT_THAT(Describe({"-"}, "<PMML/>").error, HasSubstr("has no DataDictionary (status 106)"));
}

TEST(DescribePmml, AFieldThatCannotBeReadIsNamedAndTheOthersShown) {
  const struct {
    const char* rule;
    std::string field;
    const char* text;
  } cases[] = {
      {"data type", Field("bad", "categorical", "boolean"),
       "field bad: the data type \"boolean\" cannot be read (status 109)"},
      {"no data type", "<DataField name='bad' optype='continuous'/>",
       "field bad: it has no dataType (status 108)"},
      {"no optype", "<DataField name='bad' dataType='double'/>",
       "field bad: it has no optype (status 108)"},
      {"name twice", Field("a", "categorical", "string"),
       "field a: another field has the same name (status 111)"},
      {"empty name", Field("", "categorical", "string"), "its name is empty (status 111)"},
  };
  for (const auto& c : cases) {
    const std::string text =
        Document(Field("a", "continuous", "double") + c.field + Field("z", "continuous", "double"));
    const ProgramResult result = Describe({"--json", "-"}, text);
    EXPECT_EQ(result.exitCode, 1) << c.rule;
    EXPECT_THAT(result.error, HasSubstr(c.text)) << c.rule;
    ASSERT_EQ(Variables(result).size(), 2U) << c.rule;
    EXPECT_EQ(Variables(result)[1]["name"], "z") << c.rule;
    EXPECT_EQ(Problems(result).size(), 1U) << c.rule;
  }
}

TEST(DescribePmml, SeveralBadFieldsAreAllNamed) {
  std::string fields;
  for (const char* name : {"a", "b", "a", "c", "b", "a"}) {
    fields += Field(name, "continuous", "double") + Field("no", "continuous", "boolean");
  }
  const ProgramResult result = Describe({"--json", "-"}, Document(fields));
  EXPECT_EQ(Variables(result).size(), 3U);
  EXPECT_EQ(Problems(result).size(), 9U) << result.out;
}

TEST(DescribePmml, AFieldWithoutNameEndsTheReading) {
  const std::string text = Document(Field("a", "continuous", "double") +
                                    "<DataField optype='continuous' dataType='double'/>" +
                                    Field("z", "continuous", "double"));
  const ProgramResult result = Describe({"--json", "-"}, text);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(Variables(result).size(), 1U);
  EXPECT_THAT(result.error, HasSubstr("field number 2: it has no name; the fields behind it cannot "
                                      "be read (status 108)"));
  EXPECT_EQ(Problems(result).size(), 1U);
}

TEST(DescribePmml, FieldsWithoutBinsAreShownWithoutThem) {
  const std::string text =
      Document(Field("a", "continuous", "double") + Field("b", "continuous", "double") +
                   Field("c", "categorical", "string"),
               Bins("b", {"0", "10", "20"}));
  const ProgramResult result = Describe({"--bins", "-"}, text);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("b0 (0..10)"));
  EXPECT_THAT(result.out, HasSubstr("Note: no bins are declared for a\n"));
}

TEST(DescribePmml, NoBinsAtAllAreNoted) {
  const std::string text = Document(Field("a", "continuous", "double"));
  const ProgramResult result = Describe({"--bins", "-"}, text);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("Note: no bins are declared for these fields\n"));
}

TEST(DescribePmml, BinsThatDoNotAscendAreToldAndLeftOut) {
  const std::string text =
      Document(Field("a", "continuous", "double") + Field("z", "continuous", "double"),
               Bins("a", {"20", "10", "0"}));
  const ProgramResult result = Describe({"--bins", "--json", "-"}, text);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error,
              HasSubstr("field a: its bins do not ascend (they are cut at 20, 10, 0); "
                        "shown without them (status 111)"));
  ASSERT_EQ(Variables(result).size(), 2U);
  EXPECT_FALSE(Variables(result)[0].contains("bins"));
}

TEST(DescribePmml, AWrongCallIsToldFromAFailure) {
  EXPECT_EQ(Describe({}).exitCode, 2);
  EXPECT_THAT(Describe({}).error, HasSubstr("FILE is required"));
  EXPECT_EQ(Describe({"--nonsense", kSurvey}).exitCode, 2);
  EXPECT_EQ(Describe({"--width", "abc", kSurvey}).exitCode, 2);
}

TEST(DescribePmml, ExplainsItself) {
  const ProgramResult result = Describe({"--help"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("Usage: describe_pmml [OPTIONS] FILE..."));
}

}  // namespace
