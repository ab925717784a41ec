#include "ScriptTexts.h"

#include <cstdint>
#include <iterator>

namespace bench {
namespace {

constexpr std::size_t kSeparators = 8;  // drawn evenly; a space comes more than once

constexpr const char* kAsciiWords[] = {
    u8"the",       u8"model",      u8"of",        u8"segment",  u8"value",       u8"records",
    u8"weight",    u8"and",        u8"standard",  u8"error",    u8"is",          u8"for",
    u8"each",      u8"with",       u8"category",  u8"margin",   u8"coefficient", u8"target",
    u8"field",     u8"interval",   u8"predicted", u8"residual", u8"tree",        u8"node",
    u8"score",     u8"estimate",   u8"sample",    u8"variance", u8"a",           u8"to",
    u8"by",        u8"confidence", u8"statistic", u8"between",  u8"significant", u8"observed",
    u8"frequency", u8"regression", u8"cluster",   u8"mean"};
constexpr const char* kFrenchWords[] = {u8"mod\u00E8le",
                                        u8"de",
                                        u8"la",
                                        u8"m\u00E9diane",
                                        u8"\u00E9cart",
                                        u8"r\u00E9ponse",
                                        u8"cat\u00E9gorie",
                                        u8"\u00E9lev\u00E9",
                                        u8"les",
                                        u8"donn\u00E9es",
                                        u8"\u00E9t\u00E9",
                                        u8"\u00E0",
                                        u8"pour",
                                        u8"r\u00E9gion",
                                        u8"pr\u00E9vu",
                                        u8"coefficient",
                                        u8"num\u00E9ro",
                                        u8"fr\u00E9quence",
                                        u8"o\u00F9",
                                        u8"variable",
                                        u8"erreur",
                                        u8"r\u00E9partition",
                                        u8"segment",
                                        u8"d\u00E9j\u00E0",
                                        u8"tableau",
                                        u8"p\u00E9riode",
                                        u8"valeur",
                                        u8"par",
                                        u8"c\u00F4t\u00E9",
                                        u8"r\u00E9sultats",
                                        u8"des",
                                        u8"intervalle",
                                        u8"m\u00EAme",
                                        u8"qualit\u00E9",
                                        u8"une",
                                        u8"\u00E9chelle",
                                        u8"moyenne",
                                        u8"fa\u00E7on",
                                        u8"observ\u00E9e",
                                        u8"tr\u00E8s",
                                        u8"nombre",
                                        u8"\u00EAtre"};
constexpr const char* kCyrillicWords[] = {
    u8"\u043C\u043E\u0434\u0435\u043B\u044C",
    u8"\u0434\u0430\u043D\u043D\u044B\u0435",
    u8"\u0441\u0440\u0435\u0434\u043D\u0435\u0435",
    u8"\u0438",
    u8"\u0437\u043D\u0430\u0447\u0435\u043D\u0438\u0435",
    u8"\u043F\u043E",
    u8"\u0432\u044B\u0431\u043E\u0440\u043A\u0430",
    u8"\u043E\u0448\u0438\u0431\u043A\u0430",
    u8"\u0434\u043B\u044F",
    u8"\u0447\u0430\u0441\u0442\u043E\u0442\u0430",
    u8"\u043F\u0440\u0438\u0437\u043D\u0430\u043A",
    u8"\u043D\u0435",
    u8"\u0434\u0438\u0441\u043F\u0435\u0440\u0441\u0438\u044F",
    u8"\u043E\u0446\u0435\u043D\u043A\u0430",
    u8"\u0440\u0435\u0433\u0438\u043E\u043D",
    u8"\u0432\u0435\u0441",
    u8"\u0443\u0437\u0435\u043B",
    u8"\u043F\u0440\u043E\u0433\u043D\u043E\u0437",
    u8"\u0441",
    u8"\u0434\u043E\u043B\u044F",
    u8"\u043F\u0435\u0440\u0435\u043C\u0435\u043D\u043D\u0430\u044F",
    u8"\u0438\u0437",
    u8"\u0442\u0430\u0431\u043B\u0438\u0446\u0430",
    u8"\u0443\u0440\u043E\u0432\u0435\u043D\u044C",
    u8"\u043A\u043B\u0430\u0441\u0441",
    u8"\u043E\u0442\u043A\u043B\u0438\u043A",
    u8"\u043D\u0430",
    u8"\u0438\u043D\u0442\u0435\u0440\u0432\u0430\u043B",
    u8"\u0434\u0435\u0440\u0435\u0432\u043E",
    u8"\u043C\u0435\u0434\u0438\u0430\u043D\u0430"};
constexpr const char* kChineseWords[] = {
    u8"\u6A21\u578B", u8"\u6570\u636E",       u8"\u5E73\u5747\u503C",
    u8"\u7684",       u8"\u6807\u51C6\u5DEE", u8"\u53D8\u91CF",
    u8"\u548C",       u8"\u56DE\u5F52",       u8"\u5206\u7C7B",
    u8"\u6837\u672C", u8"\u9891\u7387",       u8"\u662F",
    u8"\u9884\u6D4B", u8"\u8BEF\u5DEE",       u8"\u533A\u95F4",
    u8"\u5728",       u8"\u8282\u70B9",       u8"\u7F6E\u4FE1\u5EA6",
    u8"\u6743\u91CD", u8"\u4F30\u8BA1",       u8"\u76EE\u6807",
    u8"\u5B57\u6BB5", u8"\u89C2\u5BDF",       u8"\u4E0D",
    u8"\u663E\u8457", u8"\u805A\u7C7B",       u8"\u7ED3\u679C",
    u8"\u5206\u5E03", u8"\u68C0\u9A8C",       u8"\u5730\u533A",
    u8"\u4EBA\u53E3", u8"\u6536\u5165"};
constexpr const char* kEmojiWords[] = {
    u8"\U0001F600", u8"\U0001F389", u8"\U0001F680", u8"\U0001F30D", u8"\U0001F40D", u8"\U0001F355",
    u8"\U0001F602", u8"\U0001F4A1", u8"\U0001F4C8", u8"\U0001F4CA", u8"\U0001F525", u8"\U0001F3B5",
    u8"\U0001F3C6", u8"\U0001F433", u8"\U0001F33B", u8"\U0001F916", u8"\U0001F9EA", u8"\U0001F98A",
    u8"\U0001F951", u8"\U0001F6F0", u8"\U0001F9ED", u8"\U0001FA81", u8"\U0001F6B2", u8"\U0001F3D4",
    u8"\U0001F3B2", u8"\U0001F52D", u8"\U0001F340", u8"\U0001F41D"};

constexpr const char* kSpacedSeparators[kSeparators] = {u8" ", u8" ",  u8" ", u8" ",
                                                        u8" ", u8", ", u8" ", u8". "};
constexpr const char* kChineseSeparators[kSeparators] = {u8"", u8"",       u8"", u8"",
                                                         u8"", u8"\uFF0C", u8"", u8"\u3002"};
constexpr const char* kEmojiSeparators[kSeparators] = {u8"", u8"", u8"", u8"",
                                                       u8"", u8"", u8"", u8""};

struct ScriptRow {
  Script script;
  const char* name;
  const char* const* words;
  std::size_t count;
  const char* const* separators;
};

template <std::size_t kCount>
constexpr ScriptRow Row(Script script, const char* name, const char* const (&words)[kCount],
                        const char* const (&separators)[kSeparators]) {
  return {script, name, words, kCount, separators};
}

constexpr ScriptRow kRows[] = {
    Row(Script::kAscii, "ASCII", kAsciiWords, kSpacedSeparators),
    Row(Script::kFrench, "French", kFrenchWords, kSpacedSeparators),
    Row(Script::kCyrillic, "Cyrillic", kCyrillicWords, kSpacedSeparators),
    Row(Script::kChinese, "Chinese", kChineseWords, kChineseSeparators),
    Row(Script::kEmoji, "emoji", kEmojiWords, kEmojiSeparators),
};
static_assert(std::size(kRows) == kScripts.size());

constexpr const ScriptRow& RowOf(Script script) { return kRows[static_cast<std::size_t>(script)]; }

// A linear congruential generator of 64 bits, of which the upper ones are used: the standard
// library's distributions differ between implementations.
class Draw {
 public:
  std::size_t Below(std::size_t limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::size_t>((state_ >> 33) % limit);
  }

 private:
  std::uint64_t state_ = 20240229;
};

bool IsTrail(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// The code point at `i`, which moves behind it.
unsigned int Take(const std::string& utf8, std::size_t& i) {
  const auto lead = static_cast<unsigned char>(utf8[i++]);
  unsigned int value = lead < 0x80 ? lead : lead < 0xE0 ? lead & 0x1Fu : lead & 0x0Fu;
  while (i < utf8.size() && IsTrail(utf8[i]))
    value = value << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3Fu);
  return value;
}

}  // namespace

const char* NameOf(Script script) { return RowOf(script).name; }

std::string ScriptText(Script script, std::size_t bytes) {
  const ScriptRow& row = RowOf(script);
  Draw draw;
  std::string text;
  while (text.size() <= bytes) {
    text += row.words[draw.Below(row.count)];
    text += row.separators[draw.Below(kSeparators)];
  }
  std::size_t end = bytes;
  while (IsTrail(text[end])) --end;
  text.resize(end);
  return text;
}

std::basic_string<unsigned short> ToUtf16Units(const std::string& utf8) {
  std::basic_string<unsigned short> units;
  for (const unsigned int value : ToUtf32Units(utf8)) {
    if (value < 0x10000) {
      units.push_back(static_cast<unsigned short>(value));
      continue;
    }
    units.push_back(static_cast<unsigned short>(0xD7C0 + (value >> 10)));
    units.push_back(static_cast<unsigned short>(0xDC00 | (value & 0x3FF)));
  }
  return units;
}

std::vector<unsigned int> ToUtf32Units(const std::string& utf8) {
  std::vector<unsigned int> units;
  for (std::size_t i = 0; i < utf8.size();) units.push_back(Take(utf8, i));
  return units;
}

}  // namespace bench
