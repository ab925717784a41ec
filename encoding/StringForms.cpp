// The conversions between strings.

#include <exception>
#include <type_traits>

#include "encoding/CodePageDriver.h"
#include "encoding/Conversions.h"
#include "encoding/OutputRules.h"
#include "encoding/Utf8And16.h"
#include "mcmem/ConverterRegistry.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {

namespace {

using namespace transcoding;
using Unit = unsigned short;

void* const kDefaultConverter = nullptr;

int StatusOf(Verdict verdict) {
  if (verdict == Verdict::kNoMemory) return kStatusNoMemory;
  return verdict == Verdict::kExact ? kStatusExact : kStatusFailed;
}

template <class From>
Text<From> TextOf(const std::basic_string<From>& string) {
  return {string.data(), string.data() + string.size()};
}

// `expected` is about how many units come out.
template <class From, class To, class Convert>
int FillString(std::basic_string<To>& out, const std::basic_string<From>& in,
               const Convert& convert, std::size_t expected) {
  if constexpr (std::is_same_v<From, To>) {
    if (&out == &in) {
      std::basic_string<To> fresh;
      const int status = FillString(fresh, in, convert, expected);
      out.swap(fresh);
      return status;
    }
  }
  out.clear();
  StringTarget<To> target(out);
  Verdict verdict = target.Expect(expected) ? convert(TextOf(in), target) : Verdict::kNoMemory;
  if (verdict < Verdict::kFailed && !target.More()) verdict = Verdict::kNoMemory;
  if (verdict >= Verdict::kFailed) out.clear();
  return StatusOf(verdict);
}

template <class String>
int Assign(String& out, const String& in) {
  try {
    out = in;
  } catch (const std::exception&) {
    out.clear();
    return kStatusNoMemory;
  }
  return kStatusExact;
}

}  // namespace

int TULKMBU8ToCodePage(void* converter, std::string& out, const std::string& in) {
  const auto convert = [converter](Text<char> text, Target<char>& target) {
    return Utf8ToCodePage(converter, TraitsFor(converter, text), text, target);
  };
  return FillString(out, in, convert, in.size());
}

int TULKMBCodePageToU8(void* converter, std::string& out, const std::string& in) {
  const auto convert = [converter](Text<char> text, Target<char>& target) {
    return CodePageTo8(converter, TraitsFor(converter, text), text, target);
  };
  return FillString(out, in, convert, in.size());
}

int TULKMBU16ToU8(std::string& out, const U16String& in) {
  return FillString(out, in, Utf16To8, CountUtf8Bytes(in.data(), in.size()));
}

int TULKMBU8ToU16(U16String& out, const std::string& in) {
  return FillString(out, in, Utf8To16, CountUtf16Units(in.data(), in.size()));
}

int TULKMBU16ToCodePage(void* converter, std::string& out, const U16String& in) {
  const auto convert = [converter](Text<Unit> text, Target<char>& target) {
    return Utf16ToCodePage(converter, TraitsFor(converter, text), text, target);
  };
  return FillString(out, in, convert, in.size());
}

int TULKMBCodePageToU16(void* converter, U16String& out, const std::string& in) {
  const auto convert = [converter](Text<char> text, Target<Unit>& target) {
    return CodePageTo16(converter, TraitsFor(converter, text), text, target);
  };
  return FillString(out, in, convert, in.size());
}

int TULKMBU8ToGeneric(void* converter, std::string& out, const std::string& in) {
  return qUTF8mode() ? Assign(out, in) : TULKMBU8ToCodePage(converter, out, in);
}

int TULKMBU8ToGeneric(std::string& out, const std::string& in) {
  return TULKMBU8ToGeneric(kDefaultConverter, out, in);
}

int TULKMBGenericToU8(void* converter, std::string& out, const std::string& in) {
  return qUTF8mode() ? Assign(out, in) : TULKMBCodePageToU8(converter, out, in);
}

int TULKMBGenericToU8(std::string& out, const std::string& in) {
  return TULKMBGenericToU8(kDefaultConverter, out, in);
}

int TULKMBU16ToGeneric(void* converter, std::string& out, const U16String& in) {
  return qUTF8mode() ? TULKMBU16ToU8(out, in) : TULKMBU16ToCodePage(converter, out, in);
}

int TULKMBU16ToGeneric(std::string& out, const U16String& in) {
  return TULKMBU16ToGeneric(kDefaultConverter, out, in);
}

int TULKMBGenericToU16(void* converter, U16String& out, const std::string& in) {
  return qUTF8mode() ? TULKMBU8ToU16(out, in) : TULKMBCodePageToU16(converter, out, in);
}

int TULKMBGenericToU16(U16String& out, const std::string& in) {
  return TULKMBGenericToU16(kDefaultConverter, out, in);
}

int TULKMBCodePageToGeneric(void* converter, std::string& out, const std::string& in) {
  return qUTF8mode() ? TULKMBCodePageToU8(converter, out, in) : Assign(out, in);
}

int TULKMBGenericToCodePage(void* converter, std::string& out, const std::string& in) {
  return qUTF8mode() ? TULKMBU8ToCodePage(converter, out, in) : Assign(out, in);
}

}  // namespace MCMEM_NAMESPACE
