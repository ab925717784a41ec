// Two texts, in memory that ends where they do, through all the functions that step by characters:
// the UTF-8 members give what the slow reference gives; the code-page members, under locales of
// single and double bytes, step as the C library does, stay within the text, always end, order
// texts consistently, and cut no character.
#include <mcmem/ConverterRegistry.h>
#include <mcmem/MultiByteString.h>
#include <mcmem/Transcoding.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Check.h"
#include "Converters.h"
#include "GuardedTarget.h"
#include "Input.h"
#include "reference/SlowUtf8Strings.h"
#include "support/MadeLocales.h"

namespace {

using namespace MCMEM_NAMESPACE;
using fuzz::GuardedTarget;
using fuzz::Input;
using fuzz::TerminatedCopy;
using fuzz::UpToZero;
using Exact = fuzz::ExactCopy<char>;

struct Texts {
  std::string a;
  std::string b;
  std::size_t n;   // a number of bytes
  unsigned point;  // a code point to look for
};

int SignedSize(const std::string& s) { return static_cast<int>(s.size()); }

// An offset for a pointer into a text, -1 for null.
std::ptrdiff_t OffsetOf(const char* found, const Exact& text) {
  return found == nullptr ? -1 : found - text.Get();
}

// ---- UTF-8 ----

void CheckSteps8(const std::string& text) {
  const Exact s = TerminatedCopy(text);
  FUZZ_CHECK(TULKMBstrinc_8(nullptr) == nullptr);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int length = reference::AnnouncedLength(text.substr(i));
    FUZZ_CHECK(TULKMBmbclen_8(s.Get() + i) == length);
    FUZZ_CHECK(TULKMBstrinc_8(s.Get() + i) == s.Get() + i + length);
  }
  FUZZ_CHECK(TULKMBmbclen_8(s.Get() + text.size()) == 1);
}

void CheckLengths8(const std::string& bytes, std::size_t n) {
  const std::string seen = bytes.substr(0, n);
  const Exact s(seen);
  const int expected = reference::CheckedLength(UpToZero(seen), seen.size());
  FUZZ_CHECK(TULKMBmblen_8(s.Get(), seen.size()) == expected);
  const int kept = reference::LengthWithoutBadTail(seen);
  FUZZ_CHECK(TULKMBCheckFinalChar_8(s.Get(), SignedSize(seen)) == kept);
  const std::string text = UpToZero(bytes);
  FUZZ_CHECK(TULKMBCheckFinalChar_8(TerminatedCopy(text).Get(), -1) ==
             reference::LengthWithoutBadTail(text));
}

void CheckBackwards8(const std::string& bytes) {
  for (std::size_t i = 1; i <= bytes.size(); ++i) {
    const Exact s(bytes.data(), i);
    const int expected = reference::PreviousIndex(bytes.substr(0, i), static_cast<int>(i));
    FUZZ_CHECK(TULKMBPreviousIndex_8(s.Get(), static_cast<int>(i)) == expected);
    FUZZ_CHECK(OffsetOf(TULKMBAnsiPrev_8(s.Get(), s.Get() + i), s) == expected);
  }
}

std::ptrdiff_t PlaceOf(const std::string& text, unsigned point, bool last) {
  if (point >= 0x80) return reference::Search(text, point, last);
  if (point == 0) return SignedSize(text);
  const auto at = last ? text.rfind(static_cast<char>(point)) : text.find(static_cast<char>(point));
  return at == std::string::npos ? -1 : static_cast<std::ptrdiff_t>(at);
}

void CheckSearch8(const std::string& text, unsigned point) {
  const Exact s = TerminatedCopy(text);
  FUZZ_CHECK(OffsetOf(TULKMBSearchChar_8(s.Get(), point, 0), s) == PlaceOf(text, point, false));
  FUZZ_CHECK(OffsetOf(TULKMBSearchChar_8(s.Get(), point, 2), s) == PlaceOf(text, point, true));
  FUZZ_CHECK(TULKMBstrchr_8(s.Get(), point) == TULKMBSearchChar_8(s.Get(), point, 0));
  FUZZ_CHECK(TULKMBstrrchr_8(s.Get(), point) == TULKMBSearchChar_8(s.Get(), point, 1));
}

// A set ends before its first encoded surrogate, though in a text that is a character.
std::vector<unsigned> SetOf(const std::string& text) {
  constexpr std::size_t kMost = 64;
  std::vector<unsigned> set;
  for (std::size_t at = 0; at < text.size() && set.size() < kMost;) {
    const reference::SlowCharacter c = reference::DecodeAt(text, at, false);
    if (!c.isLegal) break;
    set.push_back(c.value);
    at += c.bytes;
  }
  return set;
}

void CheckSpan8(const std::string& text, const std::string& set) {
  const Exact s = TerminatedCopy(text);
  const Exact members = TerminatedCopy(set);
  for (const bool stopsInside : {false, true}) {
    FUZZ_CHECK(TULKMBStringSpan_8(stopsInside, s.Get(), members.Get()) ==
               reference::Span(text, SetOf(set), stopsInside));
  }
  FUZZ_CHECK(TULKMBstrcspn_8(s.Get(), members.Get()) == reference::Span(text, SetOf(set), true));
}

unsigned Same(unsigned value) { return value; }
unsigned Folded(unsigned value) {
  return static_cast<unsigned>(u_tolower(static_cast<UChar32>(value)));
}

void CheckCompare8(const Texts& t) {
  const Exact a(t.a);
  const Exact b = TerminatedCopy(UpToZero(t.b));
  for (const int mode : {0, 1}) {
    const reference::Order expected = reference::Compare(t.a, t.b, mode == 0 ? Folded : Same);
    int status = -1;
    FUZZ_CHECK(TULKMBBinaryCompare_8(mode, a.Get(), SignedSize(t.a), b.Get(), -1, &status) ==
               expected.order);
    FUZZ_CHECK(status == expected.status);
  }
  const reference::Order folded = reference::Compare(t.a, t.b, Folded);
  int status = -1;
  FUZZ_CHECK(TULKMBqstricmp_8(a.Get(), SignedSize(t.a), b.Get(), -1, &status) ==
             (folded.order == 0));
  FUZZ_CHECK(status == folded.status);
  const std::string headOfA = t.a.substr(0, t.n);
  const std::string headOfB = t.b.substr(0, t.n);
  const Exact first = t.n < t.a.size() ? Exact(headOfA) : TerminatedCopy(headOfA);
  const Exact second = t.n < t.b.size() ? Exact(headOfB) : TerminatedCopy(headOfB);
  FUZZ_CHECK(TULKMBstrnicmp_8(first.Get(), second.Get(), static_cast<int>(t.n)) ==
             reference::Compare(headOfA, headOfB, Folded).order);
}

void CheckCopies8(const std::string& text, std::size_t n) {
  const std::string head = text.substr(0, n);
  const Exact source = n <= text.size() ? Exact(head) : TerminatedCopy(head);
  const auto kept = static_cast<std::size_t>(reference::LengthWithoutBadTail(head));
  const std::string copy = head.substr(0, kept);
  GuardedTarget limited(n);
  FUZZ_CHECK(TULKMBLimitedCopy_8(limited.Get(), source.Get(), n) == static_cast<int>(kept));
  FUZZ_CHECK(limited.Content() == copy + std::string(n - kept, GuardedTarget::kOld));
  GuardedTarget filled(n);
  FUZZ_CHECK(TULKMBstrncpy_8(filled.Get(), source.Get(), n) == filled.Get());
  FUZZ_CHECK(filled.Content() == copy + std::string(n - kept, '\0'));
}

void CheckUtf8(const Texts& t) {
  const std::string text = UpToZero(t.a);
  CheckSteps8(text);
  CheckLengths8(t.a, t.n);
  CheckBackwards8(t.a);
  CheckSearch8(text, t.point);
  CheckSpan8(text, UpToZero(t.b));
  CheckCompare8(t);
  CheckCopies8(text, t.n);
}

// ---- Code pages: lengths, from the locale ----

// Where characters start, and the end of the text.
std::vector<std::size_t> Starts(const std::string& text) {
  const Exact s = TerminatedCopy(text);
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i < text.size();) {
    starts.push_back(i);
    const int length = TULKMBmbclen_C(s.Get() + i);
    FUZZ_CHECK(length >= 1 && static_cast<std::size_t>(length) <= text.size() - i);
    FUZZ_CHECK(TULKMBstrinc_C(s.Get() + i) == s.Get() + i + length);
    i += static_cast<std::size_t>(length);
  }
  starts.push_back(text.size());
  return starts;
}

// The C library's, which may look at more than it uses.
int LibraryLength(const char* s, std::size_t n) {
  const std::string padded = std::string(s, n) + std::string(MB_LEN_MAX, '\0');
  return std::mblen(padded.c_str(), n);
}

void CheckLengthsC(const std::string& bytes, std::size_t n) {
  const std::string seen = bytes.substr(0, n);
  const int length = TULKMBmblen_C(Exact(seen).Get(), seen.size());
  FUZZ_CHECK(length >= -1 && length <= SignedSize(seen));
  if (seen.empty()) return;
  FUZZ_CHECK((length == 0) == (seen[0] == '\0'));
  FUZZ_CHECK(length == LibraryLength(seen.data(), seen.size()));
}

void CheckLeadBytes(const std::string& text) {
  for (const char c : text) {
    const char byteAndBlanks[] = {c, ' ', ' ', ' ', '\0'};
    FUZZ_CHECK(TULKMBIsLeadByte_C(static_cast<unsigned char>(c)) ==
               (TULKMBmbclen_C(byteAndBlanks) > 1));
  }
}

void CheckBackwardsC(const std::string& text) {
  const Exact s = TerminatedCopy(text);
  const int size = SignedSize(text);
  const auto takesNext = [&text](int i) {
    return TULKMBIsLeadByte_C(static_cast<unsigned char>(text[static_cast<std::size_t>(i)]));
  };
  int start = 0;  // of the character, of at most two bytes, that byte i belongs to
  for (int i = 0; i < size; ++i) {
    if (i > start + (takesNext(start) ? 1 : 0)) start = i;
    FUZZ_CHECK(TULKMBFindStart_C(s.Get(), i) == start);
  }
  for (const int i : {size, size + 1, size + 2}) FUZZ_CHECK(TULKMBFindStart_C(s.Get(), i) == size);
  for (int i = 1; i <= size; ++i) {
    const Exact head(text.data(), static_cast<std::size_t>(i));  // nothing behind is of interest
    const auto previous = OffsetOf(TULKMBAnsiPrev_C(head.Get(), head.Get() + i), head);
    FUZZ_CHECK(previous == TULKMBFindStart_C(s.Get(), i - 1));
  }
}

// Where the byte is and starts a character.
std::vector<std::ptrdiff_t> PlacesOf(const std::string& text, char byte) {
  std::vector<std::ptrdiff_t> places;
  for (std::size_t i = 0; i < text.size();) {
    const bool isMatch = text[i] == byte;
    if (isMatch) places.push_back(static_cast<std::ptrdiff_t>(i));
    const int length = isMatch ? 1 : LibraryLength(&text[i], text.size() - i);
    i += static_cast<std::size_t>(std::max(length, 1));
  }
  return places;
}

void CheckSearchC(const std::string& text, unsigned point) {
  const Exact s = TerminatedCopy(text);
  const auto first = OffsetOf(TULKMBstrchr_C(s.Get(), point), s);
  const auto last = OffsetOf(TULKMBstrrchr_C(s.Get(), point), s);
  FUZZ_CHECK(OffsetOf(TULKMBSearchChar_C(s.Get(), point, 0), s) == first);
  FUZZ_CHECK(OffsetOf(TULKMBSearchChar_C(s.Get(), point, -1), s) == last);
  std::vector<std::ptrdiff_t> places = PlacesOf(text, static_cast<char>(point));
  if (point == 0) places = {SignedSize(text)};
  if (places.empty()) places = {-1};
  FUZZ_CHECK(first == places.front() && last == places.back());
}

// The whole characters that fit, the last of them only if the locale knows it, and zeros.
void CheckCopyC(const std::string& text, std::size_t n) {
  const std::vector<std::size_t> starts = Starts(text);
  auto end = std::upper_bound(starts.begin(), starts.end(), n) - 1;
  if (end != starts.begin()) {
    const auto last = end - 1;
    if (LibraryLength(&text[*last], *end - *last) < 0) end = last;
  }
  GuardedTarget target(n);
  FUZZ_CHECK(TULKMBstrncpy_C(target.Get(), TerminatedCopy(text).Get(), n) == target.Get());
  FUZZ_CHECK(target.Content() == text.substr(0, *end) + std::string(n - *end, '\0'));
}

// ---- Code pages: code points, from a converter ----

void CheckHeadsC(UConverter* converter, const Texts& t) {
  const int n = static_cast<int>(t.n);
  const std::string headOfA = t.a.substr(0, t.n);
  const std::string headOfB = t.b.substr(0, t.n);
  const Exact a = t.n < t.a.size() ? Exact(headOfA) : TerminatedCopy(headOfA);
  const Exact b = t.n < t.b.size() ? Exact(headOfB) : TerminatedCopy(headOfB);
  const int order = TULKMBstrnicmp_C(a.Get(), b.Get(), n);
  FUZZ_CHECK(TULKMBBinaryCompare_C(0, converter, a.Get(), n, b.Get(), n, nullptr) == order);
  FUZZ_CHECK(TULKMBstrnicmp_C(b.Get(), a.Get(), n) == -order);
}

void CheckDecoding(const std::string& text) {
  const Exact s = TerminatedCopy(text);
  const Exact unterminated(text);
  const int size = SignedSize(text);
  for (int i = 0; i < size; ++i) {
    unsigned point = 1;
    const int bytes = TULKMBU32Get_C(&point, unterminated.Get(), i, size);
    FUZZ_CHECK(bytes == -1 || (bytes >= 1 && bytes <= size - i));
    FUZZ_CHECK(bytes > 0 || point == 0);
    unsigned again = 1;
    FUZZ_CHECK(TULKMBU32Get_C(&again, s.Get(), i, -1) == bytes && again == point);
  }
  FUZZ_CHECK(TULKMBU32Get_C(nullptr, s.Get(), size, -1) == 0);
  FUZZ_CHECK(TULKMBU32Get_C(nullptr, s.Get(), size, size) == 0);
}

// A clean text is what converts exactly.
void CheckValidCount(UConverter* converter, const std::string& bytes) {
  const int count = TULKMBValidCount_C(converter, Exact(bytes).Get(), SignedSize(bytes));
  FUZZ_CHECK(count >= 0 && count <= SignedSize(bytes));
  FUZZ_CHECK(TULKMBValidCount_C(nullptr, Exact(bytes).Get(), SignedSize(bytes)) == count);
  // One counts a letter that it only looked at, of the other's characters a last byte holds bits of
  // the next one.
  const UConverterType type = ucnv_getType(converter);
  if (type == UCNV_ISCII || type == UCNV_UTF7) return;
  const std::string clean = bytes.substr(0, static_cast<std::size_t>(count));
  FUZZ_CHECK(TULKMBValidCount_C(converter, Exact(clean).Get(), count) == count);
  U16String units;
  FUZZ_CHECK(TULKMBCodePageToU16(converter, units, clean) == 0);
}

// The first character is a member or none.
void CheckSpanC(const std::string& text, const std::string& set) {
  const Exact s = TerminatedCopy(text);
  const Exact members = TerminatedCopy(set);
  const int outside = TULKMBSpan_C(s.Get(), members.Get(), 0);
  const int inside = TULKMBSpan_C(s.Get(), members.Get(), 1);
  for (const int span : {outside, inside}) FUZZ_CHECK(span >= 0 && span <= SignedSize(text));
  FUZZ_CHECK(TULKMBstrcspn_C(s.Get(), members.Get()) == outside);
  if (!text.empty()) FUZZ_CHECK((outside == 0) != (inside == 0));
  FUZZ_CHECK(TULKMBSpan_C(s.Get(), s.Get(), 1) == SignedSize(text));
}

int OrderC(UConverter* converter, int mode, const std::string& a, const std::string& b,
           int& status) {
  const Exact first(a);
  const Exact second = TerminatedCopy(UpToZero(b));
  const int order =
      TULKMBBinaryCompare_C(mode, converter, first.Get(), SignedSize(a), second.Get(), -1, &status);
  FUZZ_CHECK(order >= -1 && order <= 1 && (status == 0 || status == 3));
  return order;
}

void CheckCompareC(UConverter* converter, const Texts& t) {
  for (const int mode : {0, 1}) {
    int status = -1;
    int swapped = -1;
    int byDefault = -1;
    const int order = OrderC(converter, mode, t.a, t.b, status);
    FUZZ_CHECK(OrderC(converter, mode, t.b, t.a, swapped) == -order && swapped == status);
    FUZZ_CHECK(OrderC(nullptr, mode, t.a, t.b, byDefault) == order && byDefault == status);
    FUZZ_CHECK(OrderC(converter, mode, t.a, t.a, status) == 0);
    FUZZ_CHECK(OrderC(converter, mode, t.b, t.b, status) == 0);
  }
  int exact = -1;
  int folded = -1;
  if (OrderC(converter, 1, t.a, t.b, exact) == 0) {
    FUZZ_CHECK(OrderC(converter, 0, t.a, t.b, folded) == 0 && folded == exact);
  }
  const bool isEqual = OrderC(converter, 0, t.a, t.b, folded) == 0;
  const Exact a(t.a);
  const Exact b(t.b);
  int status = -1;
  FUZZ_CHECK(TULKMBqstricmp_C(a.Get(), SignedSize(t.a), b.Get(), SignedSize(t.b), &status) ==
             isEqual);
  FUZZ_CHECK(status == folded);
}

void CheckCodePage(UConverter* converter, const Texts& t) {
  const std::string text = UpToZero(t.a);
  (void)Starts(text);  // it checks every step
  CheckLengthsC(t.a, t.n);
  CheckLeadBytes(text);
  CheckBackwardsC(text);
  CheckSearchC(text, t.point);
  CheckCopyC(text, t.n);
  CheckDecoding(text);
  CheckValidCount(converter, t.a);
  CheckSpanC(text, UpToZero(t.b));
  CheckCompareC(converter, t);
  CheckHeadsC(converter, t);
}

// ---- The active members ----

void CheckActive(const Texts& t) {
  const bool isUtf8 = qUTF8mode();
  const Exact a = TerminatedCopy(UpToZero(t.a));
  const Exact b = TerminatedCopy(UpToZero(t.b));
  const char* const s = a.Get();
  const char* const end = s + std::strlen(s);
  const auto n = static_cast<int>(t.n);
  FUZZ_CHECK(TULKMBstrinc_A(s) == (isUtf8 ? TULKMBstrinc_8(s) : TULKMBstrinc_C(s)));
  FUZZ_CHECK(TULKMBAnsiPrev_A(s, end) ==
             (isUtf8 ? TULKMBAnsiPrev_8(s, end) : TULKMBAnsiPrev_C(s, end)));
  FUZZ_CHECK(TULKMBstrchr_A(s, t.point) ==
             (isUtf8 ? TULKMBstrchr_8(s, t.point) : TULKMBstrchr_C(s, t.point)));
  FUZZ_CHECK(TULKMBstrrchr_A(s, t.point) ==
             (isUtf8 ? TULKMBstrrchr_8(s, t.point) : TULKMBstrrchr_C(s, t.point)));
  FUZZ_CHECK(TULKMBstrcspn_A(s, b.Get()) ==
             (isUtf8 ? TULKMBstrcspn_8(s, b.Get()) : TULKMBstrcspn_C(s, b.Get())));
  FUZZ_CHECK(TULKMBstrnicmp_A(s, b.Get(), n) ==
             (isUtf8 ? TULKMBstrnicmp_8(s, b.Get(), n) : TULKMBstrnicmp_C(s, b.Get(), n)));
  FUZZ_CHECK(
      TULKMBqstricmp_A(s, -1, b.Get(), -1) ==
      (isUtf8 ? TULKMBqstricmp_8(s, -1, b.Get(), -1) : TULKMBqstricmp_C(s, -1, b.Get(), -1)));
  GuardedTarget one(t.n);
  GuardedTarget other(t.n);
  TULKMBstrncpy_A(one.Get(), s, t.n);
  (isUtf8 ? TULKMBstrncpy_8 : TULKMBstrncpy_C)(other.Get(), s, t.n);
  FUZZ_CHECK(one.Content() == other.Content());
}

// ---- Locales ----

// Locales of double bytes and more, in a folder that goes at the end of the process.
class DoubleByteLocales {
 public:
  DoubleByteLocales() {
    std::string missing;
    for (const char* name : kNames) {
      if (locales_.Make(name, name)) {
        made_.push_back(name);
      } else {
        missing += std::string(" ") + name;
      }
    }
    if (missing.empty()) return;
    std::fprintf(stderr, "no localedef, or no such encodings; going on without:%s\n",
                 missing.c_str());
  }

  // Null for 0, and for what could not be made.
  const char* Name(unsigned choice) const {
    const char* name = choice == 0 ? nullptr : kNames[choice - 1];
    return std::count(made_.begin(), made_.end(), name) == 0 ? nullptr : name;
  }

 private:
  static constexpr const char* kNames[] = {"SHIFT_JIS", "GBK",    "BIG5",  "BIG5-HKSCS",
                                           "EUC-JP",    "EUC-KR", "EUC-TW"};

  test_support::MadeLocales locales_;
  std::vector<const char*> made_;
};

// The upper three bits choose one of double bytes, else the lowest one a built-in one.
void SetLocale(unsigned flags) {
  static const DoubleByteLocales locales;
  constexpr const char* kBuiltIn[] = {"C", "C.UTF-8"};
  const char* name = locales.Name(flags >> 5);
  if (name == nullptr) name = kBuiltIn[flags & 1];
  FUZZ_CHECK(std::setlocale(LC_CTYPE, name) != nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in(data, size);
  const unsigned flags = in.Byte();
  SetLocale(flags);
  SetUTF8mode((flags & 2) != 0 ? 1 : 0);
  UConverter* const converter = fuzz::ChooseConverter(in);
  TULKMBSetDefaultConverter(converter);
  Texts t;
  t.n = in.Byte();
  t.point = in.Byte();
  if ((flags & 4) != 0) t.point = t.point << 8 | in.Byte();
  if ((flags & 8) != 0) t.point = t.point << 8 | in.Byte();
  const std::size_t sizeOfB = in.Byte();
  t.b = in.Take(sizeOfB);
  t.a = (flags & 16) != 0 ? t.b + in.Rest() : in.Rest();  // alike at first
  CheckUtf8(t);
  CheckCodePage(converter, t);
  CheckActive(t);
  return 0;
}
