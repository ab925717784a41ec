// What puts text on a terminal: widths, tables, the progress bar, status and parse messages.
#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

#include "DisplayWidth.h"
#include "ParseMessage.h"
#include "ProgressBar.h"
#include "StatusText.h"
#include "TextTable.h"

namespace {

using examples::DisplayWidth;
using examples::PrefixThatFits;
using examples::Printable;
using examples::ProgressBar;
using examples::ReadParseMessage;
using examples::StatusText;
using examples::TextTable;

TEST(DisplayWidth, CountsColumnsOfATerminal) {
  EXPECT_EQ(DisplayWidth(""), 0U);
  EXPECT_EQ(DisplayWidth("abc"), 3U);
  EXPECT_EQ(DisplayWidth("\xC3\xA9"), 1U);                              // e with acute accent
  EXPECT_EQ(DisplayWidth("e\xCC\x81"), 1U);                             // e and a combining accent
  EXPECT_EQ(DisplayWidth("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"), 6U);  // three Han characters
  EXPECT_EQ(DisplayWidth("\xED\x95\x9C"), 2U);                          // a Hangul syllable
  EXPECT_EQ(DisplayWidth("\xF0\x9F\x98\x80"), 2U);                      // an emoji
  EXPECT_EQ(DisplayWidth("\xFF\xFE"), 2U);                              // no UTF-8: two marks
}

TEST(DisplayWidth, APrefixEndsBetweenCharacters) {
  EXPECT_EQ(PrefixThatFits("abc", 2), 2U);
  EXPECT_EQ(PrefixThatFits("abc", 5), 3U);
  EXPECT_EQ(PrefixThatFits("\xE6\x97\xA5\xE6\x9C\xAC", 3), 3U);
  EXPECT_EQ(PrefixThatFits("\xE6\x97\xA5\xE6\x9C\xAC", 1), 3U) << "one character at least";
  EXPECT_EQ(PrefixThatFits("e\xCC\x81x", 1), 3U) << "a combining mark stays with its letter";
}

TEST(Printable, KeepsControlCharactersFromTheTerminal) {
  EXPECT_EQ(Printable("a b"), "a b");
  EXPECT_EQ(Printable("a\nb\tc\r"), "a\\nb\\tc\\r");
  EXPECT_EQ(Printable("\x1b[2J"), "\\u001b[2J");
  EXPECT_EQ(Printable("\xC2\x9B"), "\\u009b");
  EXPECT_EQ(Printable("\xE2\x80\xAE"), "\\u202e") << "right-to-left override";
}

TEST(Printable, ReplacesBytesThatAreNoUtf8) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_EQ(Printable("a\xFFz"), "a" + mark + "z");
  EXPECT_EQ(Printable("\xC3"), mark) << "cut off";
  EXPECT_EQ(Printable("\xC0\x80"), mark + mark) << "overlong";
  EXPECT_EQ(Printable("\xED\xA0\x80"), mark + mark + mark) << "surrogate";
  EXPECT_EQ(Printable("\xF4\x90\x80\x80"), mark + mark + mark + mark) << "beyond Unicode";
}

std::string Shown(const TextTable& table, std::size_t width) {
  std::ostringstream out;
  table.Print(out, width);
  return out.str();
}

TEST(TextTable, AlignsColumnsByWhatIsSeen) {
  TextTable table({"Name", "Value"});
  table.AddRow({{{"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"}}, {{"1"}}});
  table.AddRow({{{"e\xCC\x81"
                  "a"}},
                {{"2"}}});
  EXPECT_EQ(Shown(table, 80),
            "Name    Value\n"
            "------  -----\n"
            "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E  1\n"
            "e\xCC\x81"
            "a      2\n");
}

TEST(TextTable, LeavesEmptyColumnsOut) {
  TextTable table({"A", "B", "C"});
  table.AddRow({{{"1"}}, {}, {{"2"}}});
  EXPECT_EQ(Shown(table, 80), "A  C\n-  -\n1  2\n");
}

TEST(TextTable, BreaksListsBetweenItems) {
  TextTable table({"Name", "Values"});
  table.AddRow({{{"x"}}, {{"one", "two", "three", "four"}}});
  EXPECT_EQ(Shown(table, 17),
            "Name  Values\n"
            "----  -----------\n"
            "x     one, two,\n"
            "      three, four\n");
}

TEST(TextTable, PutsOneItemPerLineWhereAsked) {
  TextTable table({"Bins"});
  table.AddRow({{{"0 to 1", "1 to 2"}, true}});
  EXPECT_EQ(Shown(table, 80), "Bins\n------\n0 to 1\n1 to 2\n");
}

TEST(TextTable, BreaksALongItemAndIndentsItsRest) {
  TextTable table({"Values"});
  table.AddRow({{{"an item that is long", "b", "c"}}});
  EXPECT_EQ(Shown(table, 12),
            "Values\n"
            "------------\n"
            "an item that\n"
            "  is long,\n"
            "b, c\n");
}

TEST(TextTable, BreaksAWordThatIsTooLongBetweenCharacters) {
  TextTable table({"V"});
  table.AddRow({{{std::string(30, 'x')}}});
  EXPECT_EQ(Shown(table, 1), "V\n" + std::string(24, '-') + "\n" + std::string(24, 'x') + "\n" +
                                 std::string(6, 'x') + "\n");
}

TEST(ProgressBar, WritesNothingWithoutATerminal) {
  std::ostringstream out;
  {
    ProgressBar bar(out, 0, "Combining", 2);
    bar.Advance();
    bar.Advance();
  }
  EXPECT_EQ(out.str(), "");
}

TEST(ProgressBar, ShowsTheFirstAndTheLastStepAndClears) {
  std::ostringstream out;
  {
    ProgressBar bar(out, 80, "Combining", 1000);
    for (int i = 0; i < 1000; ++i) bar.Advance();
  }
  const std::string text = out.str();
  EXPECT_NE(text.find("\rCombining [" + std::string(40, ' ') + "]   0%  1 of 1000\x1b[K"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("\rCombining [" + std::string(40, '#') + "] 100%  1000 of 1000\x1b[K"),
            std::string::npos)
      << text;
  EXPECT_EQ(text.substr(text.size() - 4), "\r\x1b[K");
  EXPECT_LT(text.size(), 10000U) << "a step that comes too early is not drawn";
}

TEST(ProgressBar, FitsANarrowTerminal) {
  for (int width = 1; width < 60; ++width) {
    std::ostringstream out;
    ProgressBar bar(out, width, "Combining", 1);
    bar.Advance();
    const std::string text = out.str();
    const std::string line = text.substr(1, text.size() - 4);  // without \r and the clearing
    EXPECT_LT(line.size(), static_cast<std::size_t>(width)) << line;
  }
}

TEST(StatusText, HasWordsForEveryCode) {
  const int codes[] = {0,   103, 104, 105, 106, 107, 108, 109, 110, 111, 112, 113,
                       114, 115, 116, 118, 119, 120, 121, 122, 123, 124, 125, 126};
  for (int code : codes) EXPECT_STRNE(StatusText(code), "unknown status") << code;
  EXPECT_STREQ(StatusText(117), "unknown status");
  EXPECT_EQ(StatusText(MCCommon::MCStatus(104, false)),
            "the document could not be parsed (status 104)");
}

struct MessageCase {
  const char* message;
  const char* text;
  std::optional<int> line;
  std::optional<int> column;
};

TEST(ParseMessage, TellsThePlaceWhereThereIsOne) {
  const MessageCase cases[] = {
      {"line 3, column 7: expected", "line 3, column 7: expected", 3, 7},
      {"line 1, column 0: expected", "line 1, column 0: expected", 1, 0},
      {"line 0, column 0: unable to open a.dtd", "unable to open a.dtd", {}, {}},
      {"line 3 is bad", "line 3 is bad", {}, {}},
      {"no place", "no place", {}, {}},
      {"", "", {}, {}},
  };
  for (const MessageCase& test : cases) {
    const examples::ParseMessage parsed = ReadParseMessage(test.message);
    EXPECT_EQ(parsed.text, test.text);
    EXPECT_EQ(parsed.line, test.line) << test.message;
    EXPECT_EQ(parsed.column, test.column) << test.message;
  }
}

}  // namespace
