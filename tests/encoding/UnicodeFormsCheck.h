// Holds the library's conversions between the encoding forms against the slow reference.
//
// The source ends at a forbidden page, and so does the target. The target's old content must stay
// before its start and behind what was written.
#ifndef TESTS_ENCODING_UNICODEFORMSCHECK_H_
#define TESTS_ENCODING_UNICODEFORMSCHECK_H_

#include <gtest/gtest.h>
#include <mcmem/UnicodeForms.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "encoding/GuardedMemory.h"
#include "reference/SlowUnicodeForms.h"

namespace encoding_test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(NDEBUG)
constexpr bool kThorough = false;  // in a slow build the largest domains are thinned out
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kThorough = false;
#else
constexpr bool kThorough = true;
#endif
#else
constexpr bool kThorough = true;
#endif

using reference::Units;

// ---- Units as numbers ----

enum class Order { kLowFirst, kHighFirst };

template <class UnitType, Order kOrder = Order::kLowFirst>
struct Codec {
  using Unit = UnitType;
  static void Put(unsigned char* at, unsigned int value) {
    for (std::size_t i = 0; i < sizeof(Unit); ++i) {
      const std::size_t byte = kOrder == Order::kLowFirst ? i : sizeof(Unit) - 1 - i;
      at[i] = static_cast<unsigned char>(value >> 8 * byte);
    }
  }
  static unsigned int Get(const unsigned char* at) {
    unsigned int value = 0;
    for (std::size_t i = 0; i < sizeof(Unit); ++i) {
      const std::size_t byte = kOrder == Order::kLowFirst ? i : sizeof(Unit) - 1 - i;
      value |= static_cast<unsigned int>(at[i]) << 8 * byte;
    }
    return value;
  }
};

using Bytes = Codec<unsigned char>;
using Pairs = Codec<MCMEM_NAMESPACE::UNALIGNED16>;
using PairsRev = Codec<MCMEM_NAMESPACE::UNALIGNED16, Order::kHighFirst>;
using Words16 = Codec<unsigned short>;
using Words32 = Codec<unsigned int>;

// ---- The conversions ----

template <class FromCodec, class ToCodec>
struct Between {
  using From = FromCodec;
  using To = ToCodec;
  using Source = const typename From::Unit;
  using Target = typename To::Unit;
};

#define ENCODING_TEST_CONVERSION(Name, From, To, Library, Reference)                           \
  struct Name : Between<From, To> {                                                            \
    static constexpr const char* kName = #Name;                                                \
    static MCMEM_NAMESPACE::ConversionResult Convert(Source** source, Source* sourceEnd,       \
                                                     Target** target, Target* targetEnd,       \
                                                     MCMEM_NAMESPACE::ConversionFlags flags) { \
      return MCMEM_NAMESPACE::Library;                                                         \
    }                                                                                          \
    static constexpr auto* kReference = reference::Reference;                                  \
  }

ENCODING_TEST_CONVERSION(Utf8To16, Bytes, Pairs,
                         ConvertUTF8toUTF16(source, sourceEnd, target, targetEnd, flags),
                         Utf8ToUtf16);
ENCODING_TEST_CONVERSION(Utf8To16Rev, Bytes, PairsRev,
                         ConvertUTF8toUTF16Rev(source, sourceEnd, target, targetEnd, flags),
                         Utf8ToUtf16);
ENCODING_TEST_CONVERSION(LocalUtf8To16, Bytes, Pairs,
                         LocalUTF8toUTF16(source, sourceEnd, target, targetEnd, flags, 0),
                         Utf8ToUtf16);
ENCODING_TEST_CONVERSION(LocalUtf8To16Rev, Bytes, PairsRev,
                         LocalUTF8toUTF16(source, sourceEnd, target, targetEnd, flags, -1),
                         Utf8ToUtf16);
ENCODING_TEST_CONVERSION(Utf16To8, Pairs, Bytes,
                         ConvertUTF16toUTF8(source, sourceEnd, target, targetEnd, flags),
                         Utf16ToUtf8);
ENCODING_TEST_CONVERSION(Utf16RevTo8, PairsRev, Bytes,
                         ConvertUTF16RevtoUTF8(source, sourceEnd, target, targetEnd, flags),
                         Utf16ToUtf8);
ENCODING_TEST_CONVERSION(LocalUtf16To8, Pairs, Bytes,
                         LocalUTF16toUTF8(source, sourceEnd, target, targetEnd, flags, 0),
                         Utf16ToUtf8);
ENCODING_TEST_CONVERSION(LocalUtf16RevTo8, PairsRev, Bytes,
                         LocalUTF16toUTF8(source, sourceEnd, target, targetEnd, flags, 2),
                         Utf16ToUtf8);
ENCODING_TEST_CONVERSION(Utf8To32, Bytes, Words32,
                         ConvertUTF8toUTF32(source, sourceEnd, target, targetEnd, flags),
                         Utf8ToUtf32);
ENCODING_TEST_CONVERSION(Utf32To8, Words32, Bytes,
                         ConvertUTF32toUTF8(source, sourceEnd, target, targetEnd, flags),
                         Utf32ToUtf8);
ENCODING_TEST_CONVERSION(Utf16To32, Words16, Words32,
                         ConvertUTF16toUTF32(source, sourceEnd, target, targetEnd, flags),
                         Utf16ToUtf32);
ENCODING_TEST_CONVERSION(Utf32To16, Words32, Words16,
                         ConvertUTF32toUTF16(source, sourceEnd, target, targetEnd, flags),
                         Utf32ToUtf16);

#undef ENCODING_TEST_CONVERSION

using FromUtf8 = testing::Types<Utf8To16, Utf8To16Rev, LocalUtf8To16, LocalUtf8To16Rev, Utf8To32>;
using FromUtf16 = testing::Types<Utf16To8, Utf16RevTo8, LocalUtf16To8, LocalUtf16RevTo8, Utf16To32>;
using FromUtf32 = testing::Types<Utf32To8, Utf32To16>;

// Names the typed tests.
struct ConversionName {
  template <class Conversion>
  static std::string GetName(int) {
    return Conversion::kName;
  }
};

// ---- One conversion beside the reference ----

template <class Conversion>
class Checker {
 public:
  using From = typename Conversion::From;
  using To = typename Conversion::To;

  // More than any source used here can give.
  static std::size_t AmpleFor(const Units& source) { return 4 * source.size() + 8; }

  // Whether the library does what the reference does; tells the difference otherwise.
  // `shift` moves both buffers away from the forbidden page: bytes and byte pairs to odd addresses.
  testing::AssertionResult Same(const Units& source, std::size_t capacity,
                                MCMEM_NAMESPACE::ConversionFlags flags, std::size_t shift = 0) {
    using MCMEM_NAMESPACE::strictConversion;
    Conversion::kReference(source, capacity, flags == strictConversion, expected_);
    PlaceSource(source, shift);
    unsigned char* const target = PlaceTarget(capacity, shift);

    auto* s = reinterpret_cast<typename Conversion::Source*>(source_begin_);
    auto* const sEnd = s + source.size();
    auto* t = reinterpret_cast<typename Conversion::Target*>(target);
    auto* const tBegin = t;
    const int code = Conversion::Convert(&s, sEnd, &t, tBegin + capacity, flags);

    const auto consumed = source.size() - static_cast<std::size_t>(sEnd - s);
    const auto length = static_cast<std::size_t>(t - tBegin);
    if (code != expected_.code || consumed != expected_.consumed || length != expected_.length)
      return Failure(source, capacity, flags)
             << "; gave code " << code << ", consumed " << consumed << ", length " << length
             << "; expected " << expected_.code << ", " << expected_.consumed << ", "
             << expected_.length;
    for (std::size_t i = 0; i < expected_.written.size(); ++i) {
      const unsigned int unit = To::Get(target + i * kTargetSize);
      if (unit != expected_.written[i])
        return Failure(source, capacity, flags)
               << "; unit " << i << " is " << unit << ", expected " << expected_.written[i];
    }
    if (!Untouched(target - kBefore, target) ||
        !Untouched(target + expected_.written.size() * kTargetSize, target_.End()))
      return Failure(source, capacity, flags) << "; wrote outside its result";
    return testing::AssertionSuccess();
  }

  const reference::Converted& Expected() const { return expected_; }

 private:
  static constexpr std::size_t kTargetSize = sizeof(typename To::Unit);
  static constexpr std::size_t kSourceSize = sizeof(typename From::Unit);
  static constexpr std::size_t kBefore = 40;
  static constexpr unsigned char kOld = 0xA5;
  static constexpr std::size_t kBytes = 1u << 16;

  void PlaceSource(const Units& source, std::size_t shift) {
    source_begin_ =
        source_.End() - shift * alignof(typename From::Unit) - source.size() * kSourceSize;
    for (std::size_t i = 0; i < source.size(); ++i)
      From::Put(source_begin_ + i * kSourceSize, source[i]);
  }

  unsigned char* PlaceTarget(std::size_t capacity, std::size_t shift) {
    unsigned char* const target =
        target_.End() - shift * alignof(typename To::Unit) - capacity * kTargetSize;
    std::memset(target - kBefore, kOld, static_cast<std::size_t>(target_.End() - target) + kBefore);
    return target;
  }

  static bool Untouched(const unsigned char* begin, const unsigned char* end) {
    for (; begin != end; ++begin)
      if (*begin != kOld) return false;
    return true;
  }

  static testing::AssertionResult Failure(const Units& source, std::size_t capacity,
                                          MCMEM_NAMESPACE::ConversionFlags flags) {
    std::string text = std::string(Conversion::kName) + (flags == 0 ? " strict" : " lenient");
    text += ", capacity " + std::to_string(capacity) + ", source";
    char unit[16];
    for (const unsigned int value : source) {
      std::snprintf(unit, sizeof unit, " %02X", value);
      text += unit;
    }
    return testing::AssertionFailure() << text;
  }

  GuardedMemory source_{kBytes};
  GuardedMemory target_{4 * kBytes};
  unsigned char* source_begin_ = nullptr;
  reference::Converted expected_;
};

constexpr MCMEM_NAMESPACE::ConversionFlags kBothFlags[] = {MCMEM_NAMESPACE::strictConversion,
                                                           MCMEM_NAMESPACE::lenientConversion};

}  // namespace encoding_test

#endif  // TESTS_ENCODING_UNICODEFORMSCHECK_H_
