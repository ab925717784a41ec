// What the settings reader takes for a settings document, which status it keeps, and how long a
// document's parameters last.
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <type_traits>
#include <vector>

#include "SettingsText.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "support/CountingMemory.h"
#include "xml/PlatformFault.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;

static_assert(std::is_base_of_v<MCPMMLParser, MCSettingsParser>);
static_assert(!std::is_copy_constructible_v<MCSettingsParser>);
static_assert(!std::is_copy_assignable_v<MCSettingsParser>);

const char kNoParameters[] = "<PMML><DataDictionary/></PMML>";

// Calls an operation with a preset output, which must come back as it was.
template <class Output, class Call>
MCStatus Untouched(const Output& preset, Call call) {
  Output output = preset;
  const MCStatus status = call(output);
  EXPECT_EQ(output, preset);
  return status;
}

struct Operation {
  const char* name;
  MCStatus (*call)(MCSettingsParser&);
};

using Texts = std::vector<std::string>;

// Every operation that gives a status, asked for "p" or for its role.
const Operation kOperations[] = {
    {"bool",
     [](MCSettingsParser& r) {
       return Untouched(true, [&](bool& v) { return r.GetParameter("p", v); });
     }},
    {"double",
     [](MCSettingsParser& r) {
       return Untouched(2.5, [&](double& v) { return r.GetParameter("p", v); });
     }},
    {"int",
     [](MCSettingsParser& r) {
       return Untouched(7, [&](int& v) { return r.GetParameter("p", v); });
     }},
    {"string",
     [](MCSettingsParser& r) {
       return Untouched(std::string("x"), [&](std::string& v) { return r.GetParameter("p", v); });
     }},
    {"int array",
     [](MCSettingsParser& r) {
       return Untouched(std::vector<int>{1}, [&](auto& v) { return r.GetArray("p", v); });
     }},
    {"double array",
     [](MCSettingsParser& r) {
       return Untouched(std::vector<double>{1}, [&](auto& v) { return r.GetArray("p", v); });
     }},
    {"string array",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetArray("p", v); });
     }},
    {"int matrix",
     [](MCSettingsParser& r) {
       return Untouched(std::vector<std::vector<int>>{{1}},
                        [&](auto& v) { return r.GetMatrix("p", v); });
     }},
    {"double matrix",
     [](MCSettingsParser& r) {
       return Untouched(std::vector<std::vector<double>>{{1}},
                        [&](auto& v) { return r.GetMatrix("p", v); });
     }},
    {"string matrix",
     [](MCSettingsParser& r) {
       return Untouched(std::vector<Texts>{{"x"}}, [&](auto& v) { return r.GetMatrix("p", v); });
     }},
    {"variables",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetVariables("p", v); });
     }},
    {"variable",
     [](MCSettingsParser& r) {
       return Untouched(std::string("x"), [&](auto& v) { return r.GetVariables("p", v); });
     }},
    {"predictors",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetPredictors(v); });
     }},
    {"targets",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetTargetVars(v); });
     }},
    {"continuous predictors",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetContPredictors(v); });
     }},
    {"categorical predictors",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetCatPredictors(v); });
     }},
    {"continuous responses",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetContResponseVars(v); });
     }},
    {"categorical responses",
     [](MCSettingsParser& r) {
       return Untouched(Texts{"x"}, [&](auto& v) { return r.GetCatResponseVars(v); });
     }},
    {"frequency weight",
     [](MCSettingsParser& r) {
       return Untouched(std::string("x"), [&](auto& v) { return r.GetFrequencyWeight(v); });
     }},
};

void ExpectEveryOperationGives(const MCStatus& status, MCSettingsParser& reader) {
  for (const Operation& operation : kOperations) {
    EXPECT_EQ(operation.call(reader), status) << operation.name;
  }
  EXPECT_EQ(reader.GetParameterType("p"), MCSettingsParser::ParamUnknown);
  EXPECT_EQ(reader.GetComplexParameter("p"), nullptr);
}

// The "value" of the parameter "p", or the code of the status that came instead.
std::string P(const MCSettingsParser& reader, void* scope = nullptr) {
  std::string value;
  const MCStatus status = reader.GetParameter("p", value, scope);
  return status.IsOK() ? value : std::to_string(status.GetCode());
}

struct DocumentCase {
  const char* rule;
  std::string text;
  int code;
  friend void PrintTo(const DocumentCase& test, std::ostream* out) { *out << test.rule; }
};

class SettingsDocument : public testing::TestWithParam<DocumentCase> {};

TEST_P(SettingsDocument, GivesAndStoresTheStatus) {
  MCSettingsParser reader;
  const MCStatus status = ParseText(reader, GetParam().text);
  EXPECT_EQ(status, Error(GetParam().code));
  EXPECT_EQ(reader.GetStatus(), status);
  EXPECT_EQ(reader.GetXercesMessage().empty(), GetParam().code != 104);
  const bool held = status.IsOK() || status.GetCode() == 119;
  EXPECT_EQ(reader.GetRootElement() != nullptr, held);
  if (status.IsOK()) {
    EXPECT_EQ(P(reader), "1");
  } else {
    ExpectEveryOperationGives(status, reader);
  }
}

const char kP[] = "<Parameter name='p' value='1'/>";

INSTANTIATE_TEST_SUITE_P(
    Documents, SettingsDocument,
    testing::Values(
        DocumentCase{"the parameters path", Settings(kP), 0},
        DocumentCase{
            "white space and comments anywhere",
            Pmml("", "\n<MiningBuildTask> <!--c--> <Extension>\n<Parameters>\n" + std::string(kP) +
                         "\n</Parameters>\n</Extension></MiningBuildTask>"),
            0},
        DocumentCase{"the build task may stand before the dictionary",
                     "<PMML>" + BuildTask(kP) + "<DataDictionary/></PMML>", 0},
        DocumentCase{"the extender does not matter",
                     Pmml("", "<MiningBuildTask><Extension extender='x' name='y'><Parameters>" +
                                  std::string(kP) + "</Parameters></Extension></MiningBuildTask>"),
                     0},
        DocumentCase{"other elements may stand before those of the path",
                     Pmml("", "<A/><MiningBuildTask><B/><Extension><C/><Parameters><D/>" +
                                  std::string(kP) + "</Parameters></Extension></MiningBuildTask>"),
                     0},
        DocumentCase{"the first of two Parameters counts",
                     Pmml("", "<MiningBuildTask><Extension><Parameters>" + std::string(kP) +
                                  "</Parameters><Parameters><Parameter name='p' value='2'/>"
                                  "</Parameters></Extension></MiningBuildTask>"),
                     0},
        DocumentCase{"no MiningBuildTask", kNoParameters, 119},
        DocumentCase{"a MiningBuildTask that is no child of the root",
                     Pmml("", "<Extension>" + BuildTask(kP) + "</Extension>"), 119},
        DocumentCase{"a MiningBuildTask without children", Pmml("", "<MiningBuildTask/>"), 119},
        DocumentCase{"Parameters without an Extension",
                     Pmml("", "<MiningBuildTask><Parameters/></MiningBuildTask>"), 119},
        DocumentCase{"an Extension without Parameters",
                     Pmml("", "<MiningBuildTask><Extension/></MiningBuildTask>"), 119},
        DocumentCase{"Parameters only in the second Extension",
                     Pmml("", "<MiningBuildTask><Extension/><Extension><Parameters>" +
                                  std::string(kP) + "</Parameters></Extension></MiningBuildTask>"),
                     119},
        DocumentCase{"Parameters only in the second MiningBuildTask",
                     Pmml("", "<MiningBuildTask/>" + BuildTask(kP)), 119},
        DocumentCase{"Parameters below another element of the Extension",
                     Pmml("",
                          "<MiningBuildTask><Extension><X><Parameters/></X></Extension>"
                          "</MiningBuildTask>"),
                     119},
        DocumentCase{"names of the path are case-sensitive",
                     Pmml("",
                          "<MiningBuildTask><Extension><parameters/></Extension>"
                          "</MiningBuildTask>"),
                     119},
        DocumentCase{"malformed", "<PMML><DataDictionary/>" + BuildTask(kP), 104},
        DocumentCase{"malformed without parameters", "<PMML><DataDictionary/>", 104},
        DocumentCase{"empty", "", 104},
        DocumentCase{"another root", "<Settings>" + BuildTask(kP) + "</Settings>", 105},
        DocumentCase{"no data dictionary", "<PMML>" + BuildTask(kP) + "</PMML>", 106}));

TEST(MCSettingsParser, EmptyParametersAreParameters) {
  MCSettingsParser reader;
  EXPECT_TRUE(ParseText(reader, Settings("")).IsOK());
  ExpectEveryOperationGives(NotGiven(120), reader);
}

TEST(MCSettingsParser, BeforeAnyParseEveryOperationGives107) {
  MCSettingsParser reader;
  EXPECT_TRUE(reader.GetStatus().IsOK());
  ExpectEveryOperationGives(Error(107), reader);
  EXPECT_TRUE(reader.GetStatus().IsOK()) << "only a parse stores a status";
}

TEST(MCSettingsParser, NoOperationChangesTheStoredStatus) {
  const auto reader = ReaderOf("");
  ExpectEveryOperationGives(NotGiven(120), *reader);
  EXPECT_TRUE(reader->GetStatus().IsOK());
}

TEST(MCSettingsParser, PlatformThatDoesNotStartGives103ForEver) {
  std::unique_ptr<MCSettingsParser> reader;
  {
    const xml_test::PlatformFaultScope scope(xml_test::PlatformFault::kXMLException);
    reader = std::make_unique<MCSettingsParser>();
  }
  ExpectEveryOperationGives(Error(103), *reader);
  EXPECT_EQ(ParseText(*reader, Settings(kP)), Error(103));
  ExpectEveryOperationGives(Error(103), *reader);
}

TEST(MCSettingsParser, ParsesThroughTheBaseClass) {
  MCSettingsParser reader;
  MCPMMLParser& base = reader;
  EXPECT_EQ(ParseText(base, kNoParameters), Error(119));
  EXPECT_TRUE(ParseText(base, Settings(kP)).IsOK());
  EXPECT_EQ(P(reader), "1");
}

TEST(MCSettingsParser, RefusedDocumentKeepsItsRootAndDictionaries) {
  MCSettingsParser reader;
  const std::string trans = TransDict(Binned("a", Bin("binValue='1'", "leftMargin='1'")));
  ASSERT_EQ(ParseText(reader, Pmml("<DataField name='a'/>", trans)), Error(119));
  ASSERT_NE(reader.GetRootElement(), nullptr);
  EXPECT_TRUE(MCXPrsUtil::TagNameEquals(*reader.GetRootElement(), "PMML"));
  std::vector<double> cuts;
  std::vector<std::string> labels;
  EXPECT_TRUE(reader.SetBinsFrTransDict("a", cuts, labels));
}

TEST(MCSettingsParser, RefusedDocumentFillsNoListAndTakesNoModel) {
  MCSettingsParser reader;
  ASSERT_EQ(ParseText(reader, kNoParameters), Error(119));
  EXPECT_FALSE(reader.SetModelElmt(*reader.GetRootElement()));
  RecordingVarList list;
  EXPECT_EQ(reader.MCPMMLParser::FillVarList(list, {}, false), Error(119));
  EXPECT_EQ(reader.FillVarList(list, false), Error(119));
  EXPECT_EQ(reader.FillTransDict(list), Error(119));
  EXPECT_TRUE(list.calls.empty());
}

// The base class's parse knows nothing of parameters; whatever it leaves, every operation copes.

TEST(MCSettingsParser, ParseOfTheBaseClassByNameFindsNoParameters) {
  MCSettingsParser reader;
  const std::string field = " name='a' dataType='double' optype='continuous'/>";
  std::istringstream in(
      Pmml("<DataField" + field, TransDict("<DerivedField" + field) + BuildTask(kP)));
  ASSERT_TRUE(reader.MCPMMLParser::ParseToDOM(in).IsOK());
  ExpectEveryOperationGives(Error(119), reader);
  EXPECT_TRUE(reader.GetStatus().IsOK()) << "only a parse stores a status";

  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, false).IsOK()) << "fills need no parameters";
  EXPECT_EQ(list.Size(), 1u);
  EXPECT_TRUE(reader.FillTransDict(list).IsOK());
  EXPECT_EQ(list.Size(), 2u);
}

TEST(MCSettingsParser, ParseOfTheBaseClassByNameLeavesEarlierParametersInForce) {
  const auto reader = ReaderOf(kP);
  std::istringstream other(Settings("<Parameter name='p' value='2'/>"));
  ASSERT_TRUE(reader->MCPMMLParser::ParseToDOM(other).IsOK());
  EXPECT_EQ(P(*reader), "1");

  std::istringstream bad("<PMML/>");
  ASSERT_EQ(reader->MCPMMLParser::ParseToDOM(bad), Error(106));
  ExpectEveryOperationGives(Error(106), *reader);
  ASSERT_TRUE(ParseText(*reader, Settings("<Parameter name='p' value='3'/>")).IsOK());
  EXPECT_EQ(P(*reader), "3");
}

// A second parse.

TEST(SettingsReuse, NewParametersReplaceTheEarlierOnes) {
  const auto reader = ReaderOf(kP);
  ASSERT_TRUE(ParseText(*reader, Settings("<Parameter name='q' value='2'/>")).IsOK());
  EXPECT_EQ(P(*reader), "120");
}

TEST(SettingsReuse, DocumentWithoutParametersLeavesTheEarlierOnesInForce) {
  const auto reader = ReaderOf(kP + Group("g", "<Parameter name='p' value='2'/>"));
  const auto* earlier_root = reader->GetRootElement();
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(ParseText(*reader, kNoParameters).IsOK());
    EXPECT_TRUE(reader->GetStatus().IsOK());
    EXPECT_EQ(P(*reader), "1");
    EXPECT_EQ(P(*reader, reader->GetComplexParameter("g")), "2");
  }
  EXPECT_NE(reader->GetRootElement(), earlier_root) << "the root is the new document's";
}

TEST(SettingsReuse, DictionariesAreThoseOfTheNewDocumentAllTheSame) {
  MCSettingsParser reader;
  const char field[] = "<DataField name='a' dataType='double' optype='continuous'/>";
  ASSERT_TRUE(ParseText(reader, Pmml(field, BuildTask(kP))).IsOK());
  ASSERT_TRUE(ParseText(reader, kNoParameters).IsOK());
  RecordingVarList list;
  EXPECT_TRUE(reader.FillVarList(list, false).IsOK());
  EXPECT_TRUE(list.calls.empty());
  EXPECT_EQ(P(reader), "1");
}

TEST(SettingsReuse, ParametersThatComeLaterReplaceThoseKept) {
  const auto reader = ReaderOf(kP);
  ASSERT_TRUE(ParseText(*reader, kNoParameters).IsOK());
  ASSERT_TRUE(ParseText(*reader, Settings("<Parameter name='p' value='3'/>")).IsOK());
  EXPECT_EQ(P(*reader), "3");
  ASSERT_TRUE(ParseText(*reader, kNoParameters).IsOK());
  EXPECT_EQ(P(*reader), "3");
}

TEST(SettingsReuse, FailedParseDropsTheParametersKept) {
  for (const char* bad : {"<PMML>", "<pmml/>", "<PMML/>", ""}) {
    const auto reader = ReaderOf(kP);
    ASSERT_TRUE(ParseText(*reader, kNoParameters).IsOK());
    const MCStatus failure = ParseText(*reader, bad);
    ASSERT_FALSE(failure.IsOK());
    ExpectEveryOperationGives(failure, *reader);
    EXPECT_EQ(ParseText(*reader, kNoParameters), Error(119)) << bad;
    ExpectEveryOperationGives(Error(119), *reader);
    ASSERT_TRUE(ParseText(*reader, Settings(kP)).IsOK());
    EXPECT_EQ(P(*reader), "1");
  }
}

class BrokenBuffer : public std::streambuf {
  int_type underflow() override { throw std::runtime_error("the source broke"); }
};

TEST(SettingsReuse, ExceptionOutOfAParseDropsTheParametersKept) {
  const auto reader = ReaderOf(kP);
  BrokenBuffer buffer;
  std::istream in(&buffer);
  in.exceptions(std::ios::badbit);
  EXPECT_ANY_THROW((void)reader->ParseToDOM(in));
  ExpectEveryOperationGives(Error(104), *reader);
  EXPECT_EQ(ParseText(*reader, kNoParameters), Error(119));
}

TEST(SettingsReuse, ReaderIsDestroyedWithParametersOfAnEarlierDocument) {
  const int platforms = xml_test::LivePlatforms();
  {
    std::unique_ptr<MCPMMLParser> reader = ReaderOf(kP);
    ASSERT_TRUE(ParseText(*reader, kNoParameters).IsOK());
  }
  EXPECT_EQ(xml_test::LivePlatforms(), platforms);
}

// A leak detector would not see documents that pile up in a reader that still lives.
TEST(SettingsReuse, TenThousandParsesDoNotGrow) {
  CountingMemory memory;
  MCSettingsParser reader;
  const std::string documents[] = {Settings(kP), kNoParameters, kNoParameters, "<PMML>",
                                   kNoParameters};
  std::size_t after_a_round = 0;
  for (int round = 0; round < 2000; ++round) {
    for (const std::string& document : documents) {
      (void)ParseText(reader, document);  // three of the five fail or are refused
      (void)P(reader);
    }
    if (round == 1) after_a_round = memory.LiveBytes();
  }
  EXPECT_GT(after_a_round, 0u);
  EXPECT_EQ(memory.LiveBytes(), after_a_round);
}

TEST(SettingsReuse, ParametersKeptForTenThousandParsesStayReadable) {
  CountingMemory memory;
  MCSettingsParser reader;
  ASSERT_TRUE(ParseText(reader, Settings(kP)).IsOK());
  ASSERT_TRUE(ParseText(reader, kNoParameters).IsOK());
  const std::size_t before = memory.LiveBytes();
  for (int i = 0; i < 10000; ++i) {
    ASSERT_TRUE(ParseText(reader, kNoParameters).IsOK());
    ASSERT_EQ(P(reader), "1");
  }
  EXPECT_EQ(memory.LiveBytes(), before);
}

TEST(SettingsReuse, NewDocumentLeavesNothingOfTheEarlierOne) {
  CountingMemory memory;
  MCSettingsParser reader;
  ASSERT_TRUE(ParseText(reader, Settings(kP)).IsOK());
  const std::size_t small = memory.LiveBytes();
  std::string many;
  for (int i = 0; i < 20000; ++i) many += Parameter("q" + std::to_string(i), "value='1'");
  ASSERT_TRUE(ParseText(reader, Settings(many)).IsOK());
  EXPECT_GT(memory.LiveBytes(), 5 * small);
  ASSERT_TRUE(ParseText(reader, Settings(kP)).IsOK());
  EXPECT_LT(memory.LiveBytes(), 2 * small);
}

}  // namespace
