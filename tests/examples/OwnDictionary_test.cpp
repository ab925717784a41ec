// Runs own_dictionary as a user would.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "RunProgram.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using testing_examples::ProgramResult;
using testing_examples::RunProgram;
using testing_examples::TemporaryFolder;

const std::string kSurvey = std::string(MCX_EXAMPLE_DATA) + "/survey.pmml";

TEST(OwnDictionary, ReceivesEverythingInTheOrderOfTheDocument) {
  const ProgramResult result = RunProgram(MCX_OWN_DICTIONARY, {"--bins", kSurvey});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "");
  EXPECT_THAT(result.out, StartsWith("age: new column, numbers in 4 bins\n"
                                     "age: bins named 16 to 29, 30 to 44, 45 to 64, 65 and older\n"
                                     "age: missing 998 = Refused\n"
                                     "age: missing 999 = No answer\n"
                                     "age: invalid from 111 to 997\n"
                                     "region: new column, text codes\n"
                                     "region: code N = North\n"));
  EXPECT_THAT(result.out, HasSubstr("language: missing \"\" = Left blank\n"));
  EXPECT_THAT(result.out, HasSubstr("transport: new column, number codes\n"
                                    "transport: code 1 = On foot\n"));
  EXPECT_THAT(result.out, HasSubstr("household: code 4\n"));
  EXPECT_THAT(result.out, EndsWith("Columns in the code book: 9\n"));
}

TEST(OwnDictionary, WithoutBinsNumbersArePlain) {
  const ProgramResult result = RunProgram(MCX_OWN_DICTIONARY, {kSurvey});
  EXPECT_THAT(result.out, StartsWith("age: new column, numbers\n"));
}

TEST(OwnDictionary, ItsRefusalStopsTheReader) {
  const TemporaryFolder folder;
  const std::string file = folder.Write(
      "twice.pmml",
      "<PMML><DataDictionary><DataField name='age' optype='continuous' dataType='double'/>"
      "<DataField name='AGE' optype='continuous' dataType='double'/>"
      "<DataField name='z' optype='continuous' dataType='double'/></DataDictionary></PMML>");
  const ProgramResult result = RunProgram(MCX_OWN_DICTIONARY, {file});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "age: new column, numbers\nColumns in the code book: 1\n");
  EXPECT_THAT(result.error, HasSubstr("the variable list refused the variable (status 111)"));
}

TEST(OwnDictionary, BinsThatAreNotThereStopTheReader) {
  const TemporaryFolder folder;
  const std::string file = folder.Write(
      "nobins.pmml",
      "<PMML><DataDictionary><DataField name='a' optype='continuous' dataType='double'/>"
      "</DataDictionary><TransformationDictionary/></PMML>");
  EXPECT_EQ(RunProgram(MCX_OWN_DICTIONARY, {file}).exitCode, 0);
  const ProgramResult result = RunProgram(MCX_OWN_DICTIONARY, {"--bins", file});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("(status 110)"));
}

TEST(OwnDictionary, BadFilesAreTold) {
  const TemporaryFolder folder;
  const std::string missing = folder.Path("no.pmml");
  EXPECT_EQ(RunProgram(MCX_OWN_DICTIONARY, {missing}).exitCode, 1);
  EXPECT_THAT(RunProgram(MCX_OWN_DICTIONARY, {missing}).error, HasSubstr("cannot be opened"));
  const std::string bad = folder.Write("bad.pmml", "<PMML>");
  EXPECT_THAT(RunProgram(MCX_OWN_DICTIONARY, {bad}).error, HasSubstr("(status 104): line 1"));
  const std::string other = folder.Write("other.pmml", "<html/>");
  EXPECT_THAT(RunProgram(MCX_OWN_DICTIONARY, {other}).error, EndsWith("(status 105)\n"));
  EXPECT_EQ(RunProgram(MCX_OWN_DICTIONARY, {}).exitCode, 2);
}

}  // namespace
