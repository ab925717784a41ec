// Start and stop of the XML platform, with failures.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <xercesc/framework/MemoryManager.hpp>
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

  // The n-th allocation from now fails, n > 0.
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
