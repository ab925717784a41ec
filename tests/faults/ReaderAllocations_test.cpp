// Readers that are made and that parse while memory is short.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <xercesc/util/PlatformUtils.hpp>

#include "faults/AllocationSweep.h"
#include "faults/XercesAlone.h"
#include "mcxprsutil/MCDataModelParser.h"
#include "mcxprsutil/MCPMMLParser.h"
#include "mcxprsutil/MCSettingsParser.h"
#include "support/FailingAllocations.h"
#include "support/SmallDocuments.h"

namespace {

using fault_test::FailingXmlMemory;
using fault_test::Subject;
using fault_test::SweepAndPrint;
using fault_test::TextOf;
using MCCommon::MCStatus;
using MCXPrsUtil::MCDataModelParser;
using MCXPrsUtil::MCPMMLParser;
using MCXPrsUtil::MCSettingsParser;

// What differs among the readers. The input of a parse is made beforehand.

struct PmmlTraits {
  using Reader = MCPMMLParser;
  using Input = std::istringstream;
  static constexpr const char* kText = test_support::kPmml;
  static constexpr const char* kOther = "<PMML><DataDictionary/></PMML>";
  static constexpr bool kThrows = true;
  static bool HoldsDocument(Reader& reader) { return reader.GetRootElement() != nullptr; }
};

struct SettingsTraits {
  using Reader = MCSettingsParser;
  using Input = std::istringstream;
  static constexpr const char* kText = test_support::kSettings;
  // Without parameters: those of the document before stay in force.
  static constexpr const char* kOther = "<PMML><DataDictionary/></PMML>";
  static constexpr bool kThrows = true;
  static bool HoldsDocument(Reader& reader) { return reader.GetRootElement() != nullptr; }
};

struct DataModelTraits {
  using Reader = MCDataModelParser;
  using Input = std::string;
  static constexpr const char* kText = test_support::kDataModel;
  static constexpr const char* kOther = "<DataModel><Fields/></DataModel>";
  static constexpr bool kThrows = false;
  static bool HoldsDocument(Reader&) { return false; }
};

template <class Traits>
class ReaderAllocations : public testing::Test {
 protected:
  FailingXmlMemory memory_;
};
using AllReaders = testing::Types<PmmlTraits, SettingsTraits, DataModelTraits>;
TYPED_TEST_SUITE(ReaderAllocations, AllReaders, );

template <class Traits>
class Construct : public Subject {
 public:
  ~Construct() override { Destroy(); }
  void Prepare() override { Destroy(); }
  void Run() override { reader_.emplace(); }
  std::string Result() override { return TextOf(reader_->GetStatus()); }

 private:
  // A reader that could not make its parser leaves the platform started.
  void Destroy() {
    if (!reader_.has_value()) return;
    const bool is_unusable = !reader_->GetStatus().IsOK();
    reader_.reset();
    if (is_unusable) xercesc::XMLPlatformUtils::Terminate();
  }

  std::optional<typename Traits::Reader> reader_;
};

TYPED_TEST(ReaderAllocations, ConstructionGives103) {
  SweepAndPrint({"reader()", [] { return std::make_unique<Construct<TypeParam>>(); },
                 fault_test::MakeParserAlone()});
}

template <class Traits>
class Parse : public Subject {
 public:
  Parse(std::string text, std::string earlier)
      : text_(std::move(text)), earlier_(std::move(earlier)) {}
  void Prepare() override {
    if (!earlier_.empty()) ReadEarlier();
    in_.emplace(text_);
  }
  void Run() override { status_ = reader_.ParseToDOM(*in_); }
  std::string Result() override {
    EXPECT_EQ(reader_.GetStatus(), status_);
    return TextOf(status_);
  }
  std::string WrongAfterThrow() override {
    if (Traits::HoldsDocument(reader_)) return "there is a document";
    return reader_.GetStatus() == MCStatus(104, false) ? "" : TextOf(reader_.GetStatus());
  }

 private:
  void ReadEarlier() {
    typename Traits::Input in(earlier_);
    EXPECT_TRUE(reader_.ParseToDOM(in).IsOK());
  }

  const std::string text_;
  const std::string earlier_;
  std::optional<typename Traits::Input> in_;
  typename Traits::Reader reader_;
  MCStatus status_;
};

TYPED_TEST(ReaderAllocations, Parsing) {
  const std::string texts[] = {
      TypeParam::kText,
      "<?xml version='1.0' encoding='windows-1252'?>" + std::string(TypeParam::kOther),
      "<PMML><DataDictionary>", ""};
  for (const std::string& text : texts) {
    for (const std::string earlier : {"", TypeParam::kText}) {
      SweepAndPrint({"parse of " + text.substr(0, 40) + (earlier.empty() ? "" : " after another"),
                     [&] { return std::make_unique<Parse<TypeParam>>(text, earlier); },
                     fault_test::ReuseParserAlone(text, earlier), TypeParam::kThrows});
    }
  }
}

}  // namespace
