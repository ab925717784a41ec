// Start and stop of the XML platform, with failures.
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "support/CountingMemory.h"
#include "xml/PlatformFault.h"
#include "xml/TestDocument.h"

namespace {

using MCCommon::MCStatus;
using MCXPrsUtil::MCXMLReadWrite;
using xml_test::LivePlatforms;
using xml_test::PlatformFault;
using xml_test::PlatformFaultScope;

const MCStatus kPlatformFailed(103, false);
const MCStatus kWriteFailed(118, false);

TEST(MCXMLReadWritePlatform, EveryObjectInitialisesAndTerminatesOnce) {
  EXPECT_EQ(LivePlatforms(), 0);
  {
    MCXMLReadWrite outer;
    EXPECT_TRUE(outer.GetInitStatus().IsOK());
    EXPECT_EQ(LivePlatforms(), 1);
    {
      MCXMLReadWrite inner;
      EXPECT_EQ(LivePlatforms(), 2);
    }
    EXPECT_EQ(LivePlatforms(), 1);
  }
  EXPECT_EQ(LivePlatforms(), 0);
}

TEST(MCXMLReadWritePlatform, StartsAgainAfterTheLastObject) {
  for (int i = 0; i < 3; ++i) {
    MCXMLReadWrite reader;
    std::istringstream in("<a/>");
    EXPECT_TRUE(reader.ParseToDOM(in).IsOK());
  }
}

TEST(MCXMLReadWritePlatform, DocumentOutlivesOtherObjects) {
  auto other = std::make_unique<MCXMLReadWrite>();
  MCXMLReadWrite reader;
  std::istringstream in("<a/>");
  ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
  other.reset();
  EXPECT_EQ(xml_test::Tag(reader.GetDocument()->getDocumentElement()), "a");
}

TEST(MCXMLReadWritePlatform, FailedInitialisationIsTheStatusOfEverything) {
  const PlatformFaultScope fault(PlatformFault::kXMLException);
  {
    MCXMLReadWrite reader;
    EXPECT_EQ(reader.GetInitStatus(), kPlatformFailed);
    EXPECT_EQ(reader.GetXercesMessage(), "");
    std::istringstream in("<a/>");
    EXPECT_EQ(reader.ParseToDOM(in), kPlatformFailed);
    EXPECT_EQ(reader.ParseToDOM("a.xml"), kPlatformFailed);
    EXPECT_EQ(reader.WriteFromDOM("a.xml", nullptr), kPlatformFailed);
    EXPECT_EQ(reader.GetDocument(), nullptr);
    EXPECT_FALSE(reader.IsWellFormed());
    EXPECT_EQ(reader.GetParseError(), "");
    EXPECT_EQ(in.get(), '<') << "the stream was touched";
  }
  EXPECT_EQ(LivePlatforms(), 0) << "terminated what was never initialised";
}

TEST(MCXMLReadWritePlatform, OtherExceptionsOfTheInitialisationPass) {
  const PlatformFaultScope fault(PlatformFault::kOtherException);
  EXPECT_THROW(MCXMLReadWrite(), std::runtime_error);
  EXPECT_EQ(LivePlatforms(), 0);
}

TEST(MCXMLReadWritePlatform, ParserThatCannotStartGives103AndLeavesNoDocument) {
  CountingMemory memory;
  MCXMLReadWrite reader;
  std::istringstream first("<a/>");
  ASSERT_TRUE(reader.ParseToDOM(first).IsOK());

  std::istringstream second("<b/>");
  memory.FailAfter(0, ThrowXMLException);
  EXPECT_EQ(reader.ParseToDOM(second), kPlatformFailed);
  EXPECT_FALSE(memory.CancelFailure());
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_EQ(reader.GetXercesMessage(), "");
  EXPECT_EQ(second.get(), '<') << "the stream was touched";

  std::istringstream third("<c/>");
  EXPECT_TRUE(reader.ParseToDOM(third).IsOK());
}

TEST(MCXMLReadWritePlatform, AnyFailedAllocationOfAParseLeavesTheObjectUsable) {
  const std::string text =
      "<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST a b CDATA 'c'>]><a>&e;<d f='g'/></a>";
  CountingMemory memory;
  MCXMLReadWrite reader;
  int failures = 0;
  for (long n = 0;; ++n) {
    std::istringstream in(text);
    memory.FailAfter(n, ThrowOutOfMemory);
    try {
      const MCStatus status = reader.ParseToDOM(in);
      if (memory.CancelFailure()) {
        EXPECT_TRUE(status.IsOK());
        break;
      }
      EXPECT_EQ(status.IsOK(), reader.GetDocument() != nullptr) << n;
    } catch (const xercesc::OutOfMemoryException&) {
      EXPECT_EQ(reader.GetDocument(), nullptr) << n;
      EXPECT_FALSE(reader.IsWellFormed()) << n;
      ++failures;
    }
  }
  EXPECT_GT(failures, 20);
  EXPECT_EQ(xml_test::Tag(reader.GetDocument()->getDocumentElement()), "a");
}

// Takes everything and keeps nothing.
class NullTarget : public xercesc::XMLFormatTarget {
  void writeChars(const XMLByte*, XMLSize_t, xercesc::XMLFormatter*) override {}
};

struct Release {
  template <class T>
  void operator()(T* object) const {
    object->release();
  }
};

// A write by the XML library alone.
void WriteBare(const xercesc::DOMDocument& doc) {
  static constexpr XMLCh kLoadSave[] = {'L', 'S', 0};
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(kLoadSave);
  const std::unique_ptr<xercesc::DOMLSSerializer, Release> serializer(
      implementation->createLSSerializer());
  const std::unique_ptr<xercesc::DOMLSOutput, Release> output(implementation->createLSOutput());
  NullTarget target;
  output->setByteStream(&target);
  serializer->write(&doc, output.get());
}

constexpr char kDocumentToWrite[] =
    "<?xml version='1.0' encoding='ISO-8859-1'?><a b='c'>text<d/></a>";

enum class Thrown { kOutOfMemory, kXMLException };

class FailingWrite : public testing::TestWithParam<Thrown> {
 protected:
  FailingWrite() {
    std::istringstream in(kDocumentToWrite);
    EXPECT_TRUE(writer_.ParseToDOM(in).IsOK());
    // What the XML library makes once and keeps.
    EXPECT_TRUE(writer_.WriteFromDOM(path_, nullptr).IsOK());
    WriteBare(*writer_.GetDocument());
    open_files_ = xml_test::OpenFiles();
  }

  // Runs `write` with the allocation after `n` failing; returns how many blocks that lost.
  template <class Function>
  std::size_t LostBy(long n, Function write) {
    passed_ = false;
    const std::size_t live = memory_.LiveBlocks();
    memory_.FailAfter(n, GetParam() == Thrown::kOutOfMemory ? ThrowOutOfMemory : ThrowXMLException);
    try {
      write();
    } catch (const xercesc::OutOfMemoryException&) {
      passed_ = GetParam() == Thrown::kOutOfMemory;
    } catch (const xercesc::XMLException&) {
      passed_ = GetParam() == Thrown::kXMLException;
    }
    failed_ = !memory_.CancelFailure();
    return memory_.LiveBlocks() - live;
  }

  std::size_t Write(long n) {
    std::filesystem::remove(path_);
    status_ = MCStatus();
    return LostBy(n, [&] { status_ = writer_.WriteFromDOM(path_, nullptr); });
  }

  CountingMemory memory_;
  MCXMLReadWrite writer_;
  const xml_test::ScratchFolder folder_;
  const std::string path_ = folder_.File("a.xml");
  std::ptrdiff_t open_files_ = 0;
  MCStatus status_;
  bool passed_ = false;
  bool failed_ = false;
};

TEST_P(FailingWrite, PassesBeforeTheFileIsOpenAndIs118AfterThat) {
  const bool has_message = GetParam() == Thrown::kXMLException;
  int before = 0;
  int after = 0;
  for (long n = 0;; ++n) {
    SCOPED_TRACE(n);
    Write(n);
    EXPECT_EQ(xml_test::OpenFiles(), open_files_);
    if (!failed_) break;
    const bool is_open = std::filesystem::exists(path_);
    ++(is_open ? after : before);
    EXPECT_EQ(passed_, !is_open);
    EXPECT_EQ(status_, is_open ? kWriteFailed : MCStatus());
    EXPECT_EQ(writer_.GetXercesMessage().empty(), !(is_open && has_message));
  }
  EXPECT_TRUE(status_.IsOK());
  EXPECT_GE(before, 3);
  EXPECT_GE(after, 3);
}

// The constructors of the XML library lose memory when they throw.
TEST_P(FailingWrite, LosesNoMoreThanTheXmlLibraryAlone) {
  long n = 0;
  do {
    SCOPED_TRACE(n);
    const std::size_t lost_bare = LostBy(n, [&] { WriteBare(*writer_.GetDocument()); });
    const bool failed_bare = failed_;
    EXPECT_EQ(Write(n), lost_bare);
    EXPECT_EQ(failed_, failed_bare) << "not the same allocations";
  } while (failed_ && ++n < 1000);
  EXPECT_GT(n, 5);
}

INSTANTIATE_TEST_SUITE_P(Failures, FailingWrite,
                         testing::Values(Thrown::kOutOfMemory, Thrown::kXMLException),
                         [](const auto& test) {
                           return test.param == Thrown::kOutOfMemory ? "OutOfMemory"
                                                                     : "XMLException";
                         });

TEST(MCXMLReadWritePlatform, RepeatedParsesReturnAllMemory) {
  CountingMemory memory;
  MCXMLReadWrite reader;
  std::size_t after_first = 0;
  for (int i = 0; i < 20; ++i) {
    std::istringstream in("<a><b c='d'>text</b></a>");
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    if (i == 0) after_first = memory.LiveBlocks();
  }
  EXPECT_EQ(memory.LiveBlocks(), after_first);
}

}  // namespace
