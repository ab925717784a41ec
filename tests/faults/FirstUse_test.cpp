// What libraries make once in a process and keep, made while memory is short: every try is a
// process of its own.
#include <gtest/gtest.h>
#include <mcmem/ConverterRegistry.h>
#include <mcmem/ExtNameStr.h>
#include <mcmem/Transcoding.h>
#include <sys/mman.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <new>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "encoding/RegistryState.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "support/ChildProcess.h"
#include "support/FailingAllocations.h"
#include "support/SmallDocuments.h"
#include "support/TestFiles.h"
#include "support/VarListText.h"

namespace {

using encoding_test::NameOf;
using encoding_test::OwnedConverter;
using fault_test::FailingAllocation;
using MCXPrsUtil::MCXMLReadWrite;
using test_support::ChildEnd;
using test_support::RunInChild;
using namespace MCMEM_NAMESPACE;

constexpr long kEndless = 1000000;
constexpr FailingAllocation::Duration kDurations[] = {FailingAllocation::kOnce,
                                                      FailingAllocation::kForGood};

// How far every allocation fails, before fewer and fewer do. A process costs little, but not under
// a sanitizer, whose memory it has to copy.
#ifdef MCX_TEST_SANITIZED
constexpr long kAllOfIcu = 6;
constexpr long kAllOfXerces = 3;
constexpr long kAllOfTheStart = 1;
#else
constexpr long kAllOfIcu = 64;
constexpr long kAllOfXerces = 16;
constexpr long kAllOfTheStart = 3;
#endif

long Next(long count, long all_up_to) {
  const bool is_full = std::getenv("MCX_FULL_FAULTS") != nullptr;
  return is_full ? count + 1 : count + 1 + count / all_up_to;
}

// How a process ends that used something for the first time while an allocation failed.
enum End {
  kNotNeeded = 10,  // there was no such allocation
  kUnharmed,        // right at once, and afterwards
  kTold,            // told of the failure, and right afterwards
  kIcuIsSpoilt,     // afterwards ICU by itself goes on telling of a lack of memory
  kWrong,           // a wrong result that was not told, or wrong afterwards
  kLost,            // right afterwards, but with more memory than an undisturbed process
};

// Gives the same text each time, the first time as well; empty when it failed.
using Use = std::function<std::string()>;

// ICU makes some tables once, and where it could not, it keeps that for the life of the process:
// asked by nobody else, it does not find what it has.
bool IsIcuSpoilt() {
  UErrorCode error = U_ZERO_ERROR;
  const OwnedConverter converter(ucnv_open("windows-1251", &error));
  return U_FAILURE(error);
}

std::string Attempt(const Use& use) {
  try {
    return use();
  } catch (const std::bad_alloc&) {
    return "";
  } catch (const xercesc::OutOfMemoryException&) {
    return "";
  }
}

End UseFirst(const Use& use, long count, FailingAllocation::Duration duration) {
  FailingAllocation failure(count, duration);
  const std::string first = Attempt(use);
  failure.Stop();
  const std::string second = Attempt(use);
  if (IsIcuSpoilt()) return kIcuIsSpoilt;
  if (second.empty() || second != Attempt(use)) return kWrong;
  if (!failure.HasFailed()) return first == second ? kNotNeeded : kWrong;
  if (!first.empty() && first != second) return kWrong;
  return first.empty() ? kTold : kUnharmed;
}

// The blocks that UseFirst() leaves behind where nothing fails.
fault_test::Blocks KeptUndisturbed(const Use& use) {
  void* const memory = mmap(nullptr, sizeof(fault_test::Blocks), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  EXPECT_NE(memory, MAP_FAILED);
  auto* const kept = new (memory) fault_test::Blocks;
  RunInChild([&] {
    const fault_test::Blocks before = fault_test::LiveBlocks();
    const End end = UseFirst(use, kEndless, FailingAllocation::kOnce);
    *kept = fault_test::LiveBlocks() - before;
    return end;
  });
  const fault_test::Blocks result = *kept;
  munmap(memory, sizeof(fault_test::Blocks));
  return result;
}

// Xerces loses memory when an allocation fails, which is looked at elsewhere.
enum class Uses { kXerces, kIcuAlone };

void SweepFirstUse(const char* name, Uses uses, const Use& use) {
  const fault_test::Blocks kept = KeptUndisturbed(use);
  std::map<int, int> ends;
  for (const auto duration : kDurations) {
    for (long count = 0;; count = Next(count, uses == Uses::kXerces ? kAllOfXerces : kAllOfIcu)) {
      SCOPED_TRACE(name + (": allocation " + std::to_string(count)));
      const ChildEnd end = RunInChild([&] {
        const fault_test::Blocks before = fault_test::LiveBlocks();
        const End result = UseFirst(use, count, duration);
        const bool is_right = result == kTold || result == kUnharmed;
        const bool counts = uses == Uses::kIcuAlone && is_right;
        return counts && !(fault_test::LiveBlocks() - before == kept) ? kLost : result;
      });
      ++ends[end.exit_code];
      ASSERT_GE(end.exit_code, kNotNeeded) << "signal " << end.signal;
      ASSERT_LT(end.exit_code, kWrong);
      if (end.exit_code == kNotNeeded) break;
    }
  }
  std::cout << "[ first use   ] " << name << ": unharmed " << ends[kUnharmed] << ", told "
            << ends[kTold] << ", ICU spoilt " << ends[kIcuIsSpoilt] << '\n';
}

constexpr char kText[] = "some text, of which it is said that it is long enough for this purpose";

// Empty unless the status is 0 or a text was made all the same.
std::string Outcome(int status, const std::string& text) {
  return text.empty() || status == 2 ? "" : std::to_string(status) + text;
}

std::string ConvertWith(const char* code_page, const char* text) {
  const OwnedConverter converter(TULKMBConverterNew_C(code_page));
  if (converter == nullptr) return "";
  std::string bytes;
  const int status = TULKMBU8ToCodePage(converter.get(), bytes, text);
  return Outcome(status, bytes);
}

TEST(FirstUseOfText, ConverterNames) {
  SweepFirstUse("TULKMBCpNameFromNum_C", Uses::kIcuAlone, [] {
    char name[60];
    return TULKMBCpNameFromNum_C(name, 932) != 0 ? std::string(name) : "";
  });
}

TEST(FirstUseOfText, OpeningOfConverters) {
  for (const char* name : {"932", "1251", "UTF-8", "ISO-2022-JP", "x11-compound-text", "HZ"}) {
    SweepFirstUse(name, Uses::kIcuAlone,
                  [name] { return NameOf(OwnedConverter(TULKMBConverterNew_C(name)).get()); });
  }
}

TEST(FirstUseOfText, ConversionsFindOutAboutACodePage) {
  for (const char* name : {"1251", "932", "gb18030", "ibm-37", "ISO-2022-JP"}) {
    SweepFirstUse(name, Uses::kIcuAlone, [name] { return ConvertWith(name, kText); });
  }
}

TEST(FirstUseOfText, TheDefaultConverter) {
  SweepFirstUse("TULKMBGetDefaultConverter", Uses::kIcuAlone,
                [] { return NameOf(TULKMBGetDefaultConverter()); });
  SweepFirstUse("TULKMBU8ToCodePage", Uses::kIcuAlone, [] {
    std::string bytes;
    const int status = TULKMBU8ToCodePage(nullptr, bytes, kText);
    return Outcome(status, bytes);
  });
}

TEST(FirstUseOfText, Names) {
  SweepFirstUse("ExtNameStr", Uses::kIcuAlone, [] {
    ExtNameStr name;
    name.SetU8(kText);
    if (name.ErrorCode() != 0) return std::string();
    const std::string code_page = name.GetCP();
    return name.ErrorCode() != 0 ? "" : name.GetSystem() + code_page;
  });
}

TEST(FirstUseOfText, TheSystemEncoding) {
  SweepFirstUse("SystemEncoding", Uses::kIcuAlone, [] { return std::string(SystemEncoding()); });
}

// With the platform up, as an application that lives long keeps it.
class FirstUseOfXml : public testing::Test {
  MCXMLReadWrite platform_;
};

template <class Reader>
std::string FillFrom(Reader& reader, const MCCommon::MCStatus& parsed) {
  MCMTD_NAMESPACE::MCVarList list;
  if (!parsed.IsOK() || !reader.FillVarList(list, {}, true).IsOK()) return "";
  return test_support::TextOf(list);
}

TEST_F(FirstUseOfXml, Readers) {
  SweepFirstUse("MCXMLReadWrite", Uses::kXerces, [] {
    MCXMLReadWrite reader;
    std::istringstream in("<?xml version='1.0' encoding='windows-1251'?><a>\xC6</a>");
    return reader.ParseToDOM(in).IsOK() && reader.IsWellFormed() ? "read" : "";
  });
  SweepFirstUse("MCPMMLParser", Uses::kXerces, [] {
    MCXPrsUtil::MCPMMLParser reader;
    std::istringstream in(test_support::kPmml);
    return FillFrom(reader, reader.ParseToDOM(in));
  });
}

TEST_F(FirstUseOfXml, Transcoders) {
  SweepFirstUse("MCXTranscoder", Uses::kXerces, [] {
    const MCXPrsUtil::MCXTranscoder transcoder("windows-1251");
    return transcoder.isValid() ? transcoder.TranscodeTo(u"\x0416") : "";
  });
}

TEST_F(FirstUseOfXml, Writing) {
  const test_support::ScratchFolder folder;
  const std::string path = folder.File("out.xml");
  SweepFirstUse("WriteFromDOM", Uses::kXerces, [&path] {
    MCXMLReadWrite writer;
    std::istringstream in(test_support::kPmml);
    if (!writer.ParseToDOM(in).IsOK() || !writer.WriteFromDOM(path, nullptr).IsOK())
      return std::string();
    return test_support::ReadFile(path);
  });
}

TEST_F(FirstUseOfXml, Combination) {
  const test_support::ScratchFolder folder;
  const std::string first =
      test_support::WriteTo(folder.File("first.pmml"), test_support::kFirstModel);
  const std::string out = folder.File("out.pmml");
  SweepFirstUse("MCXSplitPMMLCombiner", Uses::kXerces, [&first, &out] {
    MCMTD_NAMESPACE::MCVarList variables;
    variables.AddCatVar("region", "", std::vector<std::string>{"North"},
                        MCMTD_NAMESPACE::IMCVariable::kRoleInput);
    MCXPrsUtil::MCXSplitPMMLCombiner combiner(variables);
    if (!combiner.AddModel(first, {"North"}).IsOK()) return std::string();
    if (!combiner.ExportMiningModel(out).IsOK()) return std::string();
    return test_support::ReadFile(out);
  });
}

// The start of the platform. When it runs out of memory, Xerces either ends the process at once or
// throws and is of no use from then on: it counts the start as done, so that another one does
// nothing, and a stop falls over what is missing. No object of ours can do better than to refuse.

constexpr int kStarted = 20;
constexpr int kRefused = 21;
constexpr int kXercesPanicked = 255;

int StartAlone() {
  try {
    xercesc::XMLPlatformUtils::Initialize();
    return kStarted;
  } catch (...) {
    return kRefused;
  }
}

// A reader that could not start says so whatever it is asked, and can be destroyed.
template <class Reader, class Input>
int StartReader() {
  try {
    Reader reader;
    if (reader.GetStatus().IsOK()) return kStarted;
    Input in("<a/>");
    MCMTD_NAMESPACE::MCVarList list;
    const MCCommon::MCStatus refused(103, false);
    const bool is_right = reader.GetStatus() == refused && reader.ParseToDOM(in) == refused;
    return is_right ? kRefused : kWrong;
  } catch (const std::bad_alloc&) {
    return kRefused;
  }
}

int StartReadWrite() {
  try {
    MCXMLReadWrite reader;
    return reader.GetInitStatus().IsOK() ? kStarted : kRefused;
  } catch (...) {
    return kRefused;
  }
}

int StartWith(int (*start)(), long count, FailingAllocation::Duration duration) {
  return RunInChild([&] {
           std::atexit([] { _exit(kXercesPanicked); });  // before a sanitizer looks for leaks
           FailingAllocation failure(count, duration);
           const int result = start();
           failure.Stop();
           return result;
         })
      .exit_code;
}

// The readers' start begins with that of the platform; MCDataModelParser has an allocation of its
// own before it.
struct StartCase {
  const char* name;
  int (*start)();
  long before;
};
constexpr StartCase kStarts[] = {
    {"MCXMLReadWrite", StartReadWrite, 0},
    {"MCPMMLParser", StartReader<MCXPrsUtil::MCPMMLParser, std::istringstream>, 0},
    {"MCSettingsParser", StartReader<MCXPrsUtil::MCSettingsParser, std::istringstream>, 0},
    {"MCDataModelParser", StartReader<MCXPrsUtil::MCDataModelParser, std::string>, 1},
};

TEST(FirstStart, AStartOfThePlatformThatFailsIsRefused) {
  for (const auto duration : kDurations) {
    std::map<int, int> ends;
    for (long count = 0;; count = Next(count, kAllOfTheStart)) {
      const int alone = StartWith(StartAlone, count, duration);
      ++ends[alone];
      if (alone == kStarted) break;
      ASSERT_TRUE(alone == kRefused || alone == kXercesPanicked) << count;
      for (const auto& [name, start, before] : kStarts) {
        ASSERT_EQ(StartWith(start, before + count, duration), alone) << name << ' ' << count;
      }
    }
    EXPECT_GT(ends[kRefused], 0);
    std::cout << "[ first use   ] platform: refused " << ends[kRefused] << ", ended by Xerces "
              << ends[kXercesPanicked] << '\n';
  }
}

}  // namespace
