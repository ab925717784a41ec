#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <sstream>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/util/IOException.hpp>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "support/SmallStack.h"
#include "xml/TestDocument.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using test_support::RunOnStackOf;
using xml_test::OpenFiles;
using xml_test::ReadFile;
using xml_test::ScratchFolder;
using xml_test::TestDocument;
using xml_test::Utf8;

const MCStatus kWriteFailed(118, false);

// What the XML library's own file target makes of the document.
std::string BareOutput(const xercesc::DOMDocument& doc, const std::string& path) {
  static constexpr XMLCh kLoadSave[] = {'L', 'S', 0};
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(kLoadSave);
  auto* serializer = implementation->createLSSerializer();
  auto* output = implementation->createLSOutput();
  {
    xercesc::LocalFileFormatTarget target(path.c_str());
    output->setByteStream(&target);
    serializer->write(&doc, output);
  }
  output->release();
  serializer->release();
  return ReadFile(path);
}

std::string Elements(int count) {
  std::string xml = "<a>";
  for (int i = 0; i < count; ++i) xml += "<b name='" + std::to_string(i) + "'>some text</b>\n";
  return xml + "</a>";
}

// Adds text that no serializer can write: a lone surrogate.
void Spoil(TestDocument& doc) {
  static constexpr XMLCh kLone[] = {0xD800, 'a', 0};
  doc.Root().appendChild(doc.Get().createTextNode(kLone));
}

// `levels` elements, each within the one before, around `text`.
std::string Nested(int levels, const std::string& text = "") {
  std::string xml;
  for (int i = 0; i < levels; ++i) xml += "<a>";
  xml += text;
  for (int i = 0; i < levels; ++i) xml += "</a>";
  return xml;
}

// Runs in a child process, because what it does to the process stays.
bool SucceedsInChild(const std::function<bool()>& run) {
  const pid_t child = fork();
  if (child == 0) _exit(run() ? 0 : 1);
  int state = 0;
  return waitpid(child, &state, 0) == child && WIFEXITED(state) && WEXITSTATUS(state) == 0;
}

TEST(MCXMLReadWriteWrite, NothingToWriteIsOkAndCreatesNoFile) {
  const ScratchFolder folder;
  MCXMLReadWrite writer;
  EXPECT_TRUE(writer.WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  EXPECT_FALSE(std::filesystem::exists(folder.File("a.xml")));
  EXPECT_TRUE(writer.WriteFromDOM("/nowhere/at/all.xml", nullptr).IsOK());
}

TEST(MCXMLReadWriteWrite, NothingToWriteKeepsTheMessage) {
  MCXMLReadWrite writer;
  ASSERT_FALSE(writer.ParseToDOM("/nowhere/at/all.xml").IsOK());
  const std::string message = writer.GetXercesMessage();
  ASSERT_NE(message, "");
  EXPECT_TRUE(writer.WriteFromDOM("/nowhere/at/all.xml", nullptr).IsOK());
  EXPECT_EQ(writer.GetXercesMessage(), message);
}

TEST(MCXMLReadWriteWrite, NullDocumentWritesTheCurrentOne) {
  const ScratchFolder folder;
  TestDocument doc("<a><b/></a>");
  ASSERT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  EXPECT_THAT(ReadFile(folder.File("a.xml")), testing::HasSubstr("<a><b/></a>"));
}

TEST(MCXMLReadWriteWrite, GivenDocumentWinsOverTheCurrentOne) {
  const ScratchFolder folder;
  TestDocument current("<current/>");
  TestDocument given("<given/>");
  ASSERT_TRUE(current.Reader().WriteFromDOM(folder.File("a.xml"), &given.Get()).IsOK());
  EXPECT_THAT(ReadFile(folder.File("a.xml")), testing::HasSubstr("<given/>"));
}

TEST(MCXMLReadWriteWrite, AddsNoWhiteSpaceAndKeepsTheDocuments) {
  const ScratchFolder folder;
  const std::string body = "<a><b>  x </b>\n   <c/><!-- d --></a>";
  TestDocument doc(body);
  ASSERT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  EXPECT_EQ(ReadFile(folder.File("a.xml")),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>" + body);
}

TEST(MCXMLReadWriteWrite, GivesTheBytesOfTheBareSerializer) {
  const std::string documents[] = {
      "<a/>",
      "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'>\xE9</a>",
      "<?xml version='1.0' encoding='UTF-16'?><a/>",
      "<a b='&lt;&quot;'>\xC3\xA9 &amp; \xF0\x9F\x98\x80</a>",
      Elements(100'000 / 32),
      Elements(1'000'000 / 32),
      "<a>" + std::string(300'000, 'x') + "</a>",
      "<a>" + std::string(65'536, 'x') + "</a>",
  };
  const ScratchFolder folder;
  MCXMLReadWrite writer;
  for (const std::string& xml : documents) {
    SCOPED_TRACE(xml.substr(0, 60));
    std::istringstream in(xml);
    ASSERT_TRUE(writer.ParseToDOM(in).IsOK());
    ASSERT_NE(writer.GetDocument(), nullptr);
    ASSERT_TRUE(writer.WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
    EXPECT_TRUE(ReadFile(folder.File("a.xml")) ==
                BareOutput(*writer.GetDocument(), folder.File("b.xml")));
  }
}

TEST(MCXMLReadWriteWrite, ReplacesTheFile) {
  const ScratchFolder folder;
  xml_test::WriteFile(folder.File("a.xml"), std::string(10'000, '?'));
  TestDocument doc("<a/>");
  ASSERT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  EXPECT_THAT(ReadFile(folder.File("a.xml")), testing::EndsWith("<a/>"));
}

TEST(MCXMLReadWriteWrite, WhatWasWrittenReadsBack) {
  const ScratchFolder folder;
  TestDocument doc("<a b='&#10;&#9;x'>\xC3\xA9<![CDATA[<]]>&amp;</a>");
  ASSERT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  MCXMLReadWrite again;
  ASSERT_TRUE(again.ParseToDOM(folder.File("a.xml")).IsOK());
  EXPECT_TRUE(again.GetDocument()->isEqualNode(&doc.Get()));
}

// A line feed that was a character reference is written as one; the XML library knows nothing of
// the line ends that XML 1.1 adds.
TEST(MCXMLReadWriteWrite, LineEndsOfXml11AreReadBackAsLineFeeds) {
  const ScratchFolder folder;
  const struct {
    const char* version;
    const char* read_back;
  } kRows[] = {{"1.0", "[\xC2\x85] \xC2\x85\xE2\x80\xA8\r"}, {"1.1", "[ ] \n\n\r"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.version);
    MCXMLReadWrite reader;
    std::istringstream in(std::string("<?xml version='") + row.version +
                          "'?><a b='&#x85;'>&#x85;&#x2028;&#13;</a>");
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    ASSERT_TRUE(reader.WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
    ASSERT_TRUE(reader.ParseToDOM(folder.File("a.xml")).IsOK());
    const auto& root = *reader.GetDocument()->getDocumentElement();
    EXPECT_EQ('[' + Utf8(MCXPrsUtil::GetAttribute(root, "b")) + "] " + Utf8(root.getTextContent()),
              row.read_back);
  }
}

TEST(MCXMLReadWriteWrite, FileThatCannotBeOpenedPassesTheExceptionOfTheXmlLibrary) {
  const ScratchFolder folder;
  TestDocument doc("<a/>");
  for (const std::string& path : {folder.File("none/a.xml"), folder.File(""), std::string()}) {
    SCOPED_TRACE(path);
    std::string expected;
    int code = 0;
    try {
      xercesc::LocalFileFormatTarget target(path.c_str());
    } catch (const xercesc::IOException& e) {
      expected = Utf8(e.getMessage());
      code = e.getCode();
    }
    ASSERT_NE(expected, "");
    try {
      (void)doc.Reader().WriteFromDOM(path, nullptr);
      ADD_FAILURE() << "no exception";
    } catch (const xercesc::IOException& e) {
      EXPECT_EQ(Utf8(e.getMessage()), expected);
      EXPECT_EQ(e.getCode(), code);
      EXPECT_EQ(Utf8(e.getType()), "IOException");
    }
  }
  EXPECT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
}

TEST(MCXMLReadWriteWrite, FullDiskIs118WithAMessage) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
  for (const int elements : {1, 100, 3'000, 100'000}) {
    SCOPED_TRACE(elements);
    TestDocument doc(Elements(elements));
    EXPECT_EQ(doc.Reader().WriteFromDOM("/dev/full", nullptr), kWriteFailed);
    EXPECT_NE(doc.Reader().GetXercesMessage(), "");
    const ScratchFolder folder;
    EXPECT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
    EXPECT_EQ(doc.Reader().GetXercesMessage(), "");
  }
}

TEST(MCXMLReadWriteWrite, FileSizeLimitIs118AndThePartialFileStays) {
  const ScratchFolder folder;
  TestDocument doc(Elements(10'000));
  for (const rlim_t limit : {rlim_t{1}, rlim_t{5'000}, rlim_t{200'000}}) {
    SCOPED_TRACE(limit);
    EXPECT_TRUE(SucceedsInChild([&] {
      signal(SIGXFSZ, SIG_IGN);
      const rlimit size{limit, limit};
      if (setrlimit(RLIMIT_FSIZE, &size) != 0) return false;
      return doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr) == kWriteFailed &&
             !doc.Reader().GetXercesMessage().empty();
    }));
    EXPECT_EQ(std::filesystem::file_size(folder.File("a.xml")), limit);
  }
}

TEST(MCXMLReadWriteWrite, FailedWriteLeavesNoOpenFile) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
  TestDocument doc(Elements(3'000));
  const auto before = OpenFiles();
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(doc.Reader().WriteFromDOM("/dev/full", nullptr), kWriteFailed);
  }
  Spoil(doc);
  const ScratchFolder folder;
  EXPECT_EQ(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr), kWriteFailed);
  EXPECT_EQ(OpenFiles(), before);
}

TEST(MCXMLReadWriteWrite, DeepTreeThatFitsTheStackIsWritten) {
  const ScratchFolder folder;
  for (const std::string& xml : {Nested(10'000), Nested(9'999, "text"),
                                 "<a>" + Nested(9'999) + Nested(9'999) + "<b/></a>"}) {
    TestDocument doc(xml);
    EXPECT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
    EXPECT_EQ(doc.Reader().GetXercesMessage(), "");
    EXPECT_EQ(ReadFile(folder.File("a.xml")).size(),
              BareOutput(doc.Get(), folder.File("b.xml")).size());
  }
}

// 300 000 levels are more than the 8 MiB of a main thread hold, 1000 more than a small thread's.
TEST(MCXMLReadWriteWrite, TreeTooDeepForTheStackIs118WithAMessage) {
  const ScratchFolder folder;
  for (const std::string& xml :
       {Nested(300'000), Nested(300'000, "text"), "<a>" + Nested(2) + Nested(300'000) + "</a>"}) {
    TestDocument doc(xml);
    EXPECT_EQ(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr), kWriteFailed);
    EXPECT_EQ(doc.Reader().GetXercesMessage(),
              "the document is nested too deep: writing it would overflow the stack");
  }
}

TEST(MCXMLReadWriteWrite, StackOfTheCallingThreadCounts) {
  const ScratchFolder folder;
  TestDocument doc(Nested(10'000));
  MCStatus status;
  RunOnStackOf(512 * 1024,
               [&] { status = doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr); });
  EXPECT_EQ(status, kWriteFailed);
  EXPECT_NE(doc.Reader().GetXercesMessage(), "");
  RunOnStackOf(8 * 1024 * 1024,
               [&] { status = doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr); });
  EXPECT_TRUE(status.IsOK());
}

TEST(MCXMLReadWriteWrite, TreeThatIsTooDeepMayBeFollowedByAnother) {
  const ScratchFolder folder;
  TestDocument deep(Nested(300'000));
  ASSERT_EQ(deep.Reader().WriteFromDOM(folder.File("a.xml"), nullptr), kWriteFailed);
  TestDocument flat("<a/>");
  EXPECT_TRUE(deep.Reader().WriteFromDOM(folder.File("a.xml"), &flat.Get()).IsOK());
  EXPECT_EQ(deep.Reader().GetXercesMessage(), "");
  EXPECT_EQ(xml_test::Tag(&deep.Root()), "a");
}

TEST(MCXMLReadWriteWrite, DomExceptionIs118WithoutAMessage) {
  const ScratchFolder folder;
  TestDocument doc("<a>kept</a>");
  Spoil(doc);
  EXPECT_EQ(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr), kWriteFailed);
  EXPECT_EQ(doc.Reader().GetXercesMessage(), "");
  EXPECT_THAT(ReadFile(folder.File("a.xml")), testing::HasSubstr("<a>kept"))
      << "what came before the failure stays in the file";
}

TEST(MCXMLReadWriteWrite, DomExceptionClearsAnOlderMessage) {
  const ScratchFolder folder;
  MCXMLReadWrite writer;
  ASSERT_FALSE(writer.ParseToDOM("/nowhere/at/all.xml").IsOK());
  ASSERT_NE(writer.GetXercesMessage(), "");
  TestDocument doc("<a/>");
  Spoil(doc);
  EXPECT_EQ(writer.WriteFromDOM(folder.File("a.xml"), &doc.Get()), kWriteFailed);
  EXPECT_EQ(writer.GetXercesMessage(), "");
}

TEST(MCXMLReadWriteWrite, ResultOfTheSerializerIsIgnored) {
  const ScratchFolder folder;
  TestDocument doc("<?xml version='1.0' encoding='US-ASCII'?><a/>");
  // An element name outside the encoding: the serializer gives up and returns false.
  MCXPrsUtil::InsertElement(doc.Root(), MCXPrsUtil::CreateElement(doc.Get(), "\xC3\xA9"), nullptr);
  EXPECT_TRUE(doc.Reader().WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  EXPECT_TRUE(std::filesystem::exists(folder.File("a.xml")));
}

TEST(MCXMLReadWriteWrite, DocumentOfAMalformedParseIsWrittenAsFarAsItGoes) {
  const ScratchFolder folder;
  MCXMLReadWrite reader;
  std::istringstream in("<a><b/>");
  ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  EXPECT_TRUE(reader.WriteFromDOM(folder.File("a.xml"), nullptr).IsOK());
  EXPECT_THAT(ReadFile(folder.File("a.xml")), testing::HasSubstr("<a><b/></a>"));
}

}  // namespace
