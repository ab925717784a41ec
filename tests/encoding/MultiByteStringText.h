// What the tests of the string functions share: texts that end, or begin, at forbidden memory,
// bytes worth combining, and locales made for a test.
#ifndef TESTS_ENCODING_MULTIBYTESTRINGTEXT_H_
#define TESTS_ENCODING_MULTIBYTESTRINGTEXT_H_

#include <gtest/gtest.h>

#include <clocale>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

#include "encoding/GuardedMemory.h"
#include "support/MadeLocales.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MCX_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define MCX_TEST_SANITIZED 1
#endif
#endif

namespace encoding_test {

// Sanitizers cost a factor of ten and more: exhaustive tests then take every n-th lead byte.
#ifdef MCX_TEST_SANITIZED
constexpr unsigned int kLeadStep = 13;
constexpr int kRounds = 20'000;
#else
constexpr unsigned int kLeadStep = 1;
constexpr int kRounds = 400'000;
#endif

// Bytes on both sides of every border that a decoder of UTF-8 knows; no zero.
constexpr unsigned char kBorderBytes[] = {0x01, 0x41, 0x61, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0,
                                          0xAF, 0xB7, 0xBE, 0xBF, 0xC0, 0xC1, 0xC2, 0xC3, 0xDF,
                                          0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3,
                                          0xF4, 0xF5, 0xF7, 0xF8, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF};

inline std::string Hex(const std::string& s) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string result;
  for (const char c : s) {
    const auto byte = static_cast<unsigned char>(c);
    if (!result.empty()) result += ' ';
    result += kDigits[byte / 16];
    result += kDigits[byte % 16];
  }
  return result;
}

// A text of `length` bytes out of `bytes`, by a number that is different for each.
template <class Random>
std::string RandomText(Random& random, std::size_t longest, const std::string& bytes) {
  std::string text(random() % (longest + 1), '\0');
  for (char& c : text) c = bytes[random() % bytes.size()];
  return text;
}

inline std::string BorderBytes() { return {std::begin(kBorderBytes), std::end(kBorderBytes)}; }

// Copies of texts whose last byte, or terminator, is the last byte that may be touched, or whose
// first byte is the first one.
class EdgeText {
 public:
  const char* Terminated(const std::string& s) { return Ending(s.c_str(), s.size() + 1); }
  const char* Bare(const std::string& s) { return Ending(s.data(), s.size()); }
  const char* Starting(const std::string& s) {
    std::memcpy(memory_.Begin(), s.c_str(), s.size() + 1);
    return reinterpret_cast<const char*>(memory_.Begin());
  }

 private:
  const char* Ending(const char* bytes, std::size_t n) {
    unsigned char* start = memory_.End() - n;
    std::memcpy(start, bytes, n);
    return reinterpret_cast<const char*>(start);
  }

  GuardedMemory memory_{4096};
};

class CharacterLocaleTest : public testing::Test {
 protected:
  // Sets the character type to a locale of that encoding; false where it cannot be made.
  bool Use(const std::string& encoding) {
    return locales_.Make(encoding, encoding) &&
           std::setlocale(LC_CTYPE, encoding.c_str()) != nullptr;
  }

 private:
  test_support::MadeLocales locales_;
};

#define USE_LOCALE_OR_SKIP(encoding) \
  if (!Use(encoding)) GTEST_SKIP() << "no localedef, or no encoding " << (encoding)

}  // namespace encoding_test

#endif  // TESTS_ENCODING_MULTIBYTESTRINGTEXT_H_
