// The conversions between caller's buffers, by name of what goes in and comes out.

#include <algorithm>
#include <cstring>

#include "encoding/OutputRules.h"
#include "mcmem/ConverterRegistry.h"
#include "mcmem/Transcoding.h"

namespace MCMEM_NAMESPACE {

namespace {

constexpr int kToUnicode = 1;
constexpr int kFromUnicode = 0;

void* const kDefaultConverter = nullptr;

// Between two texts of the same encoding: no look at characters, no blanks, and a terminator behind
// the last byte of the capacity when the source fills it.
int Copy(char* dst, int capacity, const char* src, int srcLength) {
  const std::size_t length = srcLength < 0 ? std::strlen(src) : static_cast<std::size_t>(srcLength);
  const std::size_t count = std::min(length, static_cast<std::size_t>(capacity));
  if (count != 0) std::memmove(dst, src, count);
  if (srcLength < 0) dst[count] = '\0';
  return static_cast<int>(count);
}

int CopyPlainly(char* dst, int capacity, const char* src, int srcLength, int* status) {
  // A length to be asked for, or arguments to be refused: the engines' rules hold.
  if (capacity <= 0 || dst == nullptr || (src == nullptr && srcLength != 0)) {
    using namespace transcoding;
    return FillBuffer<char, char>(dst, capacity, src, srcLength, status, StartNothing(),
                                  [](Text<char> text, BufferTarget<char>& target) {
                                    target.AddBeyond(text.Size());
                                    return Verdict::kExact;
                                  });
  }
  if (status != nullptr) *status = transcoding::kStatusExact;
  return Copy(dst, capacity, src, srcLength);
}

}  // namespace

int TULKMB8to16(unsigned short* dst, int dstCapacity, const char* src, int srcLength, int* status) {
  return TULKMB8and16(kToUnicode, dst, dstCapacity, src, srcLength, status);
}

int TULKMB16to8(char* dst, int dstCapacity, const unsigned short* src, int srcLength, int* status) {
  return TULKMB8and16(kFromUnicode, dst, dstCapacity, src, srcLength, status);
}

int TULKMBCodePageto16(void* converter, unsigned short* dst, int dstCapacity, const char* src,
                       int srcLength, int* status) {
  return TULKMBCodePageAnd16(kToUnicode, converter, dst, dstCapacity, src, srcLength, status);
}

int TULKMB16toCodePage(void* converter, char* dst, int dstCapacity, const unsigned short* src,
                       int srcLength, int* status) {
  return TULKMBCodePageAnd16(kFromUnicode, converter, dst, dstCapacity, src, srcLength, status);
}

int TULKMBCodePageto8(void* converter, char* dst, int dstCapacity, const char* src, int srcLength,
                      int* status) {
  return TULKMBCodePageAnd8(kToUnicode, converter, dst, dstCapacity, src, srcLength, status);
}

int TULKMB8toCodePage(void* converter, char* dst, int dstCapacity, const char* src, int srcLength,
                      int* status) {
  return TULKMBCodePageAnd8(kFromUnicode, converter, dst, dstCapacity, src, srcLength, status);
}

int TULKMBGenericto16(unsigned short* dst, int dstCapacity, const char* src, int srcLength,
                      int* status) {
  return qUTF8mode()
             ? TULKMB8to16(dst, dstCapacity, src, srcLength, status)
             : TULKMBCodePageto16(kDefaultConverter, dst, dstCapacity, src, srcLength, status);
}

int TULKMB16toGeneric(char* dst, int dstCapacity, const unsigned short* src, int srcLength,
                      int* status) {
  return qUTF8mode()
             ? TULKMB16to8(dst, dstCapacity, src, srcLength, status)
             : TULKMB16toCodePage(kDefaultConverter, dst, dstCapacity, src, srcLength, status);
}

int TULKMBGenericto8(char* dst, int dstCapacity, const char* src, int srcLength, int* status) {
  return qUTF8mode()
             ? CopyPlainly(dst, dstCapacity, src, srcLength, status)
             : TULKMBCodePageto8(kDefaultConverter, dst, dstCapacity, src, srcLength, status);
}

int TULKMB8toGeneric(char* dst, int dstCapacity, const char* src, int srcLength, int* status) {
  return qUTF8mode()
             ? CopyPlainly(dst, dstCapacity, src, srcLength, status)
             : TULKMB8toCodePage(kDefaultConverter, dst, dstCapacity, src, srcLength, status);
}

int TULKMBCodePagetoGeneric(void* converter, char* dst, int dstCapacity, const char* src,
                            int srcLength, int* status) {
  return qUTF8mode() ? TULKMBCodePageto8(converter, dst, dstCapacity, src, srcLength, status)
                     : CopyPlainly(dst, dstCapacity, src, srcLength, status);
}

int TULKMBGenerictoCodePage(void* converter, char* dst, int dstCapacity, const char* src,
                            int srcLength, int* status) {
  return qUTF8mode() ? TULKMB8toCodePage(converter, dst, dstCapacity, src, srcLength, status)
                     : CopyPlainly(dst, dstCapacity, src, srcLength, status);
}

}  // namespace MCMEM_NAMESPACE
