// What the XML half promises to threads: objects of their own, made and destroyed on any of them.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "load/Threads.h"
#include "mccommon/MCFormat.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "mcxprsutil/MCXTranscoder.h"
#include "support/SmallDocuments.h"
#include "support/TestFiles.h"
#include "support/VarListText.h"
#include "xml/PlatformFault.h"

namespace {

using load_test::OnAllThreads;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using test_support::ReadFile;
using test_support::ScratchFolder;
using test_support::TextOf;
using test_support::WriteTo;

constexpr int kRounds = 20;

// What a new reader of each kind makes of its document; empty when something failed.

std::string ReadPmml() {
  MCPMMLParser reader;
  std::istringstream in(test_support::kPmml);
  MCVarList list;
  if (!reader.ParseToDOM(in).IsOK() || !reader.FillVarList(list, {}, true).IsOK()) return "";
  return TextOf(list);
}

std::string ReadSettings() {
  MCSettingsParser reader;
  std::istringstream in(test_support::kSettings);
  MCVarList list;
  if (!reader.ParseToDOM(in).IsOK() || !reader.FillVarList(list, true).IsOK()) return "";
  std::vector<std::string> names;
  return reader.GetPredictors(names).IsOK() ? TextOf(list) + names.front() : "";
}

std::string ReadDataModel() {
  MCDataModelParser reader;
  MCVarList list;
  if (!reader.ParseToDOM(test_support::kDataModel).IsOK()) return "";
  return reader.FillVarList(list, true, true, 4).IsOK() ? TextOf(list) : "";
}

std::string ReadMalformed() {
  MCPMMLParser reader;
  std::istringstream in("<PMML><DataDictionary></PMML>");
  return reader.ParseToDOM(in).IsOK() ? "" : reader.GetXercesMessage();
}

// Another encoding than UTF-8 goes through the XML library's converters.
std::string ReadCodePage() {
  MCXMLReadWrite reader;
  std::istringstream in("<?xml version='1.0' encoding='windows-1251'?><a b='\xC6'/>");
  if (!reader.ParseToDOM(in).IsOK() || !reader.IsWellFormed()) return "";
  const auto* root = reader.GetDocument()->getDocumentElement();
  return MCXPrsUtil::ToUTF8(MCXPrsUtil::GetAttribute(*root, "b"));
}

void ExpectSameOnAllThreads(std::string (*read)()) {
  const std::string expected = read();
  ASSERT_NE(expected, "");
  std::atomic<int> wrong{0};
  OnAllThreads([&](int) {
    for (int i = 0; i < kRounds; ++i) wrong += read() == expected ? 0 : 1;
  });
  EXPECT_EQ(wrong, 0);
}

constexpr std::string (*kReads[])() = {ReadPmml, ReadSettings, ReadDataModel, ReadMalformed,
                                       ReadCodePage};

TEST(XmlThreads, EachMakesReadersOfItsOwn) {
  const MCXMLReadWrite platform;
  for (const auto read : kReads) ExpectSameOnAllThreads(read);
}

// The platform then starts and stops again and again, whenever no thread has a reader.
TEST(XmlThreads, NobodyNeedsToHoldThePlatform) {
  for (const auto read : kReads) ExpectSameOnAllThreads(read);
}

TEST(XmlThreads, AllKindsOfReadersAtOnce) {
  const MCXMLReadWrite platform;
  std::vector<std::string> expected;
  for (const auto read : kReads) expected.push_back(read());
  std::atomic<int> wrong{0};
  OnAllThreads([&](int thread) {
    for (int i = 0; i < kRounds; ++i) {
      const std::size_t kind = static_cast<std::size_t>(thread + i) % std::size(kReads);
      wrong += kReads[kind]() == expected[kind] ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST(XmlThreads, EachReusesAReaderThatAnotherOneMade) {
  const std::string expected = ReadPmml();
  std::vector<std::unique_ptr<MCPMMLParser>> readers;
  for (int i = 0; i < load_test::kThreads; ++i) readers.push_back(std::make_unique<MCPMMLParser>());
  std::atomic<int> wrong{0};
  OnAllThreads([&](int thread) {
    MCPMMLParser& reader = *readers[static_cast<std::size_t>(thread)];
    for (int i = 0; i < kRounds; ++i) {
      std::istringstream in(test_support::kPmml);
      MCVarList list;
      const bool is_ok = reader.ParseToDOM(in).IsOK() && reader.FillVarList(list, {}, true).IsOK();
      wrong += is_ok && TextOf(list) == expected ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

// Every object is counted, whichever thread makes and destroys it.
TEST(XmlThreads, StartsAndStopsOfThePlatformAreCounted) {
  const int before = xml_test::LivePlatforms();
  {
    const MCXMLReadWrite platform;
    OnAllThreads([&](int) {
      for (int i = 0; i < 20'000; ++i) const MCXMLReadWrite reader;
    });
    EXPECT_EQ(xml_test::LivePlatforms(), before + 1);
  }
  EXPECT_EQ(xml_test::LivePlatforms(), before);
  EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr)
      << "the XML library has counted wrong, and is still up";
}

struct SplitModels {
  SplitModels() {
    variables.AddCatVar("region", "", std::vector<std::string>{"North", "South"},
                        IMCVariable::kRoleInput);
  }

  // Empty when something failed.
  std::string Combine(const std::string& out) const {
    MCXSplitPMMLCombiner combiner(variables);
    const bool is_ok = combiner.AddModel(first, {"North"}).IsOK() &&
                       combiner.AddModel(second, {"South"}).IsOK() &&
                       combiner.ExportMiningModel(out).IsOK();
    return is_ok ? ReadFile(out) : "";
  }

  ScratchFolder folder;
  const std::string first = WriteTo(folder.File("first.pmml"), test_support::kFirstModel);
  const std::string second = WriteTo(folder.File("second.pmml"), test_support::kSecondModel);
  MCVarList variables;  // read by all threads
};

TEST(XmlThreads, EachCombinesTheSameModels) {
  const MCXMLReadWrite platform;
  const SplitModels models;
  const std::string expected = models.Combine(models.folder.File("expected.pmml"));
  ASSERT_NE(expected, "");
  std::atomic<int> wrong{0};
  OnAllThreads([&](int thread) {
    const std::string out = models.folder.File("out" + std::to_string(thread) + ".pmml");
    for (int i = 0; i < kRounds; ++i) wrong += models.Combine(out) == expected ? 0 : 1;
  });
  EXPECT_EQ(wrong, 0);
}

// Documents of their own, and functions without an object.
TEST(XmlThreads, EachBuildsADocument) {
  const MCXMLReadWrite platform;
  std::atomic<int> wrong{0};
  OnAllThreads([&](int thread) {
    using namespace MCXPrsUtil;
    const std::string text = "\xC3\xA9 of thread " + std::to_string(thread);
    for (int i = 0; i < kRounds; ++i) {
      MCXMLReadWrite reader;
      std::istringstream in("<a><list>1 2.5 1e400000 x</list></a>");
      if (!reader.ParseToDOM(in).IsOK()) ++wrong;
      auto& document = *reader.GetDocument();
      auto* element = CreateElement(document, "\xC3\xA9l\xC3\xA9ment");
      double number = 0;
      const bool is_right = SetAttribute(*element, "text", text.c_str()) &&
                            SetAttribute(*element, "number", 0.1 * thread) &&
                            InsertElement(*document.getDocumentElement(), element, nullptr) &&
                            ToUTF8(GetAttribute(*element, "text")) == text &&
                            GetDoubleAttribute(*element, "number", number) == 0 &&
                            number == 0.1 * thread;
      wrong += is_right ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST(XmlThreads, TextIsConvertedAnywhere) {
  const MCXMLReadWrite platform;
  std::atomic<int> wrong{0};
  OnAllThreads([&](int) {
    for (int i = 0; i < kRounds; ++i) {
      const MCXPrsUtil::MCXTranscoder transcoder("windows-1251");
      const bool is_right =
          transcoder.TranscodeTo(u"\x0416") == "\xC6" &&
          MCXPrsUtil::ToUTF16("malformed \xC3").front() == 0 &&
          MCXPrsUtil::ToUTF8(MCXPrsUtil::ToUTF16("\xD0\x96").data()) == "\xD0\x96" &&
          MCXML_NAMESPACE::Format(0.25, false, nullptr) == "0.25";
      wrong += is_right ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST(XmlThreads, OneListIsReadByAll) {
  MCPMMLParser reader;
  std::istringstream in(test_support::kPmml);
  ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  MCVarList list;
  ASSERT_TRUE(reader.FillVarList(list, {}, true).IsOK());
  const std::string expected = TextOf(list);
  std::atomic<int> wrong{0};
  OnAllThreads([&](int) {
    for (int i = 0; i < kRounds; ++i) wrong += TextOf(list) == expected ? 0 : 1;
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
