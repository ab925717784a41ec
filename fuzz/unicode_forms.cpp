// Any units in any encoding form: the conversions give what the slow reference gives, unit by unit,
// touch nothing else, and do not look behind the zero of a terminated text.
#include <mcmem/UnicodeForms.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Check.h"
#include "Input.h"
#include "reference/SlowUnicodeForms.h"

namespace {

using namespace MCMEM_NAMESPACE;
using fuzz::Input;
using reference::Units;

constexpr std::size_t kGuard = 64;  // bytes that must stay before and behind a target
constexpr unsigned char kOldContent = 0xAB;

unsigned ValueOf(unsigned char unit, bool) { return unit; }
unsigned ValueOf(unsigned short unit, bool) { return unit; }
unsigned ValueOf(unsigned int unit, bool) { return unit; }
unsigned ValueOf(UNALIGNED16 unit, bool isReversed) {
  return isReversed ? unit.byte[0] * 0x100u + unit.byte[1] : unit.byte[1] * 0x100u + unit.byte[0];
}

template <class From, class To>
struct Conversion {
  ConversionResult (*convert)(const From**, const From*, To**, To*, ConversionFlags);
  void (*reference)(const Units&, std::size_t, bool, reference::Converted&);
  bool isReversed = false;
  bool endsAtZero = false;
};

// Room for `capacity` units between two guards, at any address that the unit may have.
template <class Unit>
class Target {
 public:
  Target(std::size_t capacity, std::size_t shift)
      : capacity_(capacity),
        front_(kGuard + shift * alignof(Unit)),
        memory_(front_ + capacity * sizeof(Unit) + kGuard, kOldContent) {}

  Unit* Begin() { return reinterpret_cast<Unit*>(memory_.data() + front_); }
  Unit* End() { return Begin() + capacity_; }

  // Whether all but the first `written` units have their old content.
  bool IsOldBehind(std::size_t written) const {
    const std::size_t first = front_ + written * sizeof(Unit);
    for (std::size_t i = 0; i < memory_.size(); ++i) {
      if ((i < front_ || i >= first) && memory_[i] != kOldContent) return false;
    }
    return true;
  }

 private:
  std::size_t capacity_;
  std::size_t front_;
  std::vector<unsigned char> memory_;
};

// The units in memory that ends behind them, at any address that the unit may have.
template <class Unit>
class Source {
 public:
  Source(const std::string& bytes, std::size_t shift)
      : shift_(shift * alignof(Unit)), memory_(new unsigned char[shift_ + bytes.size()]) {
    std::memcpy(memory_.get() + shift_, bytes.data(), bytes.size());
  }

  const Unit* Begin() const { return reinterpret_cast<const Unit*>(memory_.get() + shift_); }

 private:
  std::size_t shift_;
  std::unique_ptr<unsigned char[]> memory_;
};

struct Choices {
  ConversionFlags flags;
  std::size_t capacity;
  std::size_t shift;
  std::size_t further;  // how many units behind the zero the stated end of a text lies
};

template <class From>
Units ValuesOf(const std::string& bytes, bool isReversed) {
  Units values;
  for (std::size_t at = 0; at + sizeof(From) <= bytes.size(); at += sizeof(From)) {
    From unit;
    std::memcpy(&unit, bytes.data() + at, sizeof unit);
    values.push_back(ValueOf(unit, isReversed));
  }
  return values;
}

// `stated` units are said to be in `source`.
template <class From, class To>
void CheckAgainst(const Conversion<From, To>& conversion, const Choices& choices,
                  const Source<From>& source, std::size_t stated,
                  const reference::Converted& expected) {
  Target<To> target(choices.capacity, choices.shift);
  const From* s = source.Begin();
  To* t = target.Begin();
  const ConversionResult result =
      conversion.convert(&s, source.Begin() + stated, &t, target.End(), choices.flags);
  FUZZ_CHECK(static_cast<int>(result) == static_cast<int>(expected.code));
  FUZZ_CHECK(s == source.Begin() + expected.consumed);
  FUZZ_CHECK(t == target.Begin() + expected.length);
  for (std::size_t i = 0; i < expected.written.size(); ++i) {
    FUZZ_CHECK(ValueOf(target.Begin()[i], conversion.isReversed) == expected.written[i]);
  }
  FUZZ_CHECK(target.IsOldBehind(expected.written.size()));
}

// The text ends with a zero and with its memory; the end is said to be further on. What would lie
// there cannot matter, so the reference sees letters.
template <class From, class To>
void CheckTooFarAnEnd(const Conversion<From, To>& conversion, const Choices& choices,
                      const std::string& bytes) {
  const Units values = ValuesOf<From>(bytes, conversion.isReversed);
  std::size_t length = 0;
  while (length < values.size() && values[length] != 0) ++length;
  const std::string text = bytes.substr(0, length * sizeof(From)) + std::string(sizeof(From), '\0');
  Units seen(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(length));
  seen.push_back(0);
  seen.insert(seen.end(), choices.further, 'a');
  reference::Converted expected;
  conversion.reference(seen, choices.capacity, choices.flags == strictConversion, expected);
  CheckAgainst(conversion, choices, Source<From>(text, choices.shift), seen.size(), expected);
}

template <class From, class To>
void Check(const Conversion<From, To>& conversion, const Choices& choices, std::string bytes) {
  bytes.resize(bytes.size() / sizeof(From) * sizeof(From));
  const Units values = ValuesOf<From>(bytes, conversion.isReversed);
  reference::Converted expected;
  conversion.reference(values, choices.capacity, choices.flags == strictConversion, expected);
  CheckAgainst(conversion, choices, Source<From>(bytes, choices.shift), values.size(), expected);
  if (conversion.endsAtZero) CheckTooFarAnEnd(conversion, choices, bytes);
}

using From8 = Conversion<unsigned char, UNALIGNED16>;
using From16 = Conversion<UNALIGNED16, unsigned char>;

ConversionResult Local8(const unsigned char** s, const unsigned char* sEnd, UNALIGNED16** t,
                        UNALIGNED16* tEnd, ConversionFlags flags) {
  return LocalUTF8toUTF16(s, sEnd, t, tEnd, flags, 0);
}

ConversionResult Local8Rev(const unsigned char** s, const unsigned char* sEnd, UNALIGNED16** t,
                           UNALIGNED16* tEnd, ConversionFlags flags) {
  return LocalUTF8toUTF16(s, sEnd, t, tEnd, flags, 1);
}

ConversionResult Local16(const UNALIGNED16** s, const UNALIGNED16* sEnd, unsigned char** t,
                         unsigned char* tEnd, ConversionFlags flags) {
  return LocalUTF16toUTF8(s, sEnd, t, tEnd, flags, 0);
}

ConversionResult Local16Rev(const UNALIGNED16** s, const UNALIGNED16* sEnd, unsigned char** t,
                            unsigned char* tEnd, ConversionFlags flags) {
  return LocalUTF16toUTF8(s, sEnd, t, tEnd, flags, 1);
}

constexpr From8 kFrom8[] = {{ConvertUTF8toUTF16, reference::Utf8ToUtf16, false, true},
                            {ConvertUTF8toUTF16Rev, reference::Utf8ToUtf16, true, true},
                            {Local8, reference::Utf8ToUtf16, false, true},
                            {Local8Rev, reference::Utf8ToUtf16, true, true}};
constexpr From16 kFrom16[] = {{ConvertUTF16toUTF8, reference::Utf16ToUtf8, false, true},
                              {ConvertUTF16RevtoUTF8, reference::Utf16ToUtf8, true, true},
                              {Local16, reference::Utf16ToUtf8, false, true},
                              {Local16Rev, reference::Utf16ToUtf8, true, true}};

bool IsWellFormed(const std::string& text, bool surrogatesPass) {
  Units bytes = ValuesOf<unsigned char>(text, false);
  return !bytes.empty() && reference::PromisedLength(bytes[0]) <= bytes.size() &&
         reference::IsWellFormed(bytes.data(), surrogatesPass);
}

void CheckLegality(const std::string& text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const fuzz::ExactCopy<unsigned char> exact(bytes, text.size());
  FUZZ_CHECK(isLegalUTF8Sequence(exact.Get(), exact.Get() + text.size()) ==
             IsWellFormed(text, false));
  FUZZ_CHECK(isLegalUTF8Substring(exact.Get(), static_cast<int>(text.size())) ==
             IsWellFormed(text, true));
  const std::string head = fuzz::UpToZero(text);
  const fuzz::ExactCopy<unsigned char> terminated(
      reinterpret_cast<const unsigned char*>(head.c_str()), head.size() + 1);
  FUZZ_CHECK(isLegalUTF8Substring(terminated.Get(), -1) == IsWellFormed(head, true));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongestSequence = 6;
  Input in(data, size);
  const unsigned function = in.Below(13);
  Choices choices{};
  choices.flags = in.Flag() ? lenientConversion : strictConversion;
  choices.capacity = in.Byte();
  choices.shift = in.Below(16);
  choices.further = kLongestSequence + in.Byte();
  const std::string bytes = in.Rest();
  switch (function) {
    case 8:
      Check<unsigned char, unsigned int>({ConvertUTF8toUTF32, reference::Utf8ToUtf32}, choices,
                                         bytes);
      break;
    case 9:
      Check<unsigned int, unsigned char>({ConvertUTF32toUTF8, reference::Utf32ToUtf8}, choices,
                                         bytes);
      break;
    case 10:
      Check<unsigned short, unsigned int>({ConvertUTF16toUTF32, reference::Utf16ToUtf32}, choices,
                                          bytes);
      break;
    case 11:
      Check<unsigned int, unsigned short>({ConvertUTF32toUTF16, reference::Utf32ToUtf16}, choices,
                                          bytes);
      break;
    case 12:
      CheckLegality(bytes);
      break;
    default:
      if (function < 4) Check(kFrom8[function], choices, bytes);
      if (function >= 4) Check(kFrom16[function - 4], choices, bytes);
  }
  return 0;
}
