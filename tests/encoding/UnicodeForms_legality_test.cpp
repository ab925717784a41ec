// isLegalUTF8Sequence and isLegalUTF8Substring.

#include "encoding/UnicodeFormsCheck.h"

namespace encoding_test {
namespace {

using namespace MCMEM_NAMESPACE;

// A text that ends at a forbidden page.
class EdgeText {
 public:
  const unsigned char* Place(const Units& bytes) {
    unsigned char* at = memory_.End() - bytes.size();
    for (std::size_t i = 0; i < bytes.size(); ++i) at[i] = static_cast<unsigned char>(bytes[i]);
    return at;
  }

 private:
  GuardedMemory memory_{64};
};

bool IsWholeAndLegal(const Units& bytes, bool surrogatesPass) {
  return !bytes.empty() && reference::PromisedLength(bytes[0]) <= bytes.size() &&
         reference::IsWellFormed(bytes.data(), surrogatesPass);
}

// Every lead byte with every second byte, in every length from 0 to 6.
template <class Check>
void ForEverySequence(Check check) {
  for (unsigned int lead = 0; lead < 256; ++lead)
    for (unsigned int second = 0; second < 256; second += kThorough ? 1 : 3)
      for (const unsigned int third : {0x00u, 0x7Fu, 0x80u, 0xBFu, 0xC0u})
        for (std::size_t length = 0; length <= 6; ++length) {
          Units bytes = {lead, second, third, 0xBF, 0x80, 0x80};
          bytes.resize(length);
          check(bytes);
        }
}

TEST(IsLegalUTF8Sequence, RefusesWhatIsCutOffOrIllegalAndEncodedSurrogates) {
  EdgeText text;
  ForEverySequence([&](const Units& bytes) {
    const unsigned char* s = text.Place(bytes);
    ASSERT_EQ(isLegalUTF8Sequence(s, s + bytes.size()), IsWholeAndLegal(bytes, false));
  });
}

TEST(IsLegalUTF8Substring, WithALengthPassesEncodedSurrogates) {
  EdgeText text;
  ForEverySequence([&](const Units& bytes) {
    const unsigned char* s = text.Place(bytes);
    ASSERT_EQ(isLegalUTF8Substring(s, static_cast<int>(bytes.size())),
              IsWholeAndLegal(bytes, true));
  });
}

TEST(IsLegalUTF8Substring, WithoutALengthIsFalseWhenAZeroComesWithinTheSequence) {
  EdgeText text;
  ForEverySequence([&](const Units& bytes) {
    Units terminated = bytes;
    terminated.push_back(0);
    // what follows the first zero is behind readable memory
    std::size_t size = 0;
    while (terminated[size] != 0) ++size;
    terminated.resize(size + 1);
    const Units whole(terminated.begin(), terminated.end() - 1);
    ASSERT_EQ(isLegalUTF8Substring(text.Place(terminated), -1), IsWholeAndLegal(whole, true));
  });
}

struct Row {
  const char* what;
  const char* bytes;
  int length;
  bool legal;
};

TEST(IsLegalUTF8Substring, RulesInBytes) {
  const Row rows[] = {
      {"two byte lead and the end", "\xC3", -1, false},
      {"any negative length", "\xC3\xA9", -77, true},
      {"two bytes", "\xC3\xA9", 2, true},
      {"more than one sequence: the first counts", "\xC3\xA9\xFF", 3, true},
      {"cut off", "\xC3\xA9", 1, false},
      {"no bytes", "A", 0, false},
      {"an empty text", "", -1, false},
      {"a zero byte with a length", "", 1, true},
      {"a zero within the length is no trail byte", "\xC3\0", 2, false},
      {"encoded surrogate", "\xED\xA0\x80", 3, true},
      {"overlong", "\xC0\x80", 2, false},
      {"four bytes", "\xF0\x9F\x98\x80", -1, true},
      {"above the last code point", "\xF4\x90\x80\x80", 4, false},
      {"five bytes", "\xF8\x88\x80\x80\x80", 5, false},
  };
  for (const Row& row : rows)
    EXPECT_EQ(isLegalUTF8Substring(reinterpret_cast<const unsigned char*>(row.bytes), row.length),
              row.legal)
        << row.what;
}

TEST(UnicodeFormTypes, HaveThePublishedValues) {
  EXPECT_EQ(static_cast<int>(conversionOK), 0);
  EXPECT_EQ(static_cast<int>(sourceExhausted), 1);
  EXPECT_EQ(static_cast<int>(targetExhausted), 2);
  EXPECT_EQ(static_cast<int>(sourceIllegal), 3);
  EXPECT_EQ(static_cast<int>(strictConversion), 0);
  EXPECT_EQ(static_cast<int>(lenientConversion), 1);
  EXPECT_EQ(sizeof(UNALIGNED16), 2u);
  EXPECT_EQ(alignof(UNALIGNED16), 1u);
}

}  // namespace
}  // namespace encoding_test
