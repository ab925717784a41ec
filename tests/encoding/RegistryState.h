// What the tests of converters share: the process-wide settings put back, and converters closed.
#ifndef MCXPRSUTIL_TESTS_ENCODING_REGISTRYSTATE_H
#define MCXPRSUTIL_TESTS_ENCODING_REGISTRYSTATE_H

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <memory>
#include <string>

#include "mcmem/ConverterRegistry.h"

namespace encoding_test {

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using OwnedConverter = std::unique_ptr<UConverter, CloseConverter>;

inline OwnedConverter NewConverter(const char* name) {
  OwnedConverter converter(MCMEM_NAMESPACE::TULKMBConverterNew_C(name));
  EXPECT_NE(converter, nullptr) << "no converter " << name;
  return converter;
}

// ICU's own name; empty for no converter.
inline std::string NameOf(const UConverter* converter) {
  if (converter == nullptr) return "";
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_getName(converter, &error);
}

inline std::string IcuNameOf(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  const OwnedConverter converter(ucnv_open(name, &error));
  return NameOf(converter.get());
}

// While it lives, `name` is the default code page. Puts the previous default converter back.
class DefaultCodePage {
 public:
  explicit DefaultCodePage(const char* name) : converter_(NewConverter(name)) {
    MCMEM_NAMESPACE::TULKMBSetDefaultConverter(converter_.get());
  }
  ~DefaultCodePage() { MCMEM_NAMESPACE::TULKMBSetDefaultConverter(previous_); }
  DefaultCodePage(const DefaultCodePage&) = delete;
  DefaultCodePage& operator=(const DefaultCodePage&) = delete;

  UConverter* Get() const { return converter_.get(); }

 private:
  UConverter* previous_ = MCMEM_NAMESPACE::TULKMBGetDefaultConverter();
  OwnedConverter converter_;
};

class Utf8Mode {
 public:
  explicit Utf8Mode(int on) { MCMEM_NAMESPACE::SetUTF8mode(on); }
  ~Utf8Mode() { MCMEM_NAMESPACE::SetUTF8mode(previous_ ? 1 : 0); }
  Utf8Mode(const Utf8Mode&) = delete;
  Utf8Mode& operator=(const Utf8Mode&) = delete;

 private:
  bool previous_ = MCMEM_NAMESPACE::qUTF8mode();
};

}  // namespace encoding_test

#endif  // MCXPRSUTIL_TESTS_ENCODING_REGISTRYSTATE_H
