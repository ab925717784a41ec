// A script of setters, getters, copies and changes of the process-wide settings: the texts of a
// name are always those that the conversion functions make of its UTF-8 text.
#include <mcmem/ConverterRegistry.h>
#include <mcmem/ExtNameStr.h>
#include <mcmem/Transcoding.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "Check.h"
#include "Converters.h"
#include "Input.h"

namespace {

using namespace MCMEM_NAMESPACE;
using fuzz::Input;

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using OwnConverter = std::unique_ptr<UConverter, CloseConverter>;

// Null where the default code page cannot spell the name: the default converter then stands in.
OwnConverter SystemConverter() { return OwnConverter(TULKMBConverterNew_A(SystemEncoding())); }

std::string InCodePage(void* converter, const std::string& utf8) {
  std::string text;
  TULKMBU8ToCodePage(converter, text, utf8);
  return text;
}

bool HaveEqualTexts(const ExtNameStr& a, const ExtNameStr& b) {
  return a.GetU8() == b.GetU8() && a.GetU16() == b.GetU16() && a.GetSystem() == b.GetSystem() &&
         a.ErrorCode() == b.ErrorCode() && a.GetCP() == b.GetCP() &&
         a.GetGeneric() == b.GetGeneric() && a.ErrorCode() == b.ErrorCode();
}

void CheckStatus(const ExtNameStr& name) {
  FUZZ_CHECK(name.ErrorCode() == 0 || name.ErrorCode() == 3);
  FUZZ_CHECK(name.Empty() == name.GetU8().empty());
}

// After a setter other than SetSystem().
void CheckDerived(const ExtNameStr& name) {
  U16String units;
  FUZZ_CHECK(TULKMBU8ToU16(units, name.GetU8()) == name.ErrorCode());
  FUZZ_CHECK(name.GetU16() == units);
  FUZZ_CHECK(name.GetSystem() == InCodePage(SystemConverter().get(), name.GetU8()));
  FUZZ_CHECK(name.GetCP() == InCodePage(nullptr, name.GetU8()));
}

void SetU8(ExtNameStr& name, const std::string& text) {
  name.SetU8(text);
  FUZZ_CHECK(name.GetU8() == text);
}

void SetU16(ExtNameStr& name, const std::string& text) {
  const U16String units = fuzz::UnitsOf<unsigned short>(text);
  name.SetU16(units);
  std::string utf8;
  const int status = TULKMBU16ToU8(utf8, units);
  FUZZ_CHECK(name.GetU8() == utf8);
  FUZZ_CHECK(status != 0 || name.GetU16() == units);
}

void SetCP(ExtNameStr& name, const std::string& text, void* converter) {
  name.SetCP(text, converter);
  std::string utf8;
  TULKMBCodePageToU8(converter, utf8, text);
  FUZZ_CHECK(name.GetU8() == utf8);
}

void SetGeneric(ExtNameStr& name, const std::string& text) {
  name.SetGeneric(text);
  std::string utf8;
  TULKMBGenericToU8(utf8, text);
  FUZZ_CHECK(name.GetU8() == utf8);
}

void SetSystem(ExtNameStr& name, const std::string& text) {
  const U16String before = name.GetU16();
  const int status = name.SetSystem(text);
  FUZZ_CHECK(status == name.ErrorCode());
  FUZZ_CHECK(name.GetSystem() == text && name.GetU16() == before);
  std::string utf8;
  TULKMBCodePageToU8(SystemConverter().get(), utf8, text);
  FUZZ_CHECK(name.GetU8() == utf8);
  std::string inCodePage;
  FUZZ_CHECK(TULKMBU8ToCodePage(nullptr, inCodePage, utf8) == status);
  FUZZ_CHECK(name.GetCP() == inCodePage && name.ErrorCode() == status);
}

void Set(ExtNameStr& name, unsigned setter, const std::string& text, void* converter) {
  switch (setter) {
    case 0:
      SetU8(name, text);
      break;
    case 1:
      SetU16(name, text);
      break;
    case 2:
      SetCP(name, text, converter);
      break;
    case 3:
      SetGeneric(name, text);
      break;
    default:
      name.Clear();
      FUZZ_CHECK(name.Empty() && name.ErrorCode() == 0);
  }
  CheckDerived(name);
}

void SetTwice(ExtNameStr& name, Input& in) {
  const unsigned setter = in.Below(5);
  UConverter* const converter = in.Flag() ? fuzz::ChooseConverter(in) : nullptr;
  const std::string text = in.Take(in.Below(48));
  Set(name, setter, text, converter);
  const ExtNameStr once = name;
  Set(name, setter, text, converter);
  FUZZ_CHECK(HaveEqualTexts(name, once));
}

void SetSystemTwice(ExtNameStr& name, Input& in) {
  const std::string text = in.Take(in.Below(48));
  SetSystem(name, text);
  const ExtNameStr once = name;
  SetSystem(name, text);
  FUZZ_CHECK(HaveEqualTexts(name, once));
}

// The argument is a text of the object itself.
void SetOwnText(ExtNameStr& name, unsigned which) {
  const ExtNameStr before = name;
  if (which == 0) name.SetU8(name.GetU8());
  if (which == 1) name.SetU16(name.GetU16());
  if (which == 2) name.SetCP(name.GetCP(), nullptr);
  if (which == 3) name.SetGeneric(name.GetGeneric());
  if (which == 4) name.SetU8(name.GetSystem());
  if (which == 0) FUZZ_CHECK(name.GetU8() == before.GetU8());
  if (which == 3 && qUTF8mode()) FUZZ_CHECK(name.GetU8() == before.GetU8());
  CheckDerived(name);
}

void Read(ExtNameStr& name, Input& in) {
  UConverter* const converter = in.Flag() ? fuzz::ChooseConverter(in) : nullptr;
  std::string text;
  const int status = TULKMBU8ToCodePage(converter, text, name.GetU8());
  FUZZ_CHECK(name.GetCP(converter) == text && name.ErrorCode() == status);
  FUZZ_CHECK(&name.GetGeneric() == (qUTF8mode() ? &name.GetU8() : &name.GetCP()));
}

// The code-page text follows the default converter, whatever it was made with.
void ChangeDefault(ExtNameStr& name, Input& in) {
  const std::string utf8 = name.GetU8();
  TULKMBSetDefaultConverter(fuzz::ChooseConverter(in));
  FUZZ_CHECK(name.GetCP() == InCodePage(nullptr, utf8));
  FUZZ_CHECK(name.GetSystem() == InCodePage(SystemConverter().get(), utf8));
  FUZZ_CHECK(name.GetU8() == utf8);
}

// Reading renews what the default converter has outlived, so each copy is looked at by itself.
void CopyOver(ExtNameStr& name, ExtNameStr& other, unsigned how) {
  if (how == 0) {
    other = name;
    FUZZ_CHECK(HaveEqualTexts(other, name));
  }
  if (how == 1) name = *&name;
  const ExtNameStr copy(name);
  FUZZ_CHECK(HaveEqualTexts(copy, name));
}

void Step(ExtNameStr& name, ExtNameStr& other, Input& in) {
  constexpr std::size_t kLongest = 1000;  // own texts in wide encodings grow with every turn
  if (name.GetU8().size() > kLongest) name.Clear();
  switch (in.Below(8)) {
    case 0:
      SetTwice(name, in);
      break;
    case 1:
      SetSystemTwice(name, in);
      break;
    case 2:
      SetOwnText(name, in.Below(5));
      break;
    case 3:
      Read(name, in);
      break;
    case 4:
      ChangeDefault(name, in);
      break;
    case 5:
      CopyOver(name, other, in.Below(3));
      break;
    case 6:
      FUZZ_CHECK(SetUTF8mode(static_cast<int>(in.Below(2))) == qUTF8mode());
      break;
    default:
      SetU8(name, in.Take(in.Below(48)));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in(data, size);
  SetUTF8mode(0);
  TULKMBSetDefaultConverter(fuzz::ConverterNamed("windows-1252"));
  ExtNameStr names[2];
  while (!in.IsEmpty()) {
    const unsigned which = in.Below(2);
    Step(names[which], names[1 - which], in);
    for (const ExtNameStr& name : names) CheckStatus(name);
  }
  return 0;
}
