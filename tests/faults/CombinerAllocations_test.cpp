// The combiner while memory is short.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "faults/AllocationSweep.h"
#include "faults/XercesAlone.h"
#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "support/FailingAllocations.h"
#include "support/SmallDocuments.h"
#include "support/TestFiles.h"

namespace {

using fault_test::FailingXmlMemory;
using fault_test::Subject;
using fault_test::SweepAndPrint;
using fault_test::TextOf;
using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using Texts = std::vector<std::string>;

const Texts kNorth = {"the North of the country", "2023"};
const Texts kSouth = {"the South of the country", "2024"};

// Two models, and the split variables that tell them apart.
struct Materials {
  Materials() {
    variables.AddCatVar("region of the country", "Where they live", Texts{kNorth[0], kSouth[0]},
                        IMCVariable::kRoleInput);
    variables.AddCatVar("year", "", std::vector<double>{2023, 2024}, IMCVariable::kRoleInput);
  }

  test_support::ScratchFolder folder;
  const std::string first =
      test_support::WriteTo(folder.File("first.pmml"), test_support::kFirstModel);
  const std::string second =
      test_support::WriteTo(folder.File("second.pmml"), test_support::kSecondModel);
  const std::string out = folder.File("out.pmml");
  MCVarList variables;
};

class CombinerAllocations : public testing::Test {
 protected:
  FailingXmlMemory memory_;
  const Materials materials_;
};

std::string Joined(const Texts& sentences) {
  std::string text;
  for (const std::string& sentence : sentences) text += sentence + '\n';
  return text;
}

// One combiner for each run, since one that ran out of memory must not go on. Its document is
// released at the end, as an application would do it, by exporting to nowhere.
class Combination : public Subject {
 public:
  explicit Combination(const Materials& materials) : materials_(materials) {}
  ~Combination() override { Drop(); }

  void Prepare() override {
    Drop();
    std::filesystem::remove(materials_.out);
  }
  std::string Result() override {
    return status_.IsOK() ? Describe() : TextOf(status_) + Joined(combiner_->GetDiagnostics());
  }

 protected:
  void Construct() { combiner_.emplace(materials_.variables); }
  MCStatus AddFirst() { return combiner_->AddModel(materials_.first, kNorth); }
  MCStatus AddSecond() { return combiner_->AddModel(materials_.second, kSouth); }
  MCStatus Export() { return combiner_->ExportMiningModel(materials_.out); }
  std::string Describe() {
    EXPECT_TRUE(Export().IsOK());
    return test_support::ReadFile(materials_.out) + Joined(combiner_->GetDiagnostics());
  }

  const Materials& materials_;
  std::optional<MCXSplitPMMLCombiner> combiner_;
  MCStatus status_;

 private:
  void Drop() {
    if (combiner_.has_value()) (void)combiner_->ExportMiningModel("");
    combiner_.reset();
  }
};

class Construction : public Combination {
 public:
  using Combination::Combination;
  void Run() override { Construct(); }
  std::string Result() override { return combiner_->GetSplitVarName(0); }
};

// What is left of a model can be written, though it is of no use.
class FirstModel : public Combination {
 public:
  using Combination::Combination;
  std::string WrongAfterThrow() override { return TextOf(Export()) == "ok" ? "" : "not written"; }
  void Prepare() override {
    Combination::Prepare();
    Construct();
  }
  void Run() override { status_ = AddFirst(); }
};

class SecondModel : public Combination {
 public:
  using Combination::Combination;
  std::string WrongAfterThrow() override { return TextOf(Export()) == "ok" ? "" : "not written"; }
  void Prepare() override {
    Combination::Prepare();
    Construct();
    ASSERT_TRUE(AddFirst().IsOK());
  }
  void Run() override { status_ = AddSecond(); }
};

class RefusedModel : public SecondModel {
 public:
  using SecondModel::SecondModel;
  void Run() override { status_ = combiner_->AddModel(materials_.out + " is not there", kSouth); }
};

class Written : public Combination {
 public:
  using Combination::Combination;
  void Prepare() override {
    Combination::Prepare();
    Construct();
    ASSERT_TRUE(AddFirst().IsOK());
    ASSERT_TRUE(AddSecond().IsOK());
  }
  void Run() override { status_ = Export(); }
  std::string Result() override {
    return status_.IsOK() ? test_support::ReadFile(materials_.out) : TextOf(status_);
  }
  std::string WrongAfterThrow() override {
    if (std::filesystem::exists(materials_.out)) return "there is a file";
    bool created = false;
    combiner_->CreateEmptyMiningModel(created);
    return created ? "" : "the document is not released";
  }
};

TEST_F(CombinerAllocations, Construction) {
  SweepAndPrint({"combiner()", [&] { return std::make_unique<Construction>(materials_); }});
}

TEST_F(CombinerAllocations, TheFirstModel) {
  SweepAndPrint({"AddModel of the first", [&] { return std::make_unique<FirstModel>(materials_); },
                 fault_test::ParseFileAndMakeDocumentAlone(materials_.first)});
}

TEST_F(CombinerAllocations, TheSecondModel) {
  SweepAndPrint({"AddModel of the second",
                 [&] { return std::make_unique<SecondModel>(materials_); },
                 fault_test::ParseFileAlone(materials_.second)});
}

TEST_F(CombinerAllocations, AModelThatIsRefused) {
  SweepAndPrint({"AddModel of no file", [&] { return std::make_unique<RefusedModel>(materials_); },
                 fault_test::ParseFileAlone(materials_.out + " is not there")});
}

TEST_F(CombinerAllocations, Export) {
  Written combination(materials_);
  combination.Prepare();
  combination.Run();
  SweepAndPrint({"ExportMiningModel", [&] { return std::make_unique<Written>(materials_); },
                 fault_test::WriteAlone(combination.Result())});
}

}  // namespace
