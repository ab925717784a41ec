// The example programs on files that cannot be read or written: a line that names the file, exit
// code 1, and nothing on standard output.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "examples/RunProgram.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using testing_examples::ProgramResult;
using testing_examples::ReadFile;
using testing_examples::RunProgram;
using testing_examples::TemporaryFolder;
using testing_examples::TreeDocument;
using Texts = std::vector<std::string>;

struct BadFile {
  const char* rule;
  std::function<std::string(const TemporaryFolder& folder)> make;  // gives its path
  const char* reason;
};

std::string Link(const TemporaryFolder& folder, const char* target) {
  std::filesystem::create_symlink(target, folder.Path("link.pmml"));
  return folder.Path("link.pmml");
}

const std::vector<BadFile> kBadFiles = {
    {"missing", [](auto& folder) { return folder.Path("none.pmml"); },
     "cannot be opened: No such file or directory"},
    {"a link to nowhere", [](auto& folder) { return Link(folder, "nowhere"); },
     "cannot be opened: No such file or directory"},
    {"a link to itself", [](auto& folder) { return Link(folder, "link.pmml"); },
     "cannot be opened: Too many levels of symbolic links"},
    {"in a folder that is a file",
     [](auto& folder) { return folder.Write("file", TreeDocument("1")) + "/model.pmml"; },
     "cannot be opened: Not a directory"},
    {"a folder", [](auto& folder) { return folder.Path(); }, "this is a folder"},
    {"unreadable", [](auto&) { return "/proc/self/mem"; }, "cannot be read: Input/output error"},
    {"empty", [](auto& folder) { return folder.Write("empty.pmml", ""); },
     "line 1, column 1: invalid document structure"},
    {"half of a document",
     [](auto& folder) { return folder.Write("half.pmml", TreeDocument("1").substr(0, 200)); },
     "line "},
};

void ExpectRefusal(const ProgramResult& result, const std::string& program, const BadFile& bad,
                   const std::string& path) {
  SCOPED_TRACE(program + ", " + bad.rule);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.error, StartsWith(program + ": " + path + ": "));
  EXPECT_THAT(result.error, HasSubstr(bad.reason));
}

TEST(ProgramFaults, FilesThatCannotBeReadAreTold) {
  for (const BadFile& bad : kBadFiles) {
    const TemporaryFolder folder;
    const std::string path = bad.make(folder);
    const std::string good = folder.Write("good.pmml", TreeDocument("1"));
    const std::string out = folder.Path("out.pmml");
    ExpectRefusal(RunProgram(MCX_DESCRIBE_PMML, {path}), "describe_pmml", bad, path);
    ExpectRefusal(RunProgram(MCX_OWN_DICTIONARY, {path}), "own_dictionary", bad, path);
    ExpectRefusal(
        RunProgram(MCX_COMBINE_SPLITS, {"--by", "v", "--out", out, "1=" + good, "2=" + path}),
        "combine_splits", bad, path);
    EXPECT_FALSE(std::filesystem::exists(out)) << bad.rule;
  }
}

TEST(ProgramFaults, GoodFilesAreReadBesideBadOnes) {
  const TemporaryFolder folder;
  const std::string good = folder.Write("good.pmml", TreeDocument("1"));
  const std::string out = folder.Path("out.pmml");
  Texts splits = {"--keep-going", "--by", "v", "--out", out, "good=" + good};
  Texts files = {good};
  for (const BadFile& bad : kBadFiles) {
    if (bad.rule == std::string("a link to itself")) continue;  // it has the name of another
    const std::string path = bad.make(folder);
    files.push_back(path);
    splits.push_back(std::string("\"") + bad.rule + "\"=" + path);
  }
  splits.push_back("again=" + good);
  const ProgramResult described = RunProgram(MCX_DESCRIBE_PMML, files);
  EXPECT_EQ(described.exitCode, 1);
  EXPECT_THAT(described.out, HasSubstr(good));
  const ProgramResult combined = RunProgram(MCX_COMBINE_SPLITS, splits);
  EXPECT_EQ(combined.exitCode, 1);
  EXPECT_THAT(combined.out, StartsWith("Combined 2 of 9 models into " + out));
}

TEST(ProgramFaults, OutputsThatCannotBeWrittenAreTold) {
  const std::vector<BadFile> outputs = {
      {"no folder", [](auto& folder) { return folder.Path("no/out.pmml"); }, "unable to open file"},
      {"a folder", [](auto& folder) { return folder.Path(); }, "unable to open file"},
      {"a folder that is a file",
       [](auto& folder) { return folder.Write("file", "") + "/out.pmml"; }, "unable to open file"},
      {"a link to itself", [](auto& folder) { return Link(folder, "link.pmml"); },
       "unable to open file"},
      {"a folder that takes no files", [](auto&) { return "/proc/out.pmml"; },
       "unable to open file"},
      {"a full disk", [](auto&) { return "/dev/full"; },
       "the file could not be written (status 118); what is there is incomplete"},
  };
  for (const BadFile& output : outputs) {
    const TemporaryFolder folder;
    const std::string path = output.make(folder);
    const std::string good = folder.Write("good.pmml", TreeDocument("1"));
    ExpectRefusal(RunProgram(MCX_COMBINE_SPLITS, {"--by", "v", "--out", path, "1=" + good}),
                  "combine_splits", output, path);
    EXPECT_EQ(ReadFile(good), TreeDocument("1"));
  }
}

}  // namespace
