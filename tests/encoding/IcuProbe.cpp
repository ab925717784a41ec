// The dynamic linker takes a program's own definition of a function before that of a library. So
// the calls that the library under test makes arrive here, and go on to ICU.
#include "encoding/IcuProbe.h"

#include <dlfcn.h>
#include <unicode/ucnv.h>

#include <cstdio>
#include <cstdlib>
#include <set>
#include <utility>

namespace encoding_test {
namespace {

std::set<const UConverter*>& LiveConverters() {
  static auto& live = *new std::set<const UConverter*>;
  return live;
}

struct Redirection {
  std::string name;
  std::string instead;
  int count = 0;
};
Redirection* redirection = nullptr;

const char* Redirected(const char* name) {
  if (name == nullptr || redirection == nullptr || redirection->name != name) return name;
  ++redirection->count;
  return redirection->instead.c_str();
}

void* NextSymbol(const char* name) {
  void* symbol = dlsym(RTLD_NEXT, name);
  if (symbol == nullptr) {
    std::fprintf(stderr, "no symbol %s\n", name);
    std::abort();
  }
  return symbol;
}

// ICU's functions are macros for names that end in its version.
#define MCX_TEXT_OF(x) #x
#define MCX_TEXT(x) MCX_TEXT_OF(x)

}  // namespace

int OpenConverters() { return static_cast<int>(LiveConverters().size()); }

OpensAs::OpensAs(std::string name, std::string instead) {
  redirection = new Redirection{std::move(name), std::move(instead)};
}

OpensAs::~OpensAs() { delete std::exchange(redirection, nullptr); }

int OpensAs::Count() const { return redirection->count; }

}  // namespace encoding_test

extern "C" {

U_CAPI UConverter* U_EXPORT2 ucnv_open(const char* converterName, UErrorCode* err) {
  static const auto next =
      reinterpret_cast<decltype(&ucnv_open)>(encoding_test::NextSymbol(MCX_TEXT(ucnv_open)));
  UConverter* converter = next(encoding_test::Redirected(converterName), err);
  if (converter != nullptr) encoding_test::LiveConverters().insert(converter);
  return converter;
}

U_CAPI void U_EXPORT2 ucnv_close(UConverter* converter) {
  static const auto next =
      reinterpret_cast<decltype(&ucnv_close)>(encoding_test::NextSymbol(MCX_TEXT(ucnv_close)));
  encoding_test::LiveConverters().erase(converter);
  next(converter);
}
}
