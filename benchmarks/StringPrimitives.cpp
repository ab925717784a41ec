// Single calls of the character-wise string functions on names of 16 bytes, beside the byte-wise
// functions of the C library, which set a scale and have no part in a requirement.

#include <mcmem/ConverterRegistry.h>
#include <mcmem/MultiByteString.h>
#include <strings.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Cases.h"
#include "Suite.h"

namespace bench {
namespace {

using namespace MCMEM_NAMESPACE;  // NOLINT: the functions that are measured

constexpr std::size_t kNames = 512;
constexpr std::size_t kNameBytes = 16;
constexpr const char* kMarkup = "\"&'<>";
constexpr unsigned int kAcuteE = 0xE9;

using Letters = std::vector<std::string>;

const Letters kEnglish = {"a", "e", "i", "n", "o", "r", "s", "t", "A", "M", "T", "0", "1", "_"};
const Letters kFrench = {"a", "e", "i", "n", "r", "s", "t", "\xC3\xA9", "\xC3\xA8", "\xC3\x89"};
const Letters kChinese = {"\xE4\xB8\xAD", "\xE6\x96\x87", "\xE5\xAD\x97", "\xE7\xAC\xA6"};

// A name of 16 bytes that begins with an n; what no further letter fits into is filled with digits.
std::string MakeName(std::mt19937& random, const Letters& letters) {
  std::string name = "n";
  for (;;) {
    const std::string& letter = letters[random() % letters.size()];
    if (name.size() + letter.size() > kNameBytes) break;
    name += letter;
  }
  return name + std::string(kNameBytes - name.size(), '7');
}

struct Pair {
  std::string a;
  std::string b;
};

// Every second pair is equal but for the case of its first letter, the others end differently.
std::vector<Pair> MakePairs(const Letters& letters) {
  std::mt19937 random(1);
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < kNames; ++i) {
    const std::string a = MakeName(random, letters);
    std::string b = a;
    b[0] = 'N';
    if (i % 2 == 0) b.back() = static_cast<char>(b.back() ^ 1);
    pairs.push_back({a, b});
  }
  return pairs;
}

template <class Call>
Variant CallForAll(std::string name, const std::shared_ptr<std::vector<Pair>>& pairs, Call call,
                   bool isComparable = true) {
  auto results = std::make_shared<std::vector<long>>(pairs->size());
  Variant variant{std::move(name), [pairs, results, call] {
                    for (std::size_t i = 0; i < pairs->size(); ++i)
                      (*results)[i] = call((*pairs)[i].a.c_str(), (*pairs)[i].b.c_str());
                    Keep(results->data());
                  }};
  if (!isComparable) return variant;
  variant.result = [results] {
    std::string text;
    for (const long result : *results) text += std::to_string(result) + " ";
    return text;
  };
  return variant;
}

long Sign(int order) { return (order > 0) - (order < 0); }

long Offset(const char* s, const char* place) { return place == nullptr ? -1 : place - s; }

Comparison IgnoreCase(const Letters& letters, bool isAscii) {
  auto pairs = std::make_shared<std::vector<Pair>>(MakePairs(letters));
  Comparison comparison;
  comparison.operations = pairs->size();
  comparison.ours = CallForAll(
      "TULKMBBinaryCompare_8, mode 0", pairs,
      [](const char* a, const char* b) -> long {
        return TULKMBBinaryCompare_8(0, a, -1, b, -1, nullptr);
      },
      isAscii);
  comparison.peers = {{CallForAll(
      "strcasecmp", pairs, [](const char* a, const char* b) { return Sign(strcasecmp(a, b)); },
      isAscii)}};
  return comparison;
}

Comparison Exactly() {
  auto pairs = std::make_shared<std::vector<Pair>>(MakePairs(kEnglish));
  for (Pair& pair : *pairs) pair.b[0] = pair.a[0];
  Comparison comparison;
  comparison.operations = pairs->size();
  comparison.ours =
      CallForAll("TULKMBBinaryCompare_8, mode 1", pairs, [](const char* a, const char* b) -> long {
        return TULKMBBinaryCompare_8(1, a, -1, b, -1, nullptr);
      });
  comparison.peers = {{CallForAll(
      "strcmp", pairs, [](const char* a, const char* b) { return Sign(std::strcmp(a, b)); })}};
  return comparison;
}

// With a converter whose ASCII ICU's own code knows, or not.
Comparison InACodePage(const char* name) {
  auto pairs = std::make_shared<std::vector<Pair>>(MakePairs(kEnglish));
  const std::shared_ptr<UConverter> converter(TULKMBConverterNew_C(name), ucnv_close);
  Comparison comparison;
  comparison.operations = pairs->size();
  comparison.ours = CallForAll(
      "TULKMBBinaryCompare_C, mode 0", pairs, [converter](const char* a, const char* b) -> long {
        return TULKMBBinaryCompare_C(0, converter.get(), a, -1, b, -1, nullptr);
      });
  comparison.peers = {{CallForAll(
      "strcasecmp", pairs, [](const char* a, const char* b) { return Sign(strcasecmp(a, b)); })}};
  return comparison;
}

// The set ends with a character that no name has. It is one of three bytes, so that the byte-wise
// function, for which these are three members, may stop too early: its results do not count.
constexpr const char* kWideMarkup = "\"&'<>\xE2\x82\xAC";

Comparison SpanWithWideSet(const Letters& letters) {
  auto pairs = std::make_shared<std::vector<Pair>>(MakePairs(letters));
  Comparison comparison;
  comparison.operations = pairs->size();
  comparison.ours = CallForAll(
      "TULKMBStringSpan_8", pairs,
      [](const char* a, const char*) -> long { return TULKMBStringSpan_8(1, a, kWideMarkup); },
      false);
  comparison.peers = {{CallForAll(
      "strcspn", pairs,
      [](const char* a, const char*) { return static_cast<long>(std::strcspn(a, kWideMarkup)); },
      false)}};
  return comparison;
}

Comparison SpanOfNames(const Letters& letters) {
  auto pairs = std::make_shared<std::vector<Pair>>(MakePairs(letters));
  Comparison comparison;
  comparison.operations = pairs->size();
  comparison.ours = CallForAll("TULKMBStringSpan_8", pairs, [](const char* a, const char*) -> long {
    return TULKMBStringSpan_8(1, a, kMarkup);
  });
  comparison.peers = {{CallForAll("strcspn", pairs, [](const char* a, const char*) {
    return static_cast<long>(std::strcspn(a, kMarkup));
  })}};
  return comparison;
}

Comparison SearchAcuteE(const Letters& letters) {
  auto pairs = std::make_shared<std::vector<Pair>>(MakePairs(letters));
  Comparison comparison;
  comparison.operations = pairs->size();
  comparison.ours = CallForAll("TULKMBSearchChar_8", pairs, [](const char* a, const char*) {
    return Offset(a, TULKMBSearchChar_8(a, kAcuteE, 0));
  });
  comparison.peers = {
      {CallForAll(
          "strstr", pairs,
          [](const char* a, const char*) { return Offset(a, std::strstr(a, "\xC3\xA9")); })},
      {CallForAll(
          "strchr, a byte", pairs,
          [](const char* a, const char*) { return Offset(a, std::strchr(a, '\xA9')); }, false)}};
  return comparison;
}

}  // namespace

void AddStringPrimitiveCases(Suite& suite) {
  const std::string group = "String primitives";
  const std::string size = "16 bytes";
  suite.Add(group, "compare exactly, English", size, Exactly);
  suite.Add(group, "compare ignoring case, English", size,
            [] { return IgnoreCase(kEnglish, true); });
  suite.Add(group, "compare ignoring case, French", size,
            [] { return IgnoreCase(kFrench, false); });
  suite.Add(group, "compare ignoring case, Chinese", size,
            [] { return IgnoreCase(kChinese, false); });
  suite.Add(group, "compare ignoring case, windows-1252", size,
            [] { return InACodePage("windows-1252"); });
  suite.Add(group, "compare ignoring case, ISO-8859-1", size,
            [] { return InACodePage("ISO-8859-1"); });
  suite.Add(group, "span, English", size, [] { return SpanOfNames(kEnglish); });
  suite.Add(group, "span, French", size, [] { return SpanOfNames(kFrench); });
  suite.Add(group, "span, Chinese", size, [] { return SpanOfNames(kChinese); });
  suite.Add(group, "span, wide set, English", size, [] { return SpanWithWideSet(kEnglish); });
  suite.Add(group, "span, wide set, French", size, [] { return SpanWithWideSet(kFrench); });
  suite.Add(group, "search, English", size, [] { return SearchAcuteE(kEnglish); });
  suite.Add(group, "search, French", size, [] { return SearchAcuteE(kFrench); });
  suite.Add(group, "search, Chinese", size, [] { return SearchAcuteE(kChinese); });
}

}  // namespace bench
