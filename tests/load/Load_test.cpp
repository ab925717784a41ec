// Objects that are used for a long time: memory must be as flat at the end as after the first
// tenth.
//
// The environment variables MCX_LOAD_REUSES and MCX_LOAD_COMBINATIONS set how often; `./dev load`
// sets them to 100000 and 10000.
#include <gtest/gtest.h>
#include <mcmem/ConverterRegistry.h>
#include <mcmem/ExtNameStr.h>
#include <mcmem/Transcoding.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "load/MemoryUse.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXParsePolicy.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "support/OddStream.h"
#include "support/SmallDocuments.h"
#include "support/TestFiles.h"

namespace {

using load_test::MeasureMemory;
using load_test::MemoryUse;
using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCUniStats;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using test_support::ScratchFolder;
using test_support::WriteTo;

// How much more may be in use at the end than after the first tenth. The whole of it is what the
// last document and the C library's own lists differ in; a leak of one byte each time would be more
// when the numbers are those of `./dev load`.
constexpr std::size_t kMoreLive = std::size_t{16} * 1024;
constexpr std::size_t kMoreResident = std::size_t{2} * 1024 * 1024;

long FromEnvironment(const char* name, long standard) {
  const char* text = std::getenv(name);
  return text == nullptr ? standard : std::strtol(text, nullptr, 10);
}

#ifdef MCX_TEST_SANITIZED
constexpr long kFewer = 4;
#else
constexpr long kFewer = 1;
#endif

long Reuses() { return FromEnvironment("MCX_LOAD_REUSES", 2000 / kFewer); }
long Combinations() { return FromEnvironment("MCX_LOAD_COMBINATIONS", 200 / kFewer); }

double KiB(std::size_t bytes) { return static_cast<double>(bytes) / 1024; }

// Rounds repeat themselves after so many, so that what is held is the same whenever it is measured.
constexpr long kPeriod = 16;

long WholePeriods(long count) { return (count + kPeriod - 1) / kPeriod * kPeriod; }

// How often a file is replaced, which costs more than all the rest.
constexpr long kFileEvery = 32 * kPeriod;

// Calls use(i) for i from 0, and looks at the memory on the way.
template <class Use>
void ExpectFlatMemory(const char* name, long wanted, Use use) {
  const long count = WholePeriods(wanted);
  const long warm = WholePeriods(count / 10);
  const MemoryUse start = MeasureMemory();
  MemoryUse after_tenth;
  const auto begin = std::chrono::steady_clock::now();
  for (long i = 0; i < count; ++i) {
    if (i == warm) after_tenth = MeasureMemory();
    use(i);
    if (testing::Test::HasFailure()) break;
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  const MemoryUse end = MeasureMemory();
  std::printf(
      "[ load        ] %-24s %7ld times, %6.1f s; resident KiB %.0f, %.0f, %.0f; live KiB "
      "%.1f, %.1f\n",
      name, count, time.count(), KiB(start.resident), KiB(after_tenth.resident), KiB(end.resident),
      KiB(after_tenth.live), KiB(end.live));
  EXPECT_LE(end.live, after_tenth.live + kMoreLive);
#ifndef MCX_TEST_SANITIZED  // which keeps freed memory for a while
  EXPECT_LE(end.resident, after_tenth.resident + kMoreResident);
#endif
}

// The document with names that no other round has: what somebody keeps of a name adds up.
std::string WithNewNames(const char* document, long round) {
  std::string text = document;
  const std::string mark = "name=\"r" + std::to_string(10'000'000 + round) + ' ';
  for (std::size_t at = text.find("name=\""); at != std::string::npos;
       at = text.find("name=\"", at + mark.size())) {
    text.replace(at, 6, mark);
  }
  return text;
}

// Every few rounds a document is refused, or its stream dies: the reader then gets a new parser.
enum class Round { kGood, kMalformed, kOther, kDies };

Round KindOf(long round) {
  switch (round % kPeriod) {
    case 3:
      return Round::kMalformed;
    case 7:
      return Round::kOther;
    case 11:
      return Round::kDies;
    default:
      return Round::kGood;
  }
}

// Reads a text as the round wants it. True if it was read well, which only a good round's is.
template <class Reader>
bool Read(Reader& reader, Round round, const std::string& text) {
  switch (round) {
    case Round::kMalformed: {
      std::istringstream in(text.substr(0, text.size() / 2));
      return reader.ParseToDOM(in).IsOK();
    }
    case Round::kOther: {
      const std::size_t at = text.find("name=\"r");
      const std::string name = at == std::string::npos ? "x" : text.substr(at + 6, 9);
      std::istringstream in("<other name='" + name + "'/>");
      return reader.ParseToDOM(in).IsOK();
    }
    case Round::kDies: {
      test_support::OddStream in(text.substr(0, 500), 100, test_support::StreamEnd::kThrows);
      try {
        return reader.ParseToDOM(in).IsOK();
      } catch (const test_support::LineIsDead&) {
        return false;
      }
    }
    default: {
      std::istringstream in(text);
      return reader.ParseToDOM(in).IsOK();
    }
  }
}

TEST(Load, APmmlReaderIsReused) {
  MCPMMLParser reader;
  ExpectFlatMemory("MCPMMLParser", Reuses(), [&](long i) {
    const Round round = KindOf(i);
    const bool is_read = Read(reader, round, WithNewNames(test_support::kPmml, i));
    ASSERT_EQ(is_read, round == Round::kGood);
    if (!is_read) return;
    MCVarList list;
    ASSERT_TRUE(reader.FillVarList(list, {}, false).IsOK());
    ASSERT_EQ(list.Size(), 3U);
    const auto* root = reader.GetRootElement();
    ASSERT_TRUE(reader.SetModelElmt(*MCXPrsUtil::GetFirstChildElmt(*root, "TreeModel")));
    const xercesc::DOMElement* cursor = nullptr;
    do {
      MCUniStats statistics;
      ASSERT_TRUE(reader.FillUniStats(statistics, cursor).IsOK());
    } while (cursor != nullptr);
  });
}

// Every other document is refused for its declaration.
TEST(Load, AReaderIsReusedUnderAPolicy) {
  MCXPrsUtil::MCXParsePolicy::SetForProcess(MCXPrsUtil::MCXParsePolicy::Hardened());
  MCPMMLParser reader;
  ExpectFlatMemory("MCPMMLParser, hardened", Reuses(), [&](long i) {
    const std::string text = WithNewNames(test_support::kPmml, i);
    std::istringstream in(i % 2 == 0 ? text : "<!DOCTYPE PMML [<!ENTITY e 'x'>]>" + text);
    ASSERT_EQ(reader.ParseToDOM(in).IsOK(), i % 2 == 0);
  });
  MCXPrsUtil::MCXParsePolicy::SetForProcess({});
}

TEST(Load, ASettingsReaderIsReused) {
  MCSettingsParser reader;
  ExpectFlatMemory("MCSettingsParser", Reuses(), [&](long i) {
    const Round round = KindOf(i);
    const bool is_read = Read(reader, round, test_support::kSettings);
    ASSERT_EQ(is_read, round == Round::kGood);
    if (!is_read) return;
    MCVarList list;
    ASSERT_TRUE(reader.FillVarList(list, true).IsOK());
    ASSERT_TRUE(reader.FillTransDict(list).IsOK());
    std::vector<std::string> names;
    std::vector<std::vector<double>> costs;
    ASSERT_TRUE(reader.GetPredictors(names).IsOK());
    ASSERT_TRUE(reader.GetMatrix("costs", costs).IsOK());
    double limit = 0;
    ASSERT_TRUE(reader.GetParameter("limit", limit, reader.GetComplexParameter("stopping")).IsOK());
  });
}

// A document without parameters leaves those of the one before in force: two are held then.
TEST(Load, ASettingsReaderGetsDocumentsWithoutParameters) {
  MCSettingsParser reader;
  ExpectFlatMemory("MCSettingsParser, two held", Reuses(), [&](long i) {
    std::istringstream in(i % 4 == 0 ? WithNewNames(test_support::kSettings, i)
                                     : WithNewNames(test_support::kPmml, i));
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  });
}

TEST(Load, ADataModelReaderIsReused) {
  MCDataModelParser reader;
  ExpectFlatMemory("MCDataModelParser", Reuses(), [&](long i) {
    const std::string text = WithNewNames(test_support::kDataModel, i);
    const bool is_good = KindOf(i) == Round::kGood;
    const MCStatus status = reader.ParseToDOM(is_good ? text : text.substr(0, text.size() / 2));
    ASSERT_EQ(status.IsOK(), is_good);
    if (!is_good) return;
    MCVarList list;
    ASSERT_TRUE(reader.FillVarList(list, true, true, 4).IsOK());
    ASSERT_EQ(list.Size(), 4U);
  });
}

TEST(Load, OneObjectReadsAndWrites) {
  const ScratchFolder folder;
  const std::string path = folder.File("out.xml");
  MCXMLReadWrite document;
  ExpectFlatMemory("MCXMLReadWrite", Reuses(), [&](long i) {
    const Round round = KindOf(i);
    (void)Read(document, round, WithNewNames(test_support::kPmml, i));
    ASSERT_EQ(document.GetDocument() == nullptr, round == Round::kDies);
    ASSERT_TRUE(document.WriteFromDOM(i % kFileEvery == 0 ? path : "/dev/null", nullptr).IsOK());
    ASSERT_EQ(document.WriteFromDOM("/dev/full", nullptr).IsOK(), round == Round::kDies);
  });
}

TEST(Load, ReadersAreMadeAndDestroyed) {
  const MCXMLReadWrite platform;
  ExpectFlatMemory("readers, each time new", Reuses() / 10, [&](long i) {
    MCPMMLParser reader;
    ASSERT_EQ(Read(reader, KindOf(i), WithNewNames(test_support::kPmml, i)),
              KindOf(i) == Round::kGood);
  });
}

// The first and the last reader of a process start and stop the XML library.
TEST(Load, ThePlatformStartsAndStops) {
  ExpectFlatMemory("platform", Reuses() / 20, [&](long i) {
    MCPMMLParser reader;
    ASSERT_EQ(Read(reader, KindOf(i), test_support::kPmml), KindOf(i) == Round::kGood);
  });
}

TEST(Load, ModelsAreCombinedAgainAndAgain) {
  const MCXMLReadWrite platform;
  const ScratchFolder folder;
  const std::string first = WriteTo(folder.File("first.pmml"), test_support::kFirstModel);
  const std::string second = WriteTo(folder.File("second.pmml"), test_support::kSecondModel);
  const std::string broken = WriteTo(folder.File("broken.pmml"), "<PMML><DataDictionary>");
  MCVarList variables;
  variables.AddCatVar("region", "", std::vector<std::string>{"North", "South"},
                      IMCVariable::kRoleInput);
  ExpectFlatMemory("combinations", Combinations(), [&](long i) {
    MCXSplitPMMLCombiner combiner(variables);
    ASSERT_TRUE(combiner.AddModel(first, {"North"}).IsOK());
    ASSERT_TRUE(combiner.AddModel(second, {"South " + std::to_string(i)}).IsOK());
    ASSERT_FALSE(combiner.AddModel(broken, {"South"}).IsOK());
    ASSERT_EQ(combiner.GetNModels(), 2);
    const bool is_full = i % 8 == 5;
    const std::string out = i % kFileEvery == 0 ? folder.File("out.pmml") : "/dev/null";
    ASSERT_EQ(combiner.ExportMiningModel(is_full ? "/dev/full" : out).IsOK(), !is_full);
  });
}

TEST(Load, NamesAreConverted) {
  using namespace MCMEM_NAMESPACE;
  ExtNameStr name;
  ExpectFlatMemory("ExtNameStr", Reuses(), [&](long i) {
    name.SetU8("variable " + std::to_string(10'000'000 + i) + ", d\xC3\xA9j\xC3\xA0 vu");
    ASSERT_EQ(name.ErrorCode(), 0);
    const ExtNameStr copy(name);
    ASSERT_EQ(copy.GetCP(), name.GetCP());
  });
}

TEST(Load, ConvertersAreOpenedAndClosed) {
  using namespace MCMEM_NAMESPACE;
  const char* const code_pages[] = {"932", "1251", "GB18030", "ISO-2022-JP", "x11-compound-text"};
  ExpectFlatMemory("converters", Reuses(), [&](long i) {
    UConverter* const converter = TULKMBConverterNew_C(code_pages[i % 5]);
    ASSERT_NE(converter, nullptr);
    std::string bytes;
    ASSERT_EQ(TULKMBU8ToCodePage(converter, bytes, "text " + std::to_string(10'000'000 + i)), 0);
    ucnv_close(converter);
  });
}

}  // namespace
