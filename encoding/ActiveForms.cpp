// The functions that follow the UTF-8 mode.
#include "mcmem/ConverterRegistry.h"
#include "mcmem/MultiByteString.h"

namespace MCMEM_NAMESPACE {

const char* TULKMBstrinc_A(const char* s) {
  return qUTF8mode() ? TULKMBstrinc_8(s) : TULKMBstrinc_C(s);
}

const char* TULKMBAnsiPrev_A(const char* start, const char* current) {
  return qUTF8mode() ? TULKMBAnsiPrev_8(start, current) : TULKMBAnsiPrev_C(start, current);
}

const char* TULKMBstrchr_A(const char* s, unsigned int ch) {
  return qUTF8mode() ? TULKMBstrchr_8(s, ch) : TULKMBstrchr_C(s, ch);
}

const char* TULKMBstrrchr_A(const char* s, unsigned int ch) {
  return qUTF8mode() ? TULKMBstrrchr_8(s, ch) : TULKMBstrrchr_C(s, ch);
}

char* TULKMBstrncpy_A(char* dst, const char* src, std::size_t n) {
  return qUTF8mode() ? TULKMBstrncpy_8(dst, src, n) : TULKMBstrncpy_C(dst, src, n);
}

int TULKMBstrcspn_A(const char* s, const char* set) {
  return qUTF8mode() ? TULKMBstrcspn_8(s, set) : TULKMBstrcspn_C(s, set);
}

int TULKMBstrnicmp_A(const char* a, const char* b, int n) {
  return qUTF8mode() ? TULKMBstrnicmp_8(a, b, n) : TULKMBstrnicmp_C(a, b, n);
}

bool TULKMBqstricmp_A(const char* a, int aLength, const char* b, int bLength, int* status) {
  return qUTF8mode() ? TULKMBqstricmp_8(a, aLength, b, bLength, status)
                     : TULKMBqstricmp_C(a, aLength, b, bLength, status);
}

}  // namespace MCMEM_NAMESPACE
