// The pieces that UTF-8 and UTF-16 are converted by, beside ICU. Built with the kernels for
// processors that cannot shuffle bytes; the library's own are tested through its functions.
#include "encoding/Utf8And16.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <random>
#include <string>

namespace {

using namespace MCMEM_NAMESPACE::transcoding;
using U16 = std::basic_string<unsigned short>;

// Runs of one kind of characters and quick changes between them.
U16 RandomText(std::mt19937& random, std::size_t count) {
  constexpr unsigned short kFirst[] = {0x20, 0x20, 0xE0, 0x430, 0x4E00, 0xD83D, 0};
  U16 text;
  unsigned short first = 'a';
  while (text.size() < count) {
    if (random() % 5 == 0) first = kFirst[random() % std::size(kFirst)];
    text += static_cast<unsigned short>(first == 0xD83D ? first : first + random() % 32);
    if (first == 0xD83D) text += static_cast<unsigned short>(0xDE00 + random() % 64);
  }
  return text;
}

std::string Utf8Of(const U16& text) {
  std::string bytes(text.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strToUTF8(&bytes[0], static_cast<int32_t>(bytes.size()), &length, text.data(),
              static_cast<int32_t>(text.size()), &error);
  EXPECT_TRUE(U_SUCCESS(error));
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

TEST(Utf8And16Pieces, WholeTextsInBothDirections) {
  std::mt19937 random(1);
  for (std::size_t i = 0; i < 4000; ++i) {
    const U16 text = RandomText(random, 1 + i % 200);
    const std::string bytes = Utf8Of(text);
    ASSERT_EQ(CountUtf16Units(bytes.data(), bytes.size()), text.size());
    ASSERT_EQ(CountUtf8Bytes(text.data(), text.size()), bytes.size());

    U16 decoded(text.size(), 0);
    const char* s = bytes.data();
    unsigned short* t = &decoded[0];
    ASSERT_EQ(DecodeUtf8(s, s + bytes.size(), t, t + decoded.size()), Stop::kSourceEnd);
    ASSERT_EQ(decoded, text);

    std::string encoded(bytes.size(), '\0');
    const unsigned short* u = text.data();
    char* b = &encoded[0];
    ASSERT_EQ(EncodeUtf8(u, u + text.size(), b, b + encoded.size()), Stop::kSourceEnd);
    ASSERT_EQ(encoded, bytes);
  }
}

TEST(Utf8And16Pieces, SmallTargetsAreFilledPieceByPiece) {
  std::mt19937 random(2);
  for (std::size_t i = 0; i < 2000; ++i) {
    const U16 text = RandomText(random, 1 + i % 150);
    const std::string bytes = Utf8Of(text);
    U16 decoded;
    const char* s = bytes.data();
    for (Stop stop = Stop::kTargetFull; stop != Stop::kSourceEnd;) {
      unsigned short piece[40];
      unsigned short* t = piece;
      stop = DecodeUtf8(s, bytes.data() + bytes.size(), t, piece + 2 + random() % 38);
      ASSERT_NE(stop, Stop::kMalformed);
      decoded.append(piece, t);
    }
    ASSERT_EQ(decoded, text);
    std::string encoded;
    const unsigned short* u = text.data();
    for (Stop stop = Stop::kTargetFull; stop != Stop::kSourceEnd;) {
      char piece[60];
      char* t = piece;
      stop = EncodeUtf8(u, text.data() + text.size(), t, piece + 4 + random() % 56);
      ASSERT_NE(stop, Stop::kMalformed);
      encoded.append(piece, t);
    }
    ASSERT_EQ(encoded, bytes);
  }
}

// U+FFFD by U+FFFD, as ICU counts them.
TEST(Utf8And16Pieces, MalformedPiecesAreAsLongAsIcuHasThem) {
  std::mt19937 random(3);
  for (int i = 0; i < 20000; ++i) {
    std::string bytes = Utf8Of(RandomText(random, 1 + random() % 40));
    bytes[random() % bytes.size()] = static_cast<char>(random());
    bytes.resize(bytes.size() - random() % 2);
    U16 expected(bytes.size() + 1, 0);
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8WithSub(&expected[0], static_cast<int32_t>(expected.size()), &length, bytes.data(),
                         static_cast<int32_t>(bytes.size()), 0xFFFD, nullptr, &error);
    expected.resize(static_cast<std::size_t>(length));

    U16 decoded(bytes.size(), 0);
    const char* s = bytes.data();
    const char* const end = s + bytes.size();
    unsigned short* t = decoded.data();
    while (DecodeUtf8(s, end, t, decoded.data() + decoded.size()) == Stop::kMalformed) {
      *t++ = 0xFFFD;
      s += MalformedLength(s, end);
    }
    ASSERT_EQ(s, end);
    decoded.resize(static_cast<std::size_t>(t - decoded.data()));
    ASSERT_EQ(decoded, expected);
  }
}

}  // namespace
