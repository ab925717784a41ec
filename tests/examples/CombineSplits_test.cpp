// Runs combine_splits as a user would.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "RunProgram.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using testing_examples::ProgramResult;
using testing_examples::ReadFile;
using testing_examples::RunProgram;
using testing_examples::TemporaryFolder;
using testing_examples::TreeDocument;
using Texts = std::vector<std::string>;

const std::string kData = MCX_EXAMPLE_DATA;

class CombineSplits : public testing::Test {
 protected:
  ProgramResult Combine(Texts arguments, bool errorIsTerminal = false) const {
    arguments.insert(arguments.end(), {"--out", out_});
    return RunProgram(MCX_COMBINE_SPLITS, arguments, {"", errorIsTerminal});
  }

  std::string Model(const std::string& name, const std::string& function = "regression") const {
    return folder_.Write(name, TreeDocument("1", function));
  }

  bool Written() const { return std::filesystem::exists(out_); }

  TemporaryFolder folder_;
  std::string out_ = folder_.Path("all.pmml");
};

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(CombineSplits, ReportsWhatWasMerged) {
  const ProgramResult result = Combine({"--manifest", kData + "/titanic/manifest.csv"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "") << "no progress bar without a terminal";
  EXPECT_THAT(result.out, StartsWith("Combined 4 of 4 models into " + out_ +
                                     "\n"
                                     "  split variables   Class (text, 4 values)\n"
                                     "  segments          4\n"
                                     "  data fields       4\n"
                                     "  mining fields     4\n"
                                     "  seconds           "));
  EXPECT_THAT(result.out.substr(result.out.find("seconds")),
              MatchesRegex("seconds +[0-9]+\\.[0-9][0-9][0-9]\n"));
}

TEST_F(CombineSplits, WritesASegmentPerModelInTheirOrder) {
  ASSERT_EQ(Combine({"--manifest", kData + "/airquality/manifest.csv"}).exitCode, 0);
  const std::string text = ReadFile(out_);
  EXPECT_EQ(CountOf(text, "<Segment>"), 5U);
  const std::string first =
      R"(<Segment><SimplePredicate field="Month" operator="equal" value="5"/>)";
  EXPECT_NE(text.find(first), std::string::npos);
  EXPECT_THAT(text, HasSubstr(R"(<DataField dataType="double" displayName="" name="Month" )"
                              R"(optype="categorical"><Value value="5"/><Value value="6"/>)"));
}

TEST_F(CombineSplits, EverySampleSetIsCombined) {
  for (const char* set : {"iris", "airquality", "co2", "titanic", "infert"}) {
    const ProgramResult result = Combine({"--manifest", kData + "/" + set + "/manifest.csv"});
    EXPECT_EQ(result.exitCode, 0) << set << result.error;
  }
}

TEST_F(CombineSplits, SeveralVariablesMakeCompoundPredicatesInTheOrderOfBy) {
  const ProgramResult result =
      Combine({"--manifest", kData + "/co2/manifest.csv", "--by", "Treatment,Type"});
  ASSERT_EQ(result.exitCode, 0);
  EXPECT_THAT(ReadFile(out_),
              HasSubstr(R"(<CompoundPredicate booleanOperator="and"><SimplePredicate )"
                        R"(field="Treatment" operator="equal" value="nonchilled"/>)"
                        R"(<SimplePredicate field="Type" operator="equal" value="Quebec"/>)"));
}

TEST_F(CombineSplits, TakesModelsLabelsAndQuotedValuesFromArguments) {
  const std::string model = Model("m.pmml");
  const ProgramResult result = Combine({"--by", "region,size", "--label", "region=Region of birth",
                                        "North,1=" + model, "\"a=b, \"\"c\"\"\",2=" + model});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_THAT(result.out, HasSubstr("  split variables   region (text, 2 values)\n"
                                    "                    size (numbers, 2 values)\n"));
  const std::string text = ReadFile(out_);
  EXPECT_THAT(text, HasSubstr("displayName=\"Region of birth\""));
  EXPECT_THAT(text, HasSubstr("value=\"a=b, &quot;c&quot;\""));
}

TEST_F(CombineSplits, AManifestAndArgumentsAddUp) {
  const ProgramResult result =
      Combine({"--manifest", kData + "/iris/manifest.csv", "other=" + kData + "/iris/setosa.pmml"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, StartsWith("Combined 4 of 4 models"));
}

TEST_F(CombineSplits, KeepsTheTextOfNumbersInPredicatesAndSaysSo) {
  const std::string model = Model("m.pmml");
  const ProgramResult result = Combine({"--by", "v", "1.0=" + model});
  ASSERT_EQ(result.exitCode, 0);
  EXPECT_THAT(ReadFile(out_), HasSubstr(R"(operator="equal" value="1.0"/>)"));
  EXPECT_THAT(ReadFile(out_), HasSubstr(R"(name="v" optype="categorical"><Value value="1"/>)"));
  EXPECT_THAT(result.out, HasSubstr("as a number \"1.0\" becomes the category \"1\""));
  EXPECT_THAT(result.out, HasSubstr("the split value \"1.0\" is no category"));
}

TEST_F(CombineSplits, TextKeepsTheTextOfCategoriesToo) {
  const ProgramResult result = Combine({"--by", "v", "--text", "v", "1.0=" + Model("m.pmml")});
  ASSERT_EQ(result.exitCode, 0);
  EXPECT_THAT(ReadFile(out_), HasSubstr(R"(name="v" optype="categorical"><Value value="1.0"/>)"));
  EXPECT_THAT(result.out, Not(HasSubstr("Notes")));
}

TEST_F(CombineSplits, DiagnosticsAreGroupedByModel) {
  const std::string a = Model("a.pmml");
  const std::string b = Model("b.pmml");
  const ProgramResult result = Combine({"--by", "x", "1=" + a, "1=" + b});
  ASSERT_EQ(result.exitCode, 0);
  // The split variable is declared by the models, and the second segment is out of reach.
  EXPECT_THAT(result.out, HasSubstr("Worth knowing about the models:\n  " + a + "\n  - "));
  EXPECT_THAT(result.out, HasSubstr("declares the split variable \"x\" already"));
  EXPECT_THAT(result.out, HasSubstr("  " + b + "\n  - "));
  EXPECT_THAT(result.out, HasSubstr("the split values \"1\" were added before"));
}

TEST_F(CombineSplits, AModelThatFailsStopsEverything) {
  const std::string good = Model("good.pmml");
  const struct {
    const char* rule;
    std::string path;
    const char* text;
  } cases[] = {
      {"missing", folder_.Path("none.pmml"), ": cannot be opened: No such file or directory\n"},
      {"folder", folder_.Path(), ": this is a folder\n"},
      {"malformed", folder_.Write("bad.pmml", "<PMML>\n<x"), ": line 2, column "},
      {"not PMML", folder_.Write("html.pmml", "<html/>"), ": the document holds no model"},
      {"other function", Model("class.pmml", "classification"), "(status 124)"},
      {"combined", folder_.Write("mm.pmml", "<PMML><MiningModel/></PMML>"), "(status 125)"},
  };
  for (const auto& c : cases) {
    const ProgramResult result = Combine({"--by", "v", "1=" + good, "2=" + c.path});
    EXPECT_EQ(result.exitCode, 1) << c.rule;
    EXPECT_EQ(result.out, "") << c.rule;
    EXPECT_THAT(result.error, StartsWith("combine_splits: " + c.path + ": ")) << c.rule;
    EXPECT_THAT(result.error, HasSubstr(c.text)) << c.rule;
    EXPECT_THAT(result.error, HasSubstr("nothing was written")) << c.rule;
    EXPECT_FALSE(Written()) << c.rule;
  }
}

TEST_F(CombineSplits, KeepGoingLeavesFailuresOut) {
  const std::string bad = folder_.Write("bad.pmml", "<PMML>");
  const ProgramResult result = Combine(
      {"--keep-going", "--by", "v", "1=" + Model("a.pmml"), "2=" + bad, "3=" + Model("c.pmml")});
  EXPECT_EQ(result.exitCode, 1) << "something is missing";
  EXPECT_THAT(result.out, StartsWith("Combined 2 of 3 models"));
  EXPECT_THAT(result.out, HasSubstr("kept out"));
  EXPECT_THAT(result.error, HasSubstr(bad));
  EXPECT_EQ(CountOf(ReadFile(out_), "<Segment>"), 2U);
}

TEST_F(CombineSplits, KeepGoingSurvivesARefusedFirstModel) {
  const std::string combined = folder_.Write("mm.pmml", "<PMML><MiningModel/></PMML>");
  const ProgramResult result = Combine({"-k", "--by", "v", "1=" + combined, "2=" + combined,
                                        "3=" + Model("c.pmml"), "4=" + Model("d.pmml")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, StartsWith("Combined 2 of 4 models"));
  EXPECT_THAT(result.out, HasSubstr("data fields       3\n"));
}

TEST_F(CombineSplits, NoModelAtAllIsAFailure) {
  const ProgramResult result = Combine({"-k", "--by", "v", "1=" + folder_.Path("none.pmml")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("no model could be added, and nothing was written"));
  EXPECT_FALSE(Written());
}

TEST_F(CombineSplits, ALaterFileWithoutModelIsTold) {
  const std::string dictionary = folder_.Write("d.pmml", "<PMML><DataDictionary/></PMML>");
  const ProgramResult result = Combine({"--by", "v", "1=" + Model("a.pmml"), "2=" + dictionary});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr(dictionary + ": the document holds no model\n"));
}

TEST_F(CombineSplits, AnOutputThatCannotBeWrittenIsTold) {
  const std::string argument = "1=" + Model("m.pmml");
  const auto combineInto = [&](const std::string& out) {
    return RunProgram(MCX_COMBINE_SPLITS, {"--by", "v", argument, "--out", out});
  };
  const std::string nowhere = folder_.Path("no/such/all.pmml");
  const ProgramResult unopened = combineInto(nowhere);
  EXPECT_EQ(unopened.exitCode, 1);
  EXPECT_EQ(unopened.out, "");
  EXPECT_THAT(unopened.error, StartsWith("combine_splits: " + nowhere + ": "));
  EXPECT_THAT(unopened.error, Not(HasSubstr(nowhere + ": \n"))) << "with the library's text";
  const ProgramResult full = combineInto("/dev/full");
  EXPECT_EQ(full.exitCode, 1);
  EXPECT_THAT(full.error, HasSubstr("/dev/full: the file could not be written (status 118)"));
}

TEST_F(CombineSplits, NeverOverwritesAModel) {
  const std::string model = Model("m.pmml");
  const ProgramResult result = RunProgram(
      MCX_COMBINE_SPLITS, {"--by", "v", "1=" + model, "--out", folder_.Path() + "/./m.pmml"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.error, HasSubstr("this would overwrite a model"));
  EXPECT_EQ(ReadFile(model), TreeDocument("1"));
}

TEST_F(CombineSplits, NeverOverwritesItsManifest) {
  Model("m.pmml");
  const std::string manifest = folder_.Write("manifest.csv", "v,model\n1,m.pmml\n");
  const ProgramResult result =
      RunProgram(MCX_COMBINE_SPLITS, {"--manifest", manifest, "--out", manifest});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.error, HasSubstr("this would overwrite the manifest"));
  EXPECT_EQ(ReadFile(manifest), "v,model\n1,m.pmml\n");
}

TEST_F(CombineSplits, AReportThatCannotBeWrittenIsAFailure) {
  const ProgramResult result =
      RunProgram("/bin/sh", {"-c", "\"$0\" \"$@\" > /dev/full", MCX_COMBINE_SPLITS, "--by", "v",
                             "1=" + Model("m.pmml"), "--out", out_});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.error, HasSubstr("the report could not be written"));
}

TEST_F(CombineSplits, AWrongCallIsToldFromAFailure) {
  const std::string model = Model("m.pmml");
  const struct {
    Texts arguments;
    const char* text;
  } cases[] = {
      {{}, "--by must name the split variables"},
      {{"1=" + model}, "--by must name the split variables"},
      {{"--by", "v"}, "there are no models"},
      {{"--by", "v", "1"}, "no \"=\" between the split values and the path"},
      {{"--by", "v,w", "1=" + model}, "2 split values are needed (v, w), and here are 1"},
      {{"--by", "v,v", "1,2=" + model}, "the split variable \"v\" is named twice"},
      {{"--by", "v", "--label", "v", "1=" + model}, "no \"=\" between variable and text"},
      {{"--by", "v", "--label", "w=x", "1=" + model}, "\"w\" is no split variable"},
      {{"--manifest", folder_.Path("none.csv")}, "none.csv: cannot be opened"},
      {{"--manifest", folder_.Write("m.csv", "v,path\n1,m.pmml\n")}, "m.csv:1: the header must"},
      {{"--by", "w", "--manifest", folder_.Write("n.csv", "v,model\n1,m.pmml\n")},
       "there is no column \"w\""},
      {{"--nonsense"}, "--nonsense"},
  };
  for (const auto& c : cases) {
    const ProgramResult result = Combine(c.arguments);
    EXPECT_EQ(result.exitCode, 2) << c.text;
    EXPECT_THAT(result.error, HasSubstr(c.text));
    EXPECT_FALSE(Written()) << c.text;
  }
  const ProgramResult nothing = RunProgram(MCX_COMBINE_SPLITS, {});
  EXPECT_EQ(nothing.exitCode, 2);
  EXPECT_THAT(nothing.error, HasSubstr("--out is required"));
}

TEST_F(CombineSplits, ShowsAProgressBarOnATerminal) {
  const ProgramResult result =
      Combine({"--manifest", kData + "/airquality/manifest.csv"}, /*errorIsTerminal=*/true);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.error, HasSubstr("\rCombining [########"));
  EXPECT_THAT(result.error, HasSubstr("100%  5 of 5"));
  EXPECT_THAT(result.out, StartsWith("Combined 5 of 5"));
}

TEST_F(CombineSplits, ExplainsItself) {
  const ProgramResult result = RunProgram(MCX_COMBINE_SPLITS, {"--help"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("VALUE[,VALUE...]=FILE"));
}

}  // namespace
