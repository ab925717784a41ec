// Files that cannot be written: what WriteFromDOM() and the combiner's export say, and what they
// leave behind.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/util/XMLException.hpp>

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
using Texts = std::vector<std::string>;

// What became of a file that was to be written.
enum Written { kWritten, kRefused, kThrown };

template <class Write>
Written Try(Write write) {
  try {
    const MCStatus status = write();
    if (status.IsOK()) return kWritten;
    EXPECT_EQ(status, MCStatus(118, false));
    return kRefused;
  } catch (const xercesc::XMLException&) {
    return kThrown;
  }
}

// A document that can be written, and written again.
class Document {
 public:
  Document() {
    std::istringstream in(test_support::kPmml);
    EXPECT_TRUE(writer_.ParseToDOM(in).IsOK());
  }
  Written WriteTo(const std::string& path) {
    return Try([&] { return writer_.WriteFromDOM(path, nullptr); });
  }

 private:
  MCXMLReadWrite writer_;
};

// A combiner with a model in it.
class Combination {
 public:
  Combination() : combiner_(Variables()) {
    const std::string path = WriteTo(folder_.File("model.pmml"), test_support::kFirstModel);
    EXPECT_TRUE(combiner_.AddModel(path, {"North"}).IsOK());
  }
  ~Combination() { (void)combiner_.ExportMiningModel(""); }

  Written Export(const std::string& path) {
    return Try([&] { return combiner_.ExportMiningModel(path); });
  }
  // Whether the combined document is gone; makes an empty one if so.
  bool IsReleased() {
    bool created = false;
    combiner_.CreateEmptyMiningModel(created);
    return created;
  }

 private:
  const MCVarList& Variables() {
    variables_.AddCatVar("region", "", Texts{"North"}, IMCVariable::kRoleInput);
    return variables_;
  }

  MCXMLReadWrite platform_;
  ScratchFolder folder_;
  MCVarList variables_;
  MCXSplitPMMLCombiner combiner_;
};

struct Target {
  const char* rule;
  std::function<std::string(const ScratchFolder& folder)> make;  // gives its path
  Written result;
};

// Each of them for root as well.
const std::vector<Target> kTargets = {
    {"a file that is replaced",
     [](auto& folder) { return WriteTo(folder.File("old.pmml"), std::string(100000, 'x')); },
     kWritten},
    {"a link to a file that is not there yet",
     [](auto& folder) {
       std::filesystem::create_symlink(folder.File("new.pmml"), folder.File("link.pmml"));
       return folder.File("link.pmml");
     },
     kWritten},
    {"no folder", [](auto& folder) { return folder.File("no/such/out.pmml"); }, kThrown},
    {"a folder that is a file",
     [](auto& folder) { return WriteTo(folder.File("file"), "") + "/out.pmml"; }, kThrown},
    {"a folder", [](auto& folder) { return folder.File(""); }, kThrown},
    {"a link into no folder",
     [](auto& folder) {
       std::filesystem::create_symlink(folder.File("no/out.pmml"), folder.File("dangling.pmml"));
       return folder.File("dangling.pmml");
     },
     kThrown},
    {"a link to itself",
     [](auto& folder) {
       std::filesystem::create_symlink("loop.pmml", folder.File("loop.pmml"));
       return folder.File("loop.pmml");
     },
     kThrown},
    {"a name that is too long", [](auto& folder) { return folder.File(std::string(300, 'n')); },
     kThrown},
    {"a folder that takes no files", [](auto&) { return "/proc/out.pmml"; }, kThrown},
    {"a full disk", [](auto&) { return "/dev/full"; }, kRefused},
};

TEST(Targets, WriteFromDomTellsOrThrowsAndCanWriteElsewhere) {
  Document document;
  for (const Target& target : kTargets) {
    const ScratchFolder folder;
    EXPECT_EQ(document.WriteTo(target.make(folder)), target.result) << target.rule;
    EXPECT_EQ(document.WriteTo(folder.File("good.pmml")), kWritten) << target.rule;
    EXPECT_NE(ReadFile(folder.File("good.pmml")), "");
  }
}

TEST(Targets, AnExportTellsOrThrowsAndReleasesTheDocument) {
  for (const Target& target : kTargets) {
    const ScratchFolder folder;
    Combination combination;
    EXPECT_EQ(combination.Export(target.make(folder)), target.result) << target.rule;
    EXPECT_TRUE(combination.IsReleased()) << target.rule;
  }
}

TEST(Targets, NothingIsLeftOpen) {
  Document document;
  const ScratchFolder folder;
  std::vector<std::string> paths;
  for (const Target& target : kTargets) paths.push_back(target.make(folder));
  const auto before = xml_test::OpenFiles();
  for (const std::string& path : paths) (void)document.WriteTo(path);
  EXPECT_EQ(xml_test::OpenFiles(), before);
}

// What both say about a path, to be asked in a process of its own.
int Both(Document& document, Combination& combination, const std::string& path) {
  const Written written = document.WriteTo(path);
  return combination.Export(path) == written ? static_cast<int>(written) : 50;
}

TEST(Targets, AFolderOrAFileThatMayNotBeWrittenThrows) {
  using std::filesystem::permissions;
  using std::filesystem::perms;
  const ScratchFolder folder;
  permissions(folder.File(""), perms::owner_all | perms::others_read | perms::others_exec);
  const std::string locked = WriteTo(folder.File("locked.pmml"), "kept");
  permissions(locked, perms::owner_read | perms::others_read);
  if (geteuid() != 0) permissions(folder.File(""), perms::owner_read | perms::owner_exec);
  Document document;
  Combination combination;
  bool is_possible = true;
  for (const std::string& path : {locked, folder.File("new.pmml")}) {
    const auto end = test_support::RunAsNobody([&] { return Both(document, combination, path); });
    is_possible = end.exit_code != test_support::kCannotChangeUser;
    if (is_possible) {
      EXPECT_EQ(end.exit_code, kThrown) << path << ", signal " << end.signal;
    }
  }
  permissions(folder.File(""), perms::owner_all);
  if (!is_possible) GTEST_SKIP() << "root cannot become nobody here";
  EXPECT_EQ(ReadFile(locked), "kept");
  EXPECT_FALSE(std::filesystem::exists(folder.File("new.pmml")));
}

#ifndef MCX_TEST_SANITIZED  // which needs descriptors itself
TEST(Targets, WithoutAFileDescriptorWritingThrows) {
  const ScratchFolder folder;
  Document document;
  Combination combination;
  const auto end = test_support::RunInChild([&] {
    const rlimit none{0, 0};
    if (setrlimit(RLIMIT_NOFILE, &none) != 0) return 10;
    return Both(document, combination, folder.File("out.pmml"));
  });
  EXPECT_EQ(end.exit_code, kThrown) << "signal " << end.signal;
}
#endif

// The files of a process are limited in size: the disk is full in the middle of the document.
TEST(Targets, ADiskThatFillsUpIs118AtAnyByte) {
  const ScratchFolder folder;
  const std::string path = folder.File("out.pmml");
  Document document;
  ASSERT_EQ(document.WriteTo(path), kWritten);
  const auto whole = static_cast<rlim_t>(std::filesystem::file_size(path));
  for (const rlim_t size : {rlim_t{0}, rlim_t{1}, whole / 2, whole - 1, whole}) {
    const auto end = test_support::RunInChild([&] {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{size, size};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 10;
      return static_cast<int>(document.WriteTo(path));
    });
    EXPECT_EQ(end.exit_code, size < whole ? kRefused : kWritten) << size;
    EXPECT_EQ(std::filesystem::file_size(path), size) << "what fitted stays";
  }
}

}  // namespace
