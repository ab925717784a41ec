#include "encoding/TranscodingCheck.h"

#include <unicode/ucnv_err.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <random>

#include "encoding/RegistryState.h"

namespace encoding_test {
namespace {

// More than any character or escape sequence takes.
constexpr std::size_t kMostPerUnit = 40;

OwnedConverter StoppingConverter(const char* codePage) {
  OwnedConverter converter = NewConverter(codePage);
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
  return converter;
}

U16 Decoded(UConverter* converter, const std::string& text, bool& failed) {
  U16 units(text.size() * kMostPerUnit + 1, 0);
  UErrorCode error = U_ZERO_ERROR;
  const int32_t length = ucnv_toUChars(converter, &units[0], static_cast<int32_t>(units.size()),
                                       text.data(), static_cast<int32_t>(text.size()), &error);
  failed = U_FAILURE(error);
  units.resize(failed ? 0 : static_cast<std::size_t>(length));
  return units;
}

std::string Encoded(UConverter* converter, const U16& text, bool& failed) {
  std::string bytes(text.size() * kMostPerUnit + 1, '\0');
  UErrorCode error = U_ZERO_ERROR;
  const int32_t length = ucnv_fromUChars(converter, &bytes[0], static_cast<int32_t>(bytes.size()),
                                         text.data(), static_cast<int32_t>(text.size()), &error);
  failed = U_FAILURE(error);
  bytes.resize(failed ? 0 : static_cast<std::size_t>(length));
  return bytes;
}

std::vector<std::size_t> CharacterEnds(const U16& text) {
  std::vector<std::size_t> ends;
  for (std::size_t i = 0; i < text.size();) {
    UChar32 c = 0;
    U16_NEXT(text, i, text.size(), c);
    ends.push_back(i);
  }
  return ends;
}

// What a converter that stops makes of bytes.
struct Judgement {
  std::vector<std::size_t> ends;  // after which bytes a character is complete
  bool hasOnlyStateLeft = false;
  bool isBroken = false;
};

Judgement Judge(UConverter* converter, const std::string& bytes) {
  Judgement judgement;
  ucnv_resetToUnicode(converter);
  const char* p = bytes.data();
  const char* const end = p + bytes.size();
  while (p != end) {
    UErrorCode error = U_ZERO_ERROR;
    const UChar32 c = ucnv_getNextUChar(converter, &p, end, &error);
    judgement.hasOnlyStateLeft = error == U_INDEX_OUTOFBOUNDS_ERROR;
    judgement.isBroken = (U_FAILURE(error) && !judgement.hasOnlyStateLeft) ||
                         (U_SUCCESS(error) && p == end && U_IS_SURROGATE(c));
    if (U_FAILURE(error) || judgement.isBroken) break;
    judgement.ends.push_back(static_cast<std::size_t>(p - bytes.data()));
  }
  return judgement;
}

// A change of state at the end belongs to the characters if a byte behind it decodes.
std::size_t WholeOf(UConverter* converter, const std::string& piece) {
  const Judgement judgement = Judge(converter, piece);
  if (judgement.hasOnlyStateLeft) {
    const Judgement withBlank = Judge(converter, piece + " ");
    if (!withBlank.isBroken && !withBlank.hasOnlyStateLeft) return piece.size();
  }
  return judgement.ends.empty() ? 0 : judgement.ends.back();
}

void FillEnds(const char* codePage, Reference<char>& reference) {
  constexpr std::size_t kMostForPieces = 400;  // each of them is decoded from its start
  const OwnedConverter converter = StoppingConverter(codePage);
  const std::string& bytes = reference.units;
  reference.ends = Judge(converter.get(), bytes).ends;
  reference.ends.push_back(bytes.size());
  if (bytes.size() > kMostForPieces) return;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    reference.wholeOf.push_back(WholeOf(converter.get(), bytes.substr(0, size)));
  }
}

UChar32 RandomCharacter(std::mt19937& random, bool wild) {
  constexpr struct {
    UChar32 first;
    UChar32 last;
  } kScripts[] = {{0x20, 0x7E},     {0x20, 0x7E},     {0xA0, 0xFF},       {0x410, 0x44F},
                  {0x4E00, 0x9FA5}, {0x3041, 0x30FE}, {0x1F600, 0x1F64F}, {0xAC00, 0xD7A3}};
  if (!wild) {
    const auto script = kScripts[random() % std::size(kScripts)];
    return script.first +
           static_cast<UChar32>(random() % static_cast<unsigned>(script.last - script.first + 1));
  }
  for (;;) {
    const auto c = static_cast<UChar32>(1 + random() % 0x10FFFF) >> random() % 16;
    if (c != 0 && !U_IS_SURROGATE(c)) return c;
  }
}

}  // namespace

Reference<unsigned short> ReferenceFromUtf8(const std::string& text) {
  Reference<unsigned short> reference;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const auto size = static_cast<int32_t>(text.size());
  for (int32_t i = 0; i < size;) {
    UChar32 c = 0;
    U8_NEXT(bytes, i, size, c);
    if (c < 0) {
      reference.hasFailed = true;
      return reference;
    }
    if (c > 0xFFFF) reference.units += U16_LEAD(c);
    reference.units += static_cast<unsigned short>(c > 0xFFFF ? U16_TRAIL(c) : c);
    reference.ends.push_back(reference.units.size());
  }
  return reference;
}

Reference<char> ReferenceToUtf8(const U16& text) {
  Reference<char> reference;
  for (std::size_t i = 0; i < text.size();) {
    UChar32 c = 0;
    U16_NEXT(text, i, text.size(), c);
    if (U_IS_SURROGATE(c)) {
      reference.hasFailed = true;
      return reference;
    }
    char bytes[4];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, c);
    reference.units.append(bytes, length);
    reference.ends.push_back(reference.units.size());
  }
  return reference;
}

Reference<unsigned short> ReferenceDecoded(const char* codePage, const std::string& text) {
  Reference<unsigned short> reference;
  reference.units = Decoded(NewConverter(codePage).get(), text, reference.hasFailed);
  reference.ends = CharacterEnds(reference.units);
  Decoded(StoppingConverter(codePage).get(), text, reference.isLossy);
  return reference;
}

Reference<char> ReferenceDecodedTo8(const char* codePage, const std::string& text) {
  const Reference<unsigned short> decoded = ReferenceDecoded(codePage, text);
  std::string bytes(decoded.units.size() * 3 + 1, '\0');
  int32_t length = 0;
  int32_t replaced = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strToUTF8WithSub(&bytes[0], static_cast<int32_t>(bytes.size()), &length, decoded.units.data(),
                     static_cast<int32_t>(decoded.units.size()), 0xFFFD, &replaced, &error);
  bytes.resize(static_cast<std::size_t>(length));
  Reference<char> reference = ReferenceToUtf8(Utf16Of(bytes));
  reference.isLossy = decoded.isLossy || replaced != 0;
  return reference;
}

Reference<char> ReferenceEncoded(const char* codePage, const U16& text) {
  Reference<char> reference;
  reference.units = Encoded(NewConverter(codePage).get(), text, reference.hasFailed);
  FillEnds(codePage, reference);
  Encoded(StoppingConverter(codePage).get(), text, reference.isLossy);
  return reference;
}

Reference<char> ReferenceEncodedFrom8(const char* codePage, const std::string& text) {
  Reference<char> reference = ReferenceEncoded(codePage, Utf16Of(text));
  reference.isLossy = reference.isLossy || ReferenceFromUtf8(text).hasFailed;
  return reference;
}

U16 Utf16Of(const std::string& utf8) {
  U16 units(utf8.size() + 1, 0);
  int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8WithSub(&units[0], static_cast<int32_t>(units.size()), &length, utf8.data(),
                       static_cast<int32_t>(utf8.size()), 0xFFFD, nullptr, &error);
  EXPECT_TRUE(U_SUCCESS(error));
  units.resize(static_cast<std::size_t>(length));
  return units;
}

U16 RandomUtf16(unsigned seed, std::size_t count, bool wild) {
  std::mt19937 random(seed);
  U16 text;
  while (count-- != 0) {
    // runs of one kind as well as changes
    const UChar32 c = RandomCharacter(random, wild);
    if (c > 0xFFFF) text += U16_LEAD(c);
    text += static_cast<unsigned short>(c > 0xFFFF ? U16_TRAIL(c) : c);
  }
  return text;
}

std::string RandomUtf8(unsigned seed, std::size_t count, bool wild) {
  return ReferenceToUtf8(RandomUtf16(seed, count, wild)).units;
}

}  // namespace encoding_test
