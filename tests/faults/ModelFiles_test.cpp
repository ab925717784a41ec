// Model files that are not there, not readable, not files or not documents, by name: for the XML
// layer and for the combiner, whose document they must leave as it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "mccommon/MCVarList.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "mcxprsutil/MCXSplitPMMLCombiner.h"
#include "support/ForeignUser.h"
#include "support/SmallDocuments.h"
#include "support/TestFiles.h"

namespace {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::IMCVariable;
using MCMTD_NAMESPACE::MCVarList;
using MCXPrsUtil::MCXMLReadWrite;
using MCXPrsUtil::MCXSplitPMMLCombiner;
using test_support::ReadFile;
using test_support::ScratchFolder;
using test_support::WriteTo;
using testing::HasSubstr;
using Texts = std::vector<std::string>;

const MCStatus kParseFailed(104, false);

struct BadFile {
  const char* rule;
  std::function<std::string(const ScratchFolder& folder)> make;  // gives its path
};

// Each of them for root as well.
const std::vector<BadFile> kBadFiles = {
    {"missing", [](auto& folder) { return folder.File("none.pmml"); }},
    {"vanished",
     [](auto& folder) {
       const std::string path = WriteTo(folder.File("gone.pmml"), test_support::kFirstModel);
       std::filesystem::remove(path);
       return path;
     }},
    {"empty", [](auto& folder) { return WriteTo(folder.File("empty.pmml"), ""); }},
    {"white space",
     [](auto& folder) { return WriteTo(folder.File("blank.pmml"), std::string(70000, '\n')); }},
    {"zero bytes",
     [](auto& folder) { return WriteTo(folder.File("zero.pmml"), std::string(70000, '\0')); }},
    {"half of a document",
     [](auto& folder) {
       return WriteTo(folder.File("half.pmml"), std::string(test_support::kFirstModel, 300));
     }},
    {"a link to nowhere",
     [](auto& folder) {
       std::filesystem::create_symlink("nowhere", folder.File("dangling.pmml"));
       return folder.File("dangling.pmml");
     }},
    {"a link to itself",
     [](auto& folder) {
       std::filesystem::create_symlink("loop.pmml", folder.File("loop.pmml"));
       return folder.File("loop.pmml");
     }},
    {"in a folder that is a file",
     [](auto& folder) {
       return WriteTo(folder.File("file"), test_support::kFirstModel) + "/model.pmml";
     }},
    {"a name that is too long",
     [](auto& folder) { return folder.File(std::string(300, 'n') + ".pmml"); }},
    {"a name that is no UTF-8", [](auto& folder) { return folder.File("\xC3\x28\xFF.pmml"); }},
    {"a protocol that nobody speaks", [](auto&) { return "gopher://localhost/model.pmml"; }},
};

// These can be opened, but not read. The XML library loses the name of such a file.
const std::vector<BadFile> kUnreadable = {
    {"a folder", [](auto& folder) { return folder.File(""); }},
    {"memory that is not there", [](auto&) { return "/proc/self/mem"; }},
};

bool IsRefused(const MCStatus& status, const MCXMLReadWrite& reader) {
  const bool is_told = !reader.GetXercesMessage().empty() || !reader.GetParseError().empty();
  return (status == kParseFailed || (status.IsOK() && !reader.IsWellFormed())) && is_told;
}

void ExpectRefusedByTheXmlLayer(const BadFile& file, const std::string& path) {
  const ScratchFolder folder;
  const std::string good = WriteTo(folder.File("good.pmml"), test_support::kFirstModel);
  MCXMLReadWrite reader;
  ASSERT_TRUE(reader.ParseToDOM(good).IsOK());
  EXPECT_TRUE(IsRefused(reader.ParseToDOM(path), reader)) << file.rule;
  EXPECT_TRUE(reader.ParseToDOM(good).IsOK()) << file.rule;
  EXPECT_EQ(reader.GetXercesMessage(), "");
}

TEST(ModelFiles, BadOnesAreRefusedByTheXmlLayer) {
  for (const BadFile& file : kBadFiles) {
    const ScratchFolder folder;
    ExpectRefusedByTheXmlLayer(file, file.make(folder));
  }
  for (const BadFile& file : kUnreadable) {
    const xml_test::IgnoreLeaks known_leak;
    const ScratchFolder folder;
    ExpectRefusedByTheXmlLayer(file, file.make(folder));
  }
}

// A combiner of two regions, and the platform that it needs.
class Combination {
 public:
  Combination() {
    variables_.AddCatVar("region", "", Texts{"North", "South"}, IMCVariable::kRoleInput);
    combiner_.emplace(variables_);
  }
  ~Combination() { (void)combiner_->ExportMiningModel(""); }

  MCStatus Add(const std::string& path, const char* region) {
    return combiner_->AddModel(path, {region});
  }
  const Texts& Diagnostics() const { return combiner_->GetDiagnostics(); }
  int Size() const { return combiner_->GetNModels(); }

  // The document that it writes.
  std::string Written() {
    const ScratchFolder folder;
    EXPECT_TRUE(combiner_->ExportMiningModel(folder.File("out.pmml")).IsOK());
    return ReadFile(folder.File("out.pmml"));
  }

 private:
  MCXMLReadWrite platform_;
  MCVarList variables_;
  std::optional<MCXSplitPMMLCombiner> combiner_;
};

// The same two models without a bad one between them.
std::string WrittenWithoutBadOnes(const std::string& first, const std::string& second) {
  Combination combination;
  EXPECT_TRUE(combination.Add(first, "North").IsOK());
  EXPECT_TRUE(combination.Add(second, "South").IsOK());
  return combination.Written();
}

void ExpectRefusedByTheCombiner(const BadFile& file, const std::string& path) {
  const ScratchFolder folder;
  const std::string first = WriteTo(folder.File("first.pmml"), test_support::kFirstModel);
  const std::string second = WriteTo(folder.File("second.pmml"), test_support::kSecondModel);
  Combination combination;
  EXPECT_EQ(combination.Add(path, "North"), kParseFailed) << file.rule;
  EXPECT_TRUE(combination.Add(first, "North").IsOK());
  EXPECT_EQ(combination.Add(path, "South"), kParseFailed) << file.rule;
  EXPECT_TRUE(combination.Add(second, "South").IsOK());
  EXPECT_EQ(combination.Size(), 2);
  EXPECT_THAT(combination.Diagnostics().front(), HasSubstr(path));
  EXPECT_EQ(combination.Written(), WrittenWithoutBadOnes(first, second)) << file.rule;
}

TEST(ModelFiles, BadOnesLeaveTheCombinedDocumentAsItWas) {
  for (const BadFile& file : kBadFiles) {
    const ScratchFolder folder;
    ExpectRefusedByTheCombiner(file, file.make(folder));
  }
  for (const BadFile& file : kUnreadable) {
    const xml_test::IgnoreLeaks known_leak;
    const ScratchFolder folder;
    ExpectRefusedByTheCombiner(file, file.make(folder));
  }
}

TEST(ModelFiles, OneThatVanishesAfterTheFolderWasListedIsLeftOut) {
  const ScratchFolder folder;
  for (const char* name : {"1.pmml", "2.pmml", "3.pmml"}) {
    WriteTo(folder.File(name), test_support::kFirstModel);
  }
  Texts paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder.File(""))) {
    paths.push_back(entry.path().string());
  }
  ASSERT_EQ(paths.size(), 3U);
  std::filesystem::remove(folder.File("2.pmml"));
  Combination combination;
  for (const std::string& path : paths) {
    const MCStatus status = combination.Add(path, "North");
    EXPECT_EQ(status.GetCode(), path == folder.File("2.pmml") ? 104 : 0) << path;
  }
  EXPECT_EQ(combination.Size(), 2);
}

// In a process of its own: 0 when both refuse the file and take a good one afterwards.
int RefuseAndGoOn(const std::string& bad, const std::string& good) {
  MCXMLReadWrite reader;
  if (reader.ParseToDOM(bad) != kParseFailed || reader.GetXercesMessage().empty()) return 1;
  if (!reader.ParseToDOM(good).IsOK()) return 2;
  Combination combination;
  if (combination.Add(bad, "North") != kParseFailed) return 3;
  return combination.Add(good, "North").IsOK() && combination.Size() == 1 ? 0 : 4;
}

TEST(ModelFiles, ThoseThatMayNotBeReadAreRefused) {
  using std::filesystem::permissions;
  using std::filesystem::perms;
  const ScratchFolder folder;
  permissions(folder.File(""), perms::all);
  const std::string good = WriteTo(folder.File("good.pmml"), test_support::kFirstModel);
  const std::string locked = WriteTo(folder.File("locked.pmml"), test_support::kFirstModel);
  permissions(locked, perms::none);
  std::filesystem::create_directory(folder.File("closed"));
  const std::string inside = WriteTo(folder.File("closed/in.pmml"), test_support::kFirstModel);
  permissions(folder.File("closed"), perms::none);
  bool is_possible = true;
  for (const std::string& path : {locked, inside}) {
    const auto end = test_support::RunAsNobody([&] { return RefuseAndGoOn(path, good); });
    is_possible = end.exit_code != test_support::kCannotChangeUser;
    if (is_possible) {
      EXPECT_EQ(end.exit_code, 0) << path << ", signal " << end.signal;
    }
  }
  permissions(folder.File("closed"), perms::all);  // to be removed
  if (!is_possible) GTEST_SKIP() << "root cannot become nobody here";
}

#ifndef MCX_TEST_SANITIZED  // which needs descriptors itself
TEST(ModelFiles, WithoutAFileDescriptorNothingIsReadUntilThereIsOne) {
  const ScratchFolder folder;
  const std::string good = WriteTo(folder.File("good.pmml"), test_support::kFirstModel);
  const auto end = test_support::RunInChild([&] {
    rlimit files{};
    if (getrlimit(RLIMIT_NOFILE, &files) != 0) return 10;
    Combination combination;
    if (!combination.Add(good, "North").IsOK()) return 11;
    const rlimit none{0, files.rlim_max};
    if (setrlimit(RLIMIT_NOFILE, &none) != 0) return 12;
    if (combination.Add(good, "South") != kParseFailed) return 1;
    if (setrlimit(RLIMIT_NOFILE, &files) != 0) return 13;
    return combination.Add(good, "South").IsOK() && combination.Size() == 2 ? 0 : 2;
  });
  EXPECT_EQ(end.exit_code, 0) << "signal " << end.signal;
}
#endif

}  // namespace
