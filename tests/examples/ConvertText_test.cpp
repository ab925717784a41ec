// Runs convert_text as a user would.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "RunProgram.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing_examples::ProgramResult;
using testing_examples::ReadFile;
using testing_examples::RunProgram;
using testing_examples::TemporaryFolder;
using Texts = std::vector<std::string>;

const std::string kData = std::string(MCX_EXAMPLE_DATA) + "/text/";

ProgramResult RunText(const Texts& arguments, const std::string& input = "") {
  return RunProgram(MCX_CONVERT_TEXT, arguments, {input, false});
}

// A shell command in which $0 is the program.
ProgramResult RunShell(const std::string& command, const std::string& input = "") {
  return RunProgram("/bin/sh", {"-c", command, MCX_CONVERT_TEXT}, {input, false});
}

class ConvertText : public testing::Test {
 protected:
  TemporaryFolder folder_;
  std::string out_ = folder_.Path("out.txt");
};

// A text in UTF-8 for each code page that has a number with a chosen name.
struct CodePage {
  const char* number;
  const char* name;
  const char* text;
};

constexpr CodePage kCodePages[] = {
    {"932", "windows-31j", "\xE5\x90\x8D\xE5\x89\x8D a \xEF\xBD\xB1\xE3\x81\x82\n"},
    {"936", "GBK", "\xE5\xA7\x93\xE5\x90\x8D a \xE4\xBD\xA0\n"},
    {"949", "KS_C_5601-1987", "\xEA\xB0\x80\xEB\x82\x98 a \xEB\x8B\xA4\n"},
    {"950", "Big5", "\xE5\xA7\x93\xE5\x90\x8D a \xE6\x82\xA8\n"},
    {"1250", "cp1250", "\xC5\xBB\xC3\xB3\xC5\x82w a \xE2\x82\xAC\n"},
    {"1251", "cp1251", "\xD0\x96\xD0\xB8 a \xE2\x84\x96\n"},
    {"1252", "cp1252", "\xC3\xA9\xC3\x9F a \xE2\x82\xAC\n"},
    {"1253", "cp1253", "\xCE\x95\xCE\xBB a \xE2\x82\xAC\n"},
    {"1254", "cp1254", "\xC4\x9F\xC4\xB1 a \xC5\x9F\n"},
    {"1255", "cp1255", "\xD7\xA9\xD7\x9C a \xE2\x82\xAA\n"},
    {"1256", "cp1256", "\xD8\xB4\xD9\x83 a \xD8\x9F\n"},
    {"1257", "cp1257", "\xC4\x97\xC5\xA1 a \xC5\xAB\n"},
    {"1258", "cp1258", "\xC6\xA1\xC4\x91 a \xE2\x82\xAB\n"},
    {"28591", "ISO-8859-1", "\xC3\xA9\xC3\x9F a \xC3\xBF\n"},
    {"65001", "UTF-8", "\xC3\xA9\xE5\xA7\x93\xF0\x9F\x98\x80 a\n"},
};

TEST_F(ConvertText, EveryNumberWithAChosenNameThereAndBackIsTheSameText) {
  for (const CodePage& page : kCodePages) {
    const ProgramResult there = RunText({"--from", "UTF-8", "--to", page.number}, page.text);
    EXPECT_EQ(there.exitCode, 0) << page.number << there.error;
    EXPECT_EQ(there.error, "") << page.number;
    const ProgramResult back = RunText({"--from", page.number, "--to", "UTF-8"}, there.out);
    EXPECT_EQ(back.exitCode, 0) << page.number << back.error;
    EXPECT_EQ(back.out, page.text) << page.number;
  }
}

TEST_F(ConvertText, ANumberMeansTheSameAsItsName) {
  for (const CodePage& page : kCodePages) {
    EXPECT_EQ(RunText({"-f", "UTF-8", "-t", page.number}, page.text).out,
              RunText({"-f", "UTF-8", "-t", page.name}, page.text).out)
        << page.number;
  }
  EXPECT_EQ(RunText({"-f", "1252"}, "\xE9\x80").out, "\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(RunText({"-f", "Windows-1252"}, "\xE9\x80").out, "\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(RunText({"-f", "437"}, "\x82").out, "\xC3\xA9") << "a number without a chosen name";
}

TEST_F(ConvertText, SampleTextsAreConvertedWithoutLoss) {
  const struct {
    const char* file;
    const char* from;
    const char* contains;
  } cases[] = {
      {"letter_cp1252.txt", "1252", "0,70 \xE2\x82\xAC Porto"},
      {"answers_windows-31j.csv", "932", "\xE6\x9D\xB1\xE4\xBA\xAC"},
      {"answers_iso-2022-jp.csv", "ISO-2022-JP", "\xE6\x9D\xB1\xE4\xBA\xAC"},
      {"answers_utf-16.csv", "UTF-16", "Ada,London,\xF0\x9F\x91\x8D"},
      {"list_gbk.txt", "936", "\xE5\x8C\x97\xE4\xBA\xAC"},
  };
  for (const auto& c : cases) {
    const ProgramResult result = RunText({"-f", c.from, kData + c.file});
    EXPECT_EQ(result.exitCode, 0) << c.file << result.error;
    EXPECT_THAT(result.out, HasSubstr(c.contains)) << c.file;
  }
}

TEST_F(ConvertText, BlocksOfAnySizeGiveTheSameText) {
  const struct {
    const char* file;
    const char* from;
    const char* to;
  } cases[] = {
      {"answers_iso-2022-jp.csv", "ISO-2022-JP", "UTF-8"},
      {"answers_windows-31j.csv", "932", "ISO-2022-JP"},
      {"answers_utf-16.csv", "UTF-16", "GB18030"},
  };
  for (const auto& c : cases) {
    const std::string whole = RunText({"-f", c.from, "-t", c.to, kData + c.file}).out;
    ASSERT_GT(whole.size(), 50U) << c.file;
    // Up to 20, so that a border falls between any two bytes of every character and shift.
    for (int block = 1; block <= 20; ++block) {
      const ProgramResult result =
          RunText({"-f", c.from, "-t", c.to, "--block", std::to_string(block), kData + c.file});
      EXPECT_EQ(result.out, whole) << c.file << " by " << block;
    }
  }
}

TEST_F(ConvertText, ATextLongerThanABlockIsWhole) {
  std::string text = "x";  // so that the two-byte characters lie across the borders
  for (int i = 0; i < 50000; ++i) text += "\xC3\xA9\xE2\x82\xAC";
  std::string expected = "x";
  for (int i = 0; i < 50000; ++i) expected += "\xE9\x80";
  const ProgramResult result = RunText({"-f", "UTF-8", "-t", "1252"}, text);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(result.out, expected);
}

TEST_F(ConvertText, TellsHowManyPlacesAreLossyAndWhereTheFirstIs) {
  const ProgramResult result =
      RunText({"-f", "UTF-8", "-t", "1252"}, "caf\xC3\xA9 \xCE\x95 \xCE\xBB");
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(result.out, "caf\xE9 ? ?");
  EXPECT_EQ(result.error,
            "convert_text: standard input: 2 lossy places, the first at byte 6: the target "
            "encoding has no U+0395\n");
}

TEST_F(ConvertText, TellsLossesOfEachFile) {
  const std::string a = folder_.Write("a.txt", "abc\xFF");
  const std::string b = folder_.Write("b.txt", "plain");
  const std::string c = folder_.Write("c.txt", "\xE2\x82");
  const ProgramResult result = RunText({"-f", "UTF-8", a, b, c});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(result.out, "abc?plain?");
  EXPECT_EQ(result.error, "convert_text: " + a +
                              ": 1 lossy place, the first at byte 3: FF is malformed\n" +
                              "convert_text: " + c +
                              ": 1 lossy place, the first at byte 0: E2 82 is malformed\n");
}

TEST_F(ConvertText, StrictStopsAtTheFirstLoss) {
  const std::string a = folder_.Write("a.txt", "fine\n");
  const std::string b = folder_.Write("b.txt", "caf\xE9\n");
  const ProgramResult result = RunText({"-f", "UTF-8", "--strict", "-o", out_, a, b, a});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_THAT(result.error, HasSubstr(b + ": 1 lossy place, the first at byte 3: "));
  EXPECT_THAT(result.error, HasSubstr("stopped there; the output is incomplete\n"));
  EXPECT_EQ(ReadFile(out_), "fine\n");
  EXPECT_EQ(RunText({"-f", "UTF-8", "--strict", a}).exitCode, 0);
  EXPECT_EQ(RunText({"-f", "UTF-8", "--strict"}, "cut \xC3").exitCode, 3)
      << "at the end of the text";
}

TEST_F(ConvertText, FilesFollowOneAnotherAndShareOneBeginningAndEnd) {
  const std::string le = folder_.Write("le.txt", std::string("\xFF\xFE\x42\x30", 4));
  const std::string be = folder_.Write("be.txt", std::string("\xFE\xFF\x30\x42", 4));
  const ProgramResult shifted = RunText({"-f", "UTF-16", "-t", "ISO-2022-JP", le, be});
  EXPECT_EQ(shifted.exitCode, 0) << shifted.error;
  EXPECT_EQ(shifted.out, "\x1B$B$\"$\"\x1B(B");
  const ProgramResult marked = RunText({"-f", "UTF-16", "-t", "UTF-16", le, be});
  EXPECT_EQ(marked.out, std::string("\xFF\xFE\x42\x30\x42\x30", 6)) << "one mark for both";
}

TEST_F(ConvertText, AByteOrderMarkIsACharacterUnlessItIsDropped) {
  const std::string text =
      "\xEF\xBB\xBF"
      "a";
  EXPECT_EQ(RunText({"-f", "UTF-8"}, text).out, text);
  const ProgramResult lost = RunText({"-f", "UTF-8", "-t", "1252"}, text);
  EXPECT_EQ(lost.exitCode, 3);
  EXPECT_EQ(lost.out, "a");
  EXPECT_THAT(lost.error, HasSubstr("the first at byte 0: the target encoding has no U+FEFF"));
  const ProgramResult dropped = RunText({"-f", "UTF-8", "-t", "1252", "--drop-bom"}, text);
  EXPECT_EQ(dropped.exitCode, 0);
  EXPECT_EQ(dropped.out, "a");
}

TEST_F(ConvertText, Utf16ReadsItsMarkOrBigEndianAndWritesALittleEndianOne) {
  const std::string unmarked("\0a", 2);
  EXPECT_EQ(RunText({"-f", "UTF-16"}, unmarked).out, "a");
  EXPECT_EQ(RunText({"-f", "UTF-16"}, std::string("\xFF\xFE"
                                                  "a\0",
                                                  4))
                .out,
            "a");
  EXPECT_EQ(RunText({"-f", "UTF-8", "-t", "UTF-16"}, "a").out, std::string("\xFF\xFE"
                                                                           "a\0",
                                                                           4));
  EXPECT_EQ(RunText({"-f", "UTF-8", "-t", "UTF-16BE"}, "a").out, unmarked);
}

TEST_F(ConvertText, AMinusIsStandardInput) {
  const std::string a = folder_.Write("a.txt", "[a]");
  EXPECT_EQ(RunText({"-f", "UTF-8", a, "-", a}, "from outside").out, "[a]from outside[a]");
}

TEST_F(ConvertText, AnEmptyTextGivesAnEmptyText) {
  const ProgramResult result = RunText({"-f", "932", "-t", "ISO-2022-JP"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "");
}

TEST_F(ConvertText, TheInputIsInTheEncodingOfTheLocaleByDefault) {
  const ProgramResult utf8 = RunShell("LC_ALL=C.UTF-8 \"$0\"", "\xC3\xA9");
  EXPECT_EQ(utf8.exitCode, 0) << utf8.error;
  EXPECT_EQ(utf8.out, "\xC3\xA9");
}

TEST_F(ConvertText, UnknownEncodingsAreAWrongCall) {
  for (const char* name : {"nosuch", "", "0", "100000", "99999", "\xFF", "../x"}) {
    for (const char* option : {"--from", "--to"}) {
      const ProgramResult result = RunText({option, name, "-o", out_}, "text");
      EXPECT_EQ(result.exitCode, 2) << option << name;
      EXPECT_THAT(result.error, HasSubstr("there is no such encoding")) << name;
      EXPECT_FALSE(std::filesystem::exists(out_));
    }
  }
}

TEST_F(ConvertText, NothingIsWrittenUnlessEveryFileCanBeRead) {
  const std::string good = folder_.Write("good.txt", "text");
  const struct {
    std::string file;
    const char* reason;
  } cases[] = {
      {folder_.Path("none.txt"), "cannot be opened: No such file or directory\n"},
      {folder_.Path(), "this is a folder\n"},
  };
  for (const auto& c : cases) {
    const ProgramResult result = RunText({"-f", "UTF-8", "-o", out_, good, c.file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "convert_text: " + c.file + ": " + c.reason);
    EXPECT_FALSE(std::filesystem::exists(out_));
  }
}

TEST_F(ConvertText, APipeWithANameIsReadOnce) {
  const ProgramResult result =
      RunShell("cd '" + folder_.Path() + "' && mkfifo p && (printf text > p & \"$0\" -f UTF-8 p)");
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(result.out, "text");
}

TEST_F(ConvertText, AnOutputThatCannotBeWrittenIsTold) {
  const ProgramResult full = RunText({"-f", "UTF-8", "-o", "/dev/full"}, "text");
  EXPECT_EQ(full.exitCode, 1);
  EXPECT_EQ(full.error,
            "convert_text: /dev/full: cannot be written: No space left on device; the output is "
            "incomplete\n");
  const ProgramResult standard = RunShell("\"$0\" -f UTF-8 > /dev/full", "text");
  EXPECT_EQ(standard.exitCode, 1);
  EXPECT_THAT(standard.error, HasSubstr("standard output: cannot be written: No space left"));
  const ProgramResult folder = RunText({"-f", "UTF-8", "-o", folder_.Path()}, "text");
  EXPECT_EQ(folder.exitCode, 1);
  EXPECT_THAT(folder.error, HasSubstr(": cannot be opened for writing: Is a directory"));
}

TEST_F(ConvertText, RefusesToOverwriteWhatItReads) {
  const std::string file = folder_.Write("text.txt", "text");
  const std::string shell = "cd '" + folder_.Path() + "' && \"$0\" -f UTF-8 ";
  EXPECT_EQ(RunText({"-f", "UTF-8", "-o", file, file}).exitCode, 2);
  EXPECT_EQ(RunText({"-f", "UTF-8", "-o", folder_.Path() + "/./text.txt", file}).exitCode, 2);
  EXPECT_EQ(RunShell(shell + "-o text.txt < text.txt").exitCode, 2);
  EXPECT_EQ(RunShell(shell + "text.txt >> text.txt").exitCode, 2);
  const ProgramResult both = RunShell(shell + "< text.txt >> text.txt");
  EXPECT_EQ(both.exitCode, 2);
  EXPECT_EQ(both.error,
            "convert_text: standard input: this would be overwritten while it is read\n");
  EXPECT_EQ(ReadFile(file), "text");
  EXPECT_EQ(RunShell("\"$0\" -f UTF-8 < /dev/null > /dev/null").exitCode, 0) << "a device";
}

TEST_F(ConvertText, AnOutputThatIsThereIsOverwritten) {
  ASSERT_EQ(RunText({"-f", "1252", "-o", out_}, "a long text").exitCode, 0);
  const ProgramResult result = RunText({"-f", "1252", "-o", out_}, "\xE9");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(ReadFile(out_), "\xC3\xA9");
}

TEST_F(ConvertText, ListsNumbersAndNames) {
  const ProgramResult result = RunText({"--list"});
  EXPECT_EQ(result.exitCode, 0);
  for (const CodePage& page : kCodePages) {
    const std::string number = std::string(5 - std::string(page.number).size(), ' ') + page.number;
    EXPECT_THAT(result.out, HasSubstr("  " + number + "  " + page.name + "\n"));
  }
  EXPECT_THAT(result.out, HasSubstr("\nNames:\n"));
  EXPECT_THAT(result.out, HasSubstr("\n  UTF-8: "));
  EXPECT_THAT(result.out, HasSubstr(", windows-1252, cp1252\n")) << "other names behind";
}

TEST_F(ConvertText, AListMayBeFiltered) {
  const ProgramResult result = RunText({"--list", "SHIFT_jis"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("Shift_JIS"));
  EXPECT_THAT(result.out, Not(HasSubstr("UTF-8")));
  EXPECT_THAT(RunText({"--list", "932"}).out, HasSubstr("    932  windows-31j\n"));
  const ProgramResult none = RunText({"--list", "nosuch"});
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(none.error, "convert_text: no encoding has \"nosuch\"\n");
  EXPECT_EQ(RunShell("\"$0\" --list > /dev/full").exitCode, 1);
}

TEST_F(ConvertText, EveryNameInTheListCanBeOpened) {
  const std::string list = RunText({"--list", "utf"}).out;
  for (const char* name : {"UTF-8", "UTF-16", "UTF-32", "UTF-7"}) {
    EXPECT_THAT(list, HasSubstr(std::string("\n  ") + name)) << name;
    EXPECT_EQ(RunText({"-f", name, "-t", name}).exitCode, 0) << name;
  }
}

TEST_F(ConvertText, ShowsAProgressBarForLargeFilesOnATerminal) {
  const std::string big = folder_.Write("big.txt", std::string(3 << 20, 'x'));
  const Texts arguments{"-f", "UTF-8", "-o", out_, big};
  const ProgramResult seen = RunProgram(MCX_CONVERT_TEXT, arguments, {"", true});
  EXPECT_EQ(seen.exitCode, 0);
  EXPECT_THAT(seen.error, HasSubstr("MiB converted ["));
  EXPECT_THAT(seen.error, HasSubstr("] 100%  3 of 3"));
  EXPECT_EQ(RunText(arguments).error, "") << "no bar without a terminal";
  const std::string small = folder_.Write("small.txt", "x");
  EXPECT_EQ(RunProgram(MCX_CONVERT_TEXT, {"-f", "UTF-8", "-o", out_, small}, {"", true}).error, "")
      << "nor for a small file";
}

TEST_F(ConvertText, WrongCallsAreTold) {
  for (const Texts& arguments :
       {Texts{"--nosuch"}, Texts{"--block", "0"}, Texts{"--block", "x"}, Texts{"--from"}}) {
    const ProgramResult result = RunText(arguments);
    EXPECT_EQ(result.exitCode, 2) << arguments[0];
    EXPECT_NE(result.error, "") << arguments[0];
  }
  const ProgramResult help = RunText({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_THAT(help.out, StartsWith("Converts texts from one encoding to another."));
  EXPECT_THAT(help.out, Not(HasSubstr("--block"))) << "for tests only";
}

}  // namespace
