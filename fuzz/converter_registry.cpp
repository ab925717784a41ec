// Any names and numbers of converters: what a number is called is what opens, a name opens the same
// converter twice and in every form it may be given in, answers stay in their buffer, and the
// settings of the process keep what they are told.
#include <mcmem/ConverterRegistry.h>
#include <mcmem/Transcoding.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
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
using Converter = std::unique_ptr<UConverter, CloseConverter>;

constexpr std::size_t kGuard = 16;

// What ICU calls it; empty for none.
std::string NameOf(const Converter& converter) {
  if (converter == nullptr) return "";
  UErrorCode error = U_ZERO_ERROR;
  const char* name = ucnv_getName(converter.get(), &error);
  FUZZ_CHECK(U_SUCCESS(error) && name != nullptr && *name != '\0');
  return name;
}

std::string NameOfNumber(unsigned number) {
  const std::string guard(kGuard, '\x5A');
  std::string memory = guard + std::string(UCNV_MAX_CONVERTER_NAME_LENGTH, '\x5A') + guard;
  const int found = TULKMBCpNameFromNum_C(&memory[kGuard], number);
  FUZZ_CHECK(memory.compare(0, kGuard, guard) == 0);
  FUZZ_CHECK(memory.compare(memory.size() - kGuard, kGuard, guard) == 0);
  const std::string name = fuzz::UpToZero(memory.substr(kGuard));
  FUZZ_CHECK(name.size() < UCNV_MAX_CONVERTER_NAME_LENGTH);
  FUZZ_CHECK(found == (name.empty() ? 0 : 1));
  return name;
}

// ---- Numbers ----

void CheckNumber(unsigned number) {
  const std::string name = NameOfNumber(number);
  FUZZ_CHECK(NameOfNumber(number) == name);
  FUZZ_CHECK(TULKMBCpNameFromNum_C(nullptr, number) == 0);
  const char* preferred = GetPreferredCvtName(number);
  FUZZ_CHECK(GetPreferredCvtName(number) == preferred);
  FUZZ_CHECK(preferred == nullptr || !name.empty());
  if (preferred != nullptr) {
    // Not always the same one: the IANA name for 949 is that of a smaller character set.
    FUZZ_CHECK(Converter(TULKMBConverterNew_C(preferred)) != nullptr);
  }
  if (number == 0 || number > 99999) return;
  // ICU lists more names than it has converters for.
  const Converter by_name(name.empty() ? nullptr : TULKMBConverterNew_C(name.c_str()));
  FUZZ_CHECK(preferred == nullptr || by_name != nullptr);
  const std::string digits = std::to_string(number);
  for (const std::string& same : {digits, "0" + digits, " +" + digits}) {
    FUZZ_CHECK(NameOf(Converter(TULKMBConverterNew_C(same.c_str()))) == NameOf(by_name));
  }
}

// ---- Names ----

// Whether the text is in the default code page what it is in UTF-8.
bool IsPlain(const std::string& name) {
  std::string in_code_page;
  return TULKMBU8ToCodePage(nullptr, in_code_page, name) == 0 && in_code_page == name;
}

// Text goes there and back through a converter of a clean state.
void CheckUse(UConverter* converter, const std::string& text) {
  U16String units;
  const int status = TULKMBCodePageToU16(converter, units, text);
  FUZZ_CHECK(status == 0 || status == 3);
  U16String again;
  FUZZ_CHECK(TULKMBCodePageToU16(converter, again, text) == status && again == units);
}

void CheckName(const std::string& name, const std::string& text) {
  const fuzz::ExactCopy<char> exact = fuzz::TerminatedCopy(name);
  const Converter converter(TULKMBConverterNew_C(exact.Get()));
  FUZZ_CHECK(NameOf(Converter(TULKMBConverterNew_C(exact.Get()))) == NameOf(converter));
  const Converter from_utf8(TULKMBConverterNew_8(exact.Get()));
  if (name.size() < UCNV_MAX_CONVERTER_NAME_LENGTH && IsPlain(name)) {
    FUZZ_CHECK(NameOf(from_utf8) == NameOf(converter));
  }
  std::string in_code_page;
  const int status = TULKMBU8ToCodePage(nullptr, in_code_page, name);
  if (status != 0 || in_code_page.size() >= UCNV_MAX_CONVERTER_NAME_LENGTH) {
    FUZZ_CHECK(from_utf8 == nullptr);
  }
  const Converter active(TULKMBConverterNew_A(exact.Get()));
  FUZZ_CHECK(NameOf(active) == NameOf(qUTF8mode() ? from_utf8 : converter));
  if (converter == nullptr) return;
  CheckUse(converter.get(), text);
  // A name of its own opens it again, unless options stand behind.
  if (name.find(',') != std::string::npos) return;
  FUZZ_CHECK(NameOf(Converter(TULKMBConverterNew_C(NameOf(converter).c_str()))) ==
             NameOf(converter));
}

// ---- Scratch memory ----

void CheckScratch(std::size_t local_bytes, std::size_t count, std::size_t size) {
  const std::unique_ptr<char[]> local(new char[local_bytes]);
  void* memory = TULKMBTempGet(local.get(), local_bytes, count, size);
  const bool fits = size == 0 || count <= local_bytes / size;
  FUZZ_CHECK((memory == local.get()) == fits);
  if (memory != nullptr) std::memset(memory, 0x7E, count * size);
  TULKMBTempFree(local.get(), memory);
  FUZZ_CHECK(TULKMBTempGet(local.get(), local_bytes, SIZE_MAX / 2, 3) == nullptr);
  TULKMBTempFree(local.get(), nullptr);
}

// ---- Settings ----

void CheckDefault(Input& in) {
  UConverter* const converter = fuzz::ChooseConverter(in);
  const unsigned before = TULKMBDefaultConverterID();
  TULKMBSetDefaultConverter(converter);
  FUZZ_CHECK(TULKMBDefaultConverterID() == before + 1);
  FUZZ_CHECK(TULKMBGetDefaultConverter() == converter);
  FUZZ_CHECK(TULKMBDefaultConverterID() == before + 1);
  const Converter same(TULKMBConverterNew_C(nullptr));
  UErrorCode error = U_ZERO_ERROR;
  FUZZ_CHECK(NameOf(same) == ucnv_getName(converter, &error));
}

void CheckMode(bool on) {
  FUZZ_CHECK(SetUTF8mode(on ? 1 : 0) == on && qUTF8mode() == on);
  const char* encoding = SystemEncoding();
  FUZZ_CHECK(encoding != nullptr && SystemEncoding() == encoding);
  EnableLocale();
  TULKMBSetDefaultCollator(nullptr);
}

unsigned NumberOf(Input& in) {
  unsigned number = 0;
  for (unsigned i = in.Below(5); i > 0; --i) number = number << 8 | in.Byte();
  return number;
}

void Step(Input& in) {
  switch (in.Below(6)) {
    case 0:
      return CheckNumber(NumberOf(in));
    case 1: {
      const std::string name = fuzz::UpToZero(in.Take(in.Below(90)));
      return CheckName(name, in.Take(in.Below(40)));
    }
    case 2: {
      const unsigned local = in.Byte();
      const unsigned count = in.Byte();
      return CheckScratch(local, count, in.Below(20));
    }
    case 3:
      return CheckDefault(in);
    case 4:
      return CheckMode(in.Flag());
    default: {
      const std::string digits = std::to_string(NumberOf(in));
      const std::string name = digits + fuzz::UpToZero(in.Take(in.Below(3)));
      return CheckName(name, in.Take(4));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kMostSteps = 24;
  Input in(data, size);
  SetUTF8mode(0);
  TULKMBSetDefaultConverter(fuzz::ConverterNamed("windows-1252"));
  for (int i = 0; i < kMostSteps && !in.IsEmpty(); ++i) Step(in);
  return 0;
}
