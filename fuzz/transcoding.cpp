// Any text through any conversion between code pages, UTF-8, UTF-16 and UTF-32, into a buffer of
// any size: layout, status and length keep the promises of the header, whatever state the converter
// was left in; the conversions agree with each other and with ICU.
#include <mcmem/ConverterRegistry.h>
#include <mcmem/Transcoding.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <type_traits>

#include "Check.h"
#include "Converters.h"
#include "Input.h"

namespace {

using namespace MCMEM_NAMESPACE;
using fuzz::Input;
using U32String = std::basic_string<unsigned int>;

constexpr std::size_t kGuard = 8;

struct Choices {
  const fuzz::CodePage* page;
  UConverter* converter;  // of the page
  void* given;            // the same, or null: then it is the default converter
  bool isTerminated;
  std::size_t capacity;
  std::string leftover;  // bytes in whose middle the converter is left before a conversion

  bool Has(fuzz::Traits trait) const { return (page->traits & trait) != 0; }
};

template <class From, class To>
struct Form {
  using FromUnit = From;
  using ToUnit = To;
  int (*buffer)(void* converter, To* dst, int capacity, const From* src, int length, int* status);
  // may be null
  int (*string)(void* converter, std::basic_string<To>& out, const std::basic_string<From>& in);
  bool usesCodePage;
  bool makesCodePage;  // the target is in the code page
};

template <class Unit>
struct Answer {
  std::basic_string<Unit> buffer;
  int length = 0;
  int status = 0;

  std::basic_string<Unit> Text() const {
    return buffer.substr(0, static_cast<std::size_t>(length));
  }
};

// ---- Calls ----

// What a client may have left behind: half a character in both directions.
void LeaveInTheMiddle(const Choices& choices) {
  UChar units[64];
  UChar* unit = units;
  const char* s = choices.leftover.data();
  UErrorCode error = U_ZERO_ERROR;
  ucnv_toUnicode(choices.converter, &unit, units + 64, &s, s + choices.leftover.size(), nullptr, 0,
                 &error);
  const UChar text[] = {0x3042, 0xD83D};
  const UChar* t = text;
  char bytes[64];
  char* byte = bytes;
  error = U_ZERO_ERROR;
  ucnv_fromUnicode(choices.converter, &byte, bytes + 64, &t, text + 2, nullptr, 0, &error);
}

template <class From, class To>
Answer<To> Call(const Form<From, To>& form, const Choices& choices,
                const std::basic_string<From>& text, std::size_t capacity) {
  constexpr auto kOld = static_cast<To>(0xABABABABu);
  const std::size_t count = text.size() + (choices.isTerminated ? 1 : 0);
  const fuzz::ExactCopy<From> source(text.c_str(), count);
  const int length = choices.isTerminated ? -1 : static_cast<int>(text.size());
  std::basic_string<To> memory(capacity + 2 * kGuard, kOld);
  Answer<To> answer;
  answer.status = -1;
  answer.length = form.buffer(choices.given, &memory[kGuard], static_cast<int>(capacity),
                              source.Get(), length, &answer.status);
  FUZZ_CHECK(answer.status == 0 || answer.status == 1 || answer.status == 3);
  FUZZ_CHECK(answer.length >= 0);
  const std::basic_string<To> guard(kGuard, kOld);
  FUZZ_CHECK(memory.compare(0, kGuard, guard) == 0);
  FUZZ_CHECK(memory.compare(kGuard + capacity, kGuard, guard) == 0);
  answer.buffer = memory.substr(kGuard, capacity);
  return answer;
}

// Without AddressSanitizer's eye on the target the guards have to do; here it ends with its memory.
template <class From, class To>
void CallAgain(const Form<From, To>& form, const Choices& choices,
               const std::basic_string<From>& text, const Answer<To>& before) {
  const std::size_t capacity = before.buffer.size();
  const std::unique_ptr<To[]> target(new To[capacity]());
  LeaveInTheMiddle(choices);
  int status = -1;
  const int length =
      form.buffer(choices.given, target.get(), static_cast<int>(capacity), text.c_str(),
                  choices.isTerminated ? -1 : static_cast<int>(text.size()), &status);
  FUZZ_CHECK(length == before.length && status == before.status);
  if (capacity == 0) return;
  FUZZ_CHECK(std::equal(target.get(), target.get() + length, before.buffer.begin()));
}

// More than any text takes.
template <class From, class To>
Answer<To> CallWithAmpleRoom(const Form<From, To>& form, const Choices& choices,
                             const std::basic_string<From>& text) {
  constexpr std::size_t kMostPerUnit = 40;
  const std::size_t capacity = (text.size() + 2) * kMostPerUnit;
  Answer<To> whole = Call(form, choices, text, capacity);
  FUZZ_CHECK(whole.status != 1 && static_cast<std::size_t>(whole.length) < capacity);
  FUZZ_CHECK(whole.buffer[static_cast<std::size_t>(whole.length)] ==
             To{choices.isTerminated ? To{0} : To{0x20}});
  return whole;
}

template <class From, class To>
std::basic_string<To> Converted(const Form<From, To>& form, const Choices& choices,
                                const std::basic_string<From>& text, int& status) {
  Choices explicitly = choices;
  explicitly.isTerminated = false;
  const Answer<To> whole = CallWithAmpleRoom(form, explicitly, text);
  status = whole.status;
  return whole.Text();
}

// ---- One answer beside the whole result ----

template <class To>
void CheckLayout(const Answer<To>& piece, const Answer<To>& whole, bool isTerminated) {
  const std::size_t capacity = piece.buffer.size();
  const std::size_t room = isTerminated ? capacity - 1 : capacity;
  const auto length = static_cast<std::size_t>(piece.length);
  const bool isCut = static_cast<std::size_t>(whole.length) > room;
  FUZZ_CHECK(length <= room);
  FUZZ_CHECK(isCut || piece.length == whole.length);
  FUZZ_CHECK(piece.status == (whole.status == 3 ? 3 : isCut ? 1 : 0));
  FUZZ_CHECK(whole.buffer.compare(0, length, piece.buffer, 0, length) == 0);
  if (isTerminated) FUZZ_CHECK(piece.buffer[length] == To{0});
  if (!isTerminated && length < room) FUZZ_CHECK(piece.buffer[length] == To{0x20});
  const std::size_t firstBlank = isTerminated ? length + 1 : length;
  for (std::size_t i = firstBlank; isCut && i < room; ++i) {
    FUZZ_CHECK(piece.buffer[i] == To{0x20});
  }
}

// A cut leaves no more out than the character that did not fit.
void CheckCut(const std::string& whole, std::size_t length, std::size_t room) {
  const auto isTrail = [&whole](std::size_t i) { return (whole[i] & 0xC0) == 0x80; };
  std::size_t end = room;
  while (end > 0 && isTrail(end)) --end;
  FUZZ_CHECK(length == end);
}

void CheckCut(const U16String& whole, std::size_t length, std::size_t room) {
  const bool isHigh = room > 0 && (whole[room - 1] & 0xFC00) == 0xD800;
  FUZZ_CHECK(length == (isHigh ? room - 1 : room));
}

void CheckCut(const U32String&, std::size_t length, std::size_t room) {
  FUZZ_CHECK(length == room);
}

const Form<char, unsigned short> kCodePageTo16 = {TULKMBCodePageto16, TULKMBCodePageToU16, true,
                                                  false};
const Form<unsigned short, char> k16ToCodePage = {TULKMB16toCodePage, TULKMBU16ToCodePage, true,
                                                  true};
const Form<char, char> kCodePageTo8 = {TULKMBCodePageto8, TULKMBCodePageToU8, true, false};
const Form<char, char> k8ToCodePage = {TULKMB8toCodePage, TULKMBU8ToCodePage, true, true};

// The characters that a cut leaves are the first of the whole text.
void CheckCutCodePage(const Choices& choices, const std::string& whole, const std::string& piece) {
  if (choices.Has(fuzz::kSharesBytes)) return;  // what a cut leaves may be read as something else
  int status = 0;
  const U16String text = Converted(kCodePageTo16, choices, whole, status);
  if (status != 0) return;
  const U16String head = Converted(kCodePageTo16, choices, piece, status);
  FUZZ_CHECK(status == 0 && text.compare(0, head.size(), head) == 0);
}

template <class From, class To>
void CheckPiece(const Form<From, To>& form, const Choices& choices,
                const std::basic_string<From>& text, const Answer<To>& whole) {
  LeaveInTheMiddle(choices);
  const Answer<To> piece = Call(form, choices, text, choices.capacity);
  CallAgain(form, choices, text, piece);
  if (choices.capacity != 0) {
    FUZZ_CHECK(static_cast<std::size_t>(piece.length) <= choices.capacity);
  }
  if (form.usesCodePage && !choices.Has(fuzz::kEncodesAlike)) return;
  if (choices.capacity == 0) {
    FUZZ_CHECK(piece.length == whole.length);
    FUZZ_CHECK(piece.status == (whole.status == 3 ? 3 : whole.length != 0 ? 1 : 0));
    return;
  }
  CheckLayout(piece, whole, choices.isTerminated);
  const std::size_t room = choices.capacity - (choices.isTerminated ? 1 : 0);
  if (static_cast<std::size_t>(whole.length) <= room) return;
  if (!form.makesCodePage) {
    CheckCut(whole.Text(), static_cast<std::size_t>(piece.length), room);
  } else if constexpr (std::is_same_v<To, char>) {
    CheckCutCodePage(choices, whole.Text(), piece.Text());
  }
}

template <class From, class To>
void CheckString(const Form<From, To>& form, const Choices& choices,
                 const std::basic_string<From>& text, const Answer<To>& whole) {
  if (form.string == nullptr) return;
  LeaveInTheMiddle(choices);
  std::basic_string<To> out(3, To{0x7E});
  FUZZ_CHECK(form.string(choices.given, out, text) == whole.status);
  if (form.usesCodePage && !choices.Has(fuzz::kEncodesAlike)) return;
  FUZZ_CHECK(out == whole.Text());
}

// The layout in the chosen buffer, and the other ways to the same result. Returns that.
template <class From, class To>
Answer<To> CheckForm(const Form<From, To>& form, const Choices& choices,
                     const std::basic_string<From>& text) {
  const Answer<To> whole = CallWithAmpleRoom(form, choices, text);
  CheckPiece(form, choices, text, whole);
  CheckString(form, choices, text, whole);
  Choices ask = choices;
  ask.capacity = 0;
  CheckPiece(form, ask, text, whole);
  return whole;
}

// ---- There and back ----

bool IsPrivate(unsigned short unit) { return unit >= 0xE000 && unit <= 0xF8FF; }
bool IsPlane15Or16(unsigned short unit) { return unit >= 0xDB80 && unit <= 0xDBFF; }

// Characters for private use have no home in a code page: where one takes them, it gives what it
// likes.
bool HasPrivateUse(const U16String& text) {
  return std::any_of(text.begin(), text.end(), IsPrivate) ||
         std::any_of(text.begin(), text.end(), IsPlane15Or16);
}

template <class From, class To>
void CheckWayBack(const Form<To, From>& back, const Choices& choices,
                  const std::basic_string<From>& text, const Answer<To>& whole) {
  if (whole.status != 0) return;
  int status = 0;
  FUZZ_CHECK(Converted(back, choices, whole.Text(), status) == text);
  FUZZ_CHECK(status == 0);
}

// By ICU alone, with a converter that nothing else uses.
UConverter* OwnConverter(const Choices& choices) {
  static auto& converters = *new std::map<const fuzz::CodePage*, UConverter*>;
  UConverter*& converter = converters[choices.page];
  if (converter == nullptr) converter = TULKMBConverterNew_C(choices.page->name);
  ucnv_reset(converter);
  return converter;
}

// ICU does not reset compound text.
bool CanBeReset(const UConverter* converter) {
  return ucnv_getType(converter) != UCNV_COMPOUND_TEXT;
}

void CheckAgainstIcu(const Choices& choices, const std::string& text,
                     const Answer<unsigned short>& whole) {
  UConverter* const own = OwnConverter(choices);
  if (!CanBeReset(own)) return;
  U16String units(whole.buffer.size(), 0);
  UErrorCode error = U_ZERO_ERROR;
  const int length = ucnv_toUChars(own, units.data(), static_cast<int>(units.size()), text.data(),
                                   static_cast<int>(text.size()), &error);
  FUZZ_CHECK(U_SUCCESS(error));
  units.resize(static_cast<std::size_t>(length));
  FUZZ_CHECK(units == whole.Text());
}

void CheckAgainstIcu(const Choices& choices, const U16String& text, const Answer<char>& whole) {
  UConverter* const own = OwnConverter(choices);
  if (!CanBeReset(own)) return;
  std::string bytes(whole.buffer.size(), '\0');
  UErrorCode error = U_ZERO_ERROR;
  const int length = ucnv_fromUChars(own, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                                     static_cast<int>(text.size()), &error);
  FUZZ_CHECK(U_SUCCESS(error));
  bytes.resize(static_cast<std::size_t>(length));
  FUZZ_CHECK(bytes == whole.Text());
}

// ---- The conversions ----

const Form<char, unsigned short> k8To16 = {
    [](void*, unsigned short* dst, int capacity, const char* src, int length, int* status) {
      return TULKMB8to16(dst, capacity, src, length, status);
    },
    [](void*, U16String& out, const std::string& in) { return TULKMBU8ToU16(out, in); }, false,
    false};
const Form<unsigned short, char> k16To8 = {
    [](void*, char* dst, int capacity, const unsigned short* src, int length, int* status) {
      return TULKMB16to8(dst, capacity, src, length, status);
    },
    [](void*, std::string& out, const U16String& in) { return TULKMBU16ToU8(out, in); }, false,
    false};
const Form<char, unsigned int> k8To32 = {
    [](void*, unsigned int* dst, int capacity, const char* src, int length, int* status) {
      return TULKMB8and32(1, dst, capacity, src, length, status);
    },
    nullptr, false, false};
const Form<unsigned int, char> k32To8 = {
    [](void*, char* dst, int capacity, const unsigned int* src, int length, int* status) {
      return TULKMB8and32(0, dst, capacity, src, length, status);
    },
    nullptr, false, false};

void CheckCodePageTo16(const Choices& choices, const std::string& text) {
  const Answer<unsigned short> whole = CheckForm(kCodePageTo16, choices, text);
  if (!choices.Has(fuzz::kEncodesAlike)) return;
  CheckAgainstIcu(choices, text, whole);
  if (choices.Has(fuzz::kFromBytes)) CheckWayBack(k16ToCodePage, choices, text, whole);
}

void Check16ToCodePage(const Choices& choices, const U16String& text) {
  const Answer<char> whole = CheckForm(k16ToCodePage, choices, text);
  if (choices.Has(fuzz::kEncodesAlike)) CheckAgainstIcu(choices, text, whole);
  if (!choices.Has(fuzz::kFromUnicode) || HasPrivateUse(text)) return;
  CheckWayBack(kCodePageTo16, choices, text, whole);
}

// The way over UTF-16 leads to the same.
void CheckCodePageTo8(const Choices& choices, const std::string& text) {
  const Answer<char> whole = CheckForm(kCodePageTo8, choices, text);
  if (!choices.Has(fuzz::kEncodesAlike)) return;
  int status = 0;
  const U16String units = Converted(kCodePageTo16, choices, text, status);
  if (status != 0) FUZZ_CHECK(whole.status == 3);
  int last = 0;
  const std::string utf8 = Converted(k16To8, choices, units, last);
  if (last == 0) FUZZ_CHECK(whole.Text() == utf8 && whole.status == status);
  if (last != 0) FUZZ_CHECK(whole.status == 3);
}

void Check8ToCodePage(const Choices& choices, const std::string& text) {
  const Answer<char> whole = CheckForm(k8ToCodePage, choices, text);
  if (!choices.Has(fuzz::kEncodesAlike)) return;
  int status = 0;
  const U16String units = Converted(k8To16, choices, text, status);
  if (status != 0) {
    FUZZ_CHECK(whole.status == 3);
    return;
  }
  FUZZ_CHECK(whole.Text() == Converted(k16ToCodePage, choices, units, status));
  FUZZ_CHECK(whole.status == status);
}

using PlainCopy = int (*)(void*, char*, int, const char*, int, int*);

void CheckPlainCopy(PlainCopy copy, const Choices& choices, const std::string& text) {
  const std::size_t capacity = choices.capacity + 1;
  std::string memory(capacity + 1 + kGuard, '#');
  int status = -1;
  const fuzz::ExactCopy<char> source(text.c_str(), text.size() + (choices.isTerminated ? 1 : 0));
  const int length = copy(choices.given, memory.data(), static_cast<int>(capacity), source.Get(),
                          choices.isTerminated ? -1 : static_cast<int>(text.size()), &status);
  std::string expected = text.substr(0, capacity);
  FUZZ_CHECK(status == 0 && static_cast<std::size_t>(length) == expected.size());
  if (choices.isTerminated) expected += '\0';
  expected.resize(memory.size(), '#');
  FUZZ_CHECK(memory == expected);
}

int GenericTo8(void*, char* dst, int capacity, const char* src, int length, int* status) {
  return TULKMBGenericto8(dst, capacity, src, length, status);
}

int ToGeneric8(void*, char* dst, int capacity, const char* src, int length, int* status) {
  return TULKMB8toGeneric(dst, capacity, src, length, status);
}

// The generic forms do what the conversion does for which they stand in the current mode.
void CheckGenericBytes(unsigned which, Choices choices, const std::string& text) {
  const bool isUtf8 = qUTF8mode();
  const Form<char, char> forms[] = {{GenericTo8, TULKMBGenericToU8, true, false},
                                    {ToGeneric8, TULKMBU8ToGeneric, true, true},
                                    {TULKMBCodePagetoGeneric, TULKMBCodePageToGeneric, true, false},
                                    {TULKMBGenerictoCodePage, TULKMBGenericToCodePage, true, true}};
  if (which < 2) choices.given = nullptr;
  const bool isCopy = isUtf8 == (which < 2);
  if (isCopy) {
    CheckPlainCopy(forms[which].buffer, choices, text);
    std::string out = "old";
    FUZZ_CHECK(forms[which].string(choices.given, out, text) == 0 && out == text);
    return;
  }
  CheckForm(forms[which], choices, text);
}

void CheckGenericTo16(Choices choices, const std::string& text) {
  choices.given = nullptr;
  const Form<char, unsigned short> form = {
      [](void*, unsigned short* dst, int capacity, const char* src, int length, int* status) {
        return TULKMBGenericto16(dst, capacity, src, length, status);
      },
      TULKMBGenericToU16, !qUTF8mode(), false};
  const Answer<unsigned short> whole = CheckForm(form, choices, text);
  const auto& same = qUTF8mode() ? k8To16 : kCodePageTo16;
  FUZZ_CHECK(whole.Text() == CallWithAmpleRoom(same, choices, text).Text());
}

void Check16ToGeneric(Choices choices, const U16String& text) {
  choices.given = nullptr;
  const Form<unsigned short, char> form = {
      [](void*, char* dst, int capacity, const unsigned short* src, int length, int* status) {
        return TULKMB16toGeneric(dst, capacity, src, length, status);
      },
      TULKMBU16ToGeneric, !qUTF8mode(), !qUTF8mode()};
  const Answer<char> whole = CheckForm(form, choices, text);
  const auto& same = qUTF8mode() ? k16To8 : k16ToCodePage;
  FUZZ_CHECK(whole.Text() == CallWithAmpleRoom(same, choices, text).Text());
}

template <class From, class To>
void CheckArray(To* (*transcode)(const From*), const Form<From, To>& form, Choices choices,
                const std::basic_string<From>& text, bool mayBeCut) {
  choices.given = nullptr;
  choices.isTerminated = true;
  const std::unique_ptr<To[]> array(transcode(fuzz::TerminatedCopy(text).Get()));
  std::basic_string<To> whole = CallWithAmpleRoom(form, choices, text).buffer;
  whole = fuzz::UpToZero(whole);
  const std::basic_string<To> made = array.get();
  if (form.usesCodePage && !choices.Has(fuzz::kEncodesAlike)) return;
  FUZZ_CHECK(mayBeCut ? whole.compare(0, made.size(), made) == 0 : made == whole);
}

void CheckArrays(const Choices& choices, const std::string& bytes) {
  const std::string text = fuzz::UpToZero(bytes);
  const U16String units = fuzz::UpToZero(fuzz::UnitsOf<unsigned short>(bytes));
  const bool isUtf8 = qUTF8mode();
  CheckArray<char, unsigned short>(TULKMBTranscodeU8, k8To16, choices, text, false);
  CheckArray<unsigned short, char>(TULKMBTranscodeU8, k16To8, choices, units, false);
  CheckArray<char, unsigned short>(TULKMBTranscodeCodePage, kCodePageTo16, choices, text, false);
  CheckArray<unsigned short, char>(TULKMBTranscodeCodePage, k16ToCodePage, choices, units, true);
  CheckArray<char, unsigned short>(TULKMBTranscodeGeneric, isUtf8 ? k8To16 : kCodePageTo16, choices,
                                   text, false);
  CheckArray<unsigned short, char>(TULKMBTranscodeGeneric, isUtf8 ? k16To8 : k16ToCodePage, choices,
                                   units, !isUtf8);
}

// What the engines are called by, beside the wrappers, which fix a direction.
const Form<char, unsigned short> kEngine8To16 = {
    [](void*, unsigned short* dst, int capacity, const char* src, int length, int* status) {
      return TULKMB8and16(1, dst, capacity, src, length, status);
    },
    nullptr, false, false};
const Form<unsigned short, char> kEngine16To8 = {
    [](void*, char* dst, int capacity, const unsigned short* src, int length, int* status) {
      return TULKMB8and16(0, dst, capacity, src, length, status);
    },
    nullptr, false, false};
const Form<char, unsigned short> kEngineCodePageTo16 = {
    [](void* converter, unsigned short* dst, int capacity, const char* src, int length,
       int* status) {
      return TULKMBCodePageAnd16(-1, converter, dst, capacity, src, length, status);
    },
    nullptr, true, false};
const Form<unsigned short, char> kEngine16ToCodePage = {
    [](void* converter, char* dst, int capacity, const unsigned short* src, int length,
       int* status) {
      return TULKMBCodePageAnd16(0, converter, dst, capacity, src, length, status);
    },
    nullptr, true, true};
const Form<char, char> kEngineCodePageTo8 = {
    [](void* converter, char* dst, int capacity, const char* src, int length, int* status) {
      return TULKMBCodePageAnd8(2, converter, dst, capacity, src, length, status);
    },
    nullptr, true, false};
const Form<char, char> kEngine8ToCodePage = {
    [](void* converter, char* dst, int capacity, const char* src, int length, int* status) {
      return TULKMBCodePageAnd8(0, converter, dst, capacity, src, length, status);
    },
    nullptr, true, true};

// Behind the text nothing is compared: some of ICU's converters work there.
template <class From, class To>
void CheckSame(const Form<From, To>& engine, const Form<From, To>& wrapper, const Choices& choices,
               const std::basic_string<From>& text) {
  LeaveInTheMiddle(choices);
  const Answer<To> a = Call(engine, choices, text, choices.capacity);
  LeaveInTheMiddle(choices);
  const Answer<To> b = Call(wrapper, choices, text, choices.capacity);
  FUZZ_CHECK(a.length == b.length && a.status == b.status);
  if (choices.capacity != 0) FUZZ_CHECK(a.Text() == b.Text());
}

void CheckEngines(const Choices& choices, const std::string& bytes) {
  const std::string text = choices.isTerminated ? fuzz::UpToZero(bytes) : bytes;
  U16String units = fuzz::UnitsOf<unsigned short>(bytes);
  if (choices.isTerminated) units = fuzz::UpToZero(units);
  CheckSame(kEngine8To16, k8To16, choices, text);
  CheckSame(kEngine16To8, k16To8, choices, units);
  CheckSame(kEngineCodePageTo16, kCodePageTo16, choices, text);
  CheckSame(kEngine16ToCodePage, k16ToCodePage, choices, units);
  CheckSame(kEngineCodePageTo8, kCodePageTo8, choices, text);
  CheckSame(kEngine8ToCodePage, k8ToCodePage, choices, text);
}

// ---- Refusals ----

template <class From, class To>
void CheckRefusals(const Form<From, To>& form, const Choices& choices,
                   const std::basic_string<From>& text) {
  constexpr To kOld = To{0x7E};
  const auto size = static_cast<int>(text.size());
  const int length = choices.isTerminated ? -1 : size;
  const auto capacity = static_cast<int>(choices.capacity);
  To units[2] = {kOld, kOld};
  int status = -1;
  FUZZ_CHECK(form.buffer(choices.given, units, -1 - capacity, text.c_str(), length, &status) == 0);
  FUZZ_CHECK(status == 3 && units[0] == kOld);
  status = -1;
  FUZZ_CHECK(form.buffer(choices.given, nullptr, capacity + 1, text.c_str(), length, &status) == 0);
  FUZZ_CHECK(status == 3);
  status = -1;
  const int none = choices.isTerminated ? -1 : size + 1;
  FUZZ_CHECK(form.buffer(choices.given, units, 1, nullptr, none, &status) == 0);
  FUZZ_CHECK(status == 3 && units[0] == To{choices.isTerminated ? To{0} : To{0x20}});
  FUZZ_CHECK(units[1] == kOld);
  // Without a status the result is the same.
  status = -1;
  const int asked = form.buffer(choices.given, nullptr, 0, text.c_str(), length, &status);
  FUZZ_CHECK(form.buffer(choices.given, nullptr, 0, text.c_str(), length, nullptr) == asked);
}

void CheckAllRefusals(const Choices& choices, const std::string& bytes) {
  const std::string text = choices.isTerminated ? fuzz::UpToZero(bytes) : bytes;
  const U16String units = fuzz::UnitsOf<unsigned short>(bytes);
  const U32String points = fuzz::UnitsOf<unsigned int>(bytes);
  CheckRefusals(k8To16, choices, text);
  CheckRefusals(k16To8, choices, units);
  CheckRefusals(k8To32, choices, text);
  CheckRefusals(k32To8, choices, points);
  CheckRefusals(kCodePageTo16, choices, text);
  CheckRefusals(k16ToCodePage, choices, units);
  CheckRefusals(kCodePageTo8, choices, text);
  CheckRefusals(k8ToCodePage, choices, text);
}

// ---- Strings in their own place ----

using ByteStrings = int (*)(void*, std::string&, const std::string&);

void CheckInPlace(ByteStrings convert, const Choices& choices, const std::string& text) {
  std::string apart = "old";
  const int status = convert(choices.given, apart, text);
  std::string same = text;
  FUZZ_CHECK(convert(choices.given, same, same) == status && same == apart);
}

// The forms without a converter take the default one.
void CheckDefaults(const Choices& choices, const std::string& text, const U16String& units) {
  std::string a = "a";
  std::string b = "b";
  U16String u = {1};
  U16String v = {2};
  FUZZ_CHECK(TULKMBU8ToGeneric(a, text) == TULKMBU8ToGeneric(choices.converter, b, text));
  FUZZ_CHECK(a == b);
  FUZZ_CHECK(TULKMBGenericToU8(a, text) == TULKMBGenericToU8(choices.converter, b, text));
  FUZZ_CHECK(a == b);
  FUZZ_CHECK(TULKMBU16ToGeneric(a, units) == TULKMBU16ToGeneric(choices.converter, b, units));
  FUZZ_CHECK(a == b);
  FUZZ_CHECK(TULKMBGenericToU16(u, text) == TULKMBGenericToU16(choices.converter, v, text));
  FUZZ_CHECK(u == v);
}

void CheckStrings(const Choices& choices, const std::string& text) {
  constexpr ByteStrings kForms[] = {TULKMBU8ToCodePage,      TULKMBCodePageToU8,
                                    TULKMBU8ToGeneric,       TULKMBGenericToU8,
                                    TULKMBCodePageToGeneric, TULKMBGenericToCodePage};
  for (const ByteStrings convert : kForms) CheckInPlace(convert, choices, text);
  CheckDefaults(choices, text, fuzz::UnitsOf<unsigned short>(text));
}

// A plain copy may move a text within its memory.
void CheckOverlap(const Choices& choices, const std::string& bytes, std::size_t shift) {
  const std::string text = choices.isTerminated ? fuzz::UpToZero(bytes) : bytes;
  const bool isUtf8 = qUTF8mode();
  const PlainCopy copy = isUtf8 ? GenericTo8 : PlainCopy{TULKMBCodePagetoGeneric};
  const std::size_t room = text.size() + shift + 1;
  for (const bool forward : {false, true}) {
    std::string memory(room + 1, '#');
    const std::size_t from = forward ? 0 : shift;
    memory.replace(from, text.size(), text);
    if (choices.isTerminated) memory[from + text.size()] = '\0';
    int status = -1;
    const int length =
        copy(choices.given, &memory[shift - from], static_cast<int>(text.size()) + 1, &memory[from],
             choices.isTerminated ? -1 : static_cast<int>(text.size()), &status);
    FUZZ_CHECK(status == 0 && static_cast<std::size_t>(length) == text.size());
    FUZZ_CHECK(memory.compare(shift - from, text.size(), text) == 0);
  }
}

// ---- Texts ----

enum class Shape {
  kAsItIs,        // any units, often malformed
  kFromCodePage,  // what the bytes stand for in the code page
  kFromUtf8,      // what they stand for in UTF-8, as far as that goes
};

template <class Unit>
std::basic_string<Unit> TextOf(const Choices& choices, Shape shape, const std::string& bytes) {
  std::string utf8 = bytes;
  if (shape == Shape::kFromCodePage) TULKMBCodePageToU8(choices.converter, utf8, bytes);
  std::basic_string<Unit> text = fuzz::UnitsOf<Unit>(bytes);
  int status = 0;
  if (shape != Shape::kAsItIs) {
    const U32String points = Converted(k8To32, choices, utf8, status);
    if constexpr (std::is_same_v<Unit, unsigned int>) text = points;
    const std::string valid = Converted(k32To8, choices, points, status);
    if constexpr (std::is_same_v<Unit, unsigned short>) {
      text = Converted(k8To16, choices, valid, status);
    }
    if constexpr (std::is_same_v<Unit, char>) text = valid;
  }
  return choices.isTerminated ? fuzz::UpToZero(text) : text;
}

void Check8And16(bool to16, const Choices& choices, Shape shape, const std::string& bytes) {
  if (to16) {
    const std::string text = TextOf<char>(choices, shape, bytes);
    CheckWayBack(k16To8, choices, text, CheckForm(k8To16, choices, text));
  } else {
    const U16String text = TextOf<unsigned short>(choices, shape, bytes);
    CheckWayBack(k8To16, choices, text, CheckForm(k16To8, choices, text));
  }
}

void Check8And32(bool to32, const Choices& choices, Shape shape, const std::string& bytes) {
  if (to32) {
    const std::string text = TextOf<char>(choices, shape, bytes);
    CheckWayBack(k32To8, choices, text, CheckForm(k8To32, choices, text));
  } else {
    const U32String text = TextOf<unsigned int>(choices, shape, bytes);
    CheckWayBack(k8To32, choices, text, CheckForm(k32To8, choices, text));
  }
}

void Check(unsigned function, const Choices& choices, Shape shape, const std::string& bytes) {
  const std::string inCodePage = choices.isTerminated ? fuzz::UpToZero(bytes) : bytes;
  switch (function) {
    case 0:
      return CheckCodePageTo16(choices, inCodePage);
    case 1:
      return Check16ToCodePage(choices, TextOf<unsigned short>(choices, shape, bytes));
    case 2:
      return CheckCodePageTo8(choices, inCodePage);
    case 3:
      return Check8ToCodePage(choices, TextOf<char>(choices, shape, bytes));
    case 4:
      return Check8And16(true, choices, shape, bytes);
    case 5:
      return Check8And16(false, choices, shape, bytes);
    case 6:
      return Check8And32(true, choices, shape, bytes);
    case 7:
      return Check8And32(false, choices, shape, bytes);
    case 8:
      return CheckGenericTo16(choices, inCodePage);
    case 9:
      return Check16ToGeneric(choices, TextOf<unsigned short>(choices, shape, bytes));
    case 10:
      return CheckArrays(choices, bytes);
    case 15:
      return CheckEngines(choices, bytes);
    case 16:
      return CheckAllRefusals(choices, bytes);
    case 17:
      return CheckStrings(choices, inCodePage);
    case 18:
      return CheckOverlap(choices, bytes, choices.leftover.size());
    default:
      return CheckGenericBytes(function - 11, choices, inCodePage);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in(data, size);
  const unsigned function = in.Below(19);
  const unsigned flags = in.Byte();
  Choices choices;
  choices.page = &fuzz::ChooseCodePage(in);
  choices.converter = fuzz::ConverterNamed(choices.page->name);
  choices.given = (flags & 1) != 0 ? choices.converter : nullptr;
  choices.isTerminated = (flags & 2) != 0;
  choices.capacity = in.Byte();
  choices.leftover = in.Take(in.Below(6));
  SetUTF8mode((flags & 4) != 0 ? 1 : 0);
  TULKMBSetDefaultConverter(choices.converter);
  Check(function, choices, static_cast<Shape>((flags >> 3) % 3), in.Rest());
  return 0;
}
