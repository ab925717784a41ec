// UTF-8 and UTF-16 in both directions, piece by piece.
#ifndef MCMEM_ENCODING_UTF8AND16_H
#define MCMEM_ENCODING_UTF8AND16_H

#include <cstddef>

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Why a piece ended.
enum class Stop {
  kSourceEnd,   // everything is converted
  kTargetFull,  // the next character does not fit; nothing of it is written
  kMalformed,   // the source pointer is on a sequence that is no character
};

// Both functions move `src` and `dst` past what they converted, whole characters only, write
// nothing else, and accept what Unicode calls well-formed: no surrogate in UTF-8 and none without
// its other half in UTF-16, shortest forms, nothing above U+10FFFF. A zero is a character like any
// other.
Stop DecodeUtf8(const char*& src, const char* srcEnd, unsigned short*& dst, unsigned short* dstEnd);
Stop EncodeUtf8(const unsigned short*& src, const unsigned short* srcEnd, char*& dst, char* dstEnd);

// Bytes that the malformed sequence at `src`, where DecodeUtf8() has stopped, takes up: as many as
// could have begun a character, at least one. Each such piece stands for one U+FFFD.
std::size_t MalformedLength(const char* src, const char* srcEnd);

// Units that the text needs in the other form, if it is well-formed; else a number of that order.
std::size_t CountUtf16Units(const char* utf8, std::size_t bytes);
std::size_t CountUtf8Bytes(const unsigned short* utf16, std::size_t units);

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_UTF8AND16_H
