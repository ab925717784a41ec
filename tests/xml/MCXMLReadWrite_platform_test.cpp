// Start and stop of the XML platform, with failures.
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

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

// A memory manager that fails when its countdown ends.
class CountingMemory : public xercesc::MemoryManager {
 public:
  enum Failure { kXMLException, kOutOfMemory };

  void* allocate(XMLSize_t size) override {
    if (left_ > 0 && --left_ == 0) Fail();
    ++live_;
    return ::operator new(size);
  }
  void deallocate(void* p) override {
    if (!p) return;
    --live_;
    ::operator delete(p);
  }
  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }

  // The n-th allocation from now fails; none if n is 0.
  void FailAt(int n, Failure failure) {
    left_ = n;
    failure_ = failure;
  }
  // True if the failure took place since FailAt().
  bool HasFailed() const { return left_ == 0; }
  void Stop() { left_ = -1; }
  long Live() const { return live_; }

 private:
  [[noreturn]] void Fail() {
    if (failure_ == kOutOfMemory) throw xercesc::OutOfMemoryException();
    throw xercesc::RuntimeException("memory", 1, xercesc::XMLExcepts::CPtr_PointerIsZero);
  }

  int left_ = -1;
  Failure failure_ = kOutOfMemory;
  long live_ = 0;
};

// Keeps the platform up on that memory.
class PlatformOn {
 public:
  explicit PlatformOn(CountingMemory& memory) {
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, nullptr,
                                          &memory);
  }
  ~PlatformOn() { xercesc::XMLPlatformUtils::Terminate(); }
};

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
  const PlatformOn platform(memory);
  MCXMLReadWrite reader;
  std::istringstream first("<a/>");
  ASSERT_TRUE(reader.ParseToDOM(first).IsOK());

  std::istringstream second("<b/>");
  memory.FailAt(1, CountingMemory::kXMLException);
  EXPECT_EQ(reader.ParseToDOM(second), kPlatformFailed);
  EXPECT_TRUE(memory.HasFailed());
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_EQ(reader.GetXercesMessage(), "");
  EXPECT_EQ(second.get(), '<') << "the stream was touched";

  memory.Stop();
  std::istringstream third("<c/>");
  EXPECT_TRUE(reader.ParseToDOM(third).IsOK());
}

TEST(MCXMLReadWritePlatform, AnyFailedAllocationOfAParseLeavesTheObjectUsable) {
  const std::string text =
      "<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST a b CDATA 'c'>]><a>&e;<d f='g'/></a>";
  const xml_test::IgnoreLeaks leaks_of_the_library;
  CountingMemory memory;
  const PlatformOn platform(memory);
  MCXMLReadWrite reader;
  int failures = 0;
  for (int n = 1;; ++n) {
    std::istringstream in(text);
    memory.FailAt(n, CountingMemory::kOutOfMemory);
    try {
      const MCStatus status = reader.ParseToDOM(in);
      const bool failed = memory.HasFailed();
      memory.Stop();
      if (!failed) {
        EXPECT_TRUE(status.IsOK());
        break;
      }
      EXPECT_EQ(status.IsOK(), reader.GetDocument() != nullptr) << n;
    } catch (const xercesc::OutOfMemoryException&) {
      EXPECT_EQ(reader.GetDocument(), nullptr) << n;
      EXPECT_FALSE(reader.IsWellFormed()) << n;
      ++failures;
    }
    memory.Stop();
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

class FailingWrite : public testing::TestWithParam<CountingMemory::Failure> {
 protected:
  FailingWrite() : platform_(memory_) {
    std::istringstream in(kDocumentToWrite);
    EXPECT_TRUE(writer_.ParseToDOM(in).IsOK());
    Write(0);  // what the XML library makes once and keeps
    WriteBare(*writer_.GetDocument());
    open_files_ = xml_test::OpenFiles();
  }

  // Runs `write` with its n-th allocation failing; returns how many blocks that lost.
  template <class Function>
  long LostBy(int n, Function write) {
    passed_ = false;
    const long live = memory_.Live();
    memory_.FailAt(n, GetParam());
    try {
      write();
    } catch (const xercesc::OutOfMemoryException&) {
      passed_ = GetParam() == CountingMemory::kOutOfMemory;
    } catch (const xercesc::XMLException&) {
      passed_ = GetParam() == CountingMemory::kXMLException;
    }
    failed_ = memory_.HasFailed();
    memory_.Stop();
    return memory_.Live() - live;
  }

  long Write(int n) {
    std::filesystem::remove(path_);
    status_ = MCStatus();
    return LostBy(n, [&] { status_ = writer_.WriteFromDOM(path_, nullptr); });
  }

  const xml_test::IgnoreLeaks leaks_of_the_library_;
  CountingMemory memory_;
  const PlatformOn platform_;
  MCXMLReadWrite writer_;
  const xml_test::ScratchFolder folder_;
  const std::string path_ = folder_.File("a.xml");
  std::ptrdiff_t open_files_ = 0;
  MCStatus status_;
  bool passed_ = false;
  bool failed_ = false;
};

TEST_P(FailingWrite, PassesBeforeTheFileIsOpenAndIs118AfterThat) {
  const bool has_message = GetParam() == CountingMemory::kXMLException;
  int before = 0;
  int after = 0;
  for (int n = 1;; ++n) {
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
  int n = 1;
  do {
    SCOPED_TRACE(n);
    const long lost_bare = LostBy(n, [&] { WriteBare(*writer_.GetDocument()); });
    const bool failed_bare = failed_;
    EXPECT_EQ(Write(n), lost_bare);
    EXPECT_EQ(failed_, failed_bare) << "not the same allocations";
  } while (failed_ && ++n < 1000);
  EXPECT_GT(n, 6);
}

INSTANTIATE_TEST_SUITE_P(Failures, FailingWrite,
                         testing::Values(CountingMemory::kOutOfMemory,
                                         CountingMemory::kXMLException),
                         [](const auto& test) {
                           return test.param == CountingMemory::kOutOfMemory ? "OutOfMemory"
                                                                             : "XMLException";
                         });

TEST(MCXMLReadWritePlatform, RepeatedParsesReturnAllMemory) {
  CountingMemory memory;
  const PlatformOn platform(memory);
  MCXMLReadWrite reader;
  long after_first = 0;
  for (int i = 0; i < 20; ++i) {
    std::istringstream in("<a><b c='d'>text</b></a>");
    ASSERT_TRUE(reader.ParseToDOM(in).IsOK());
    if (i == 0) after_first = memory.Live();
  }
  EXPECT_EQ(memory.Live(), after_first);
}

}  // namespace
