// The conversions between UTF-8, UTF-16 and UTF-32 once more, as plainly as they can be said: units
// are numbers in vectors, one character at a time, nothing is shared with the library.
#ifndef TESTS_REFERENCE_SLOWUNICODEFORMS_H_
#define TESTS_REFERENCE_SLOWUNICODEFORMS_H_

#include <cstddef>
#include <vector>

namespace reference {

using Units = std::vector<unsigned int>;  // bytes, 16-bit or 32-bit units, by the context

enum Code { kOk, kSourceExhausted, kTargetExhausted, kSourceIllegal };

struct Converted {
  Code code = kOk;
  std::size_t consumed = 0;  // units of the source before the source pointer
  Units written{};           // a terminator included
  std::size_t length = 0;    // units of the target before the target pointer
};

// The functions between UTF-8 and UTF-16 end behind U+0000, whose zero is written and not counted.
// `out` is overwritten; it is a parameter so that its memory can be used again.
void Utf8ToUtf16(const Units& source, std::size_t capacity, bool strict, Converted& out);
void Utf16ToUtf8(const Units& source, std::size_t capacity, bool strict, Converted& out);
void Utf8ToUtf32(const Units& source, std::size_t capacity, bool strict, Converted& out);
void Utf32ToUtf8(const Units& source, std::size_t capacity, bool strict, Converted& out);
void Utf16ToUtf32(const Units& source, std::size_t capacity, bool strict, Converted& out);
void Utf32ToUtf16(const Units& source, std::size_t capacity, bool strict, Converted& out);

// How many bytes a lead byte asks for, itself included.
std::size_t PromisedLength(unsigned int lead);

// Whether the first PromisedLength(s[0]) bytes at `s` are a well-formed sequence; with
// `surrogatesPass` an encoded surrogate is one too.
bool IsWellFormed(const unsigned int* s, bool surrogatesPass);

// A code point in UTF-8 and UTF-16; a surrogate as three bytes and as one unit.
Units Utf8Of(unsigned int value);
Units Utf16Of(unsigned int value);

}  // namespace reference

#endif  // TESTS_REFERENCE_SLOWUNICODEFORMS_H_
