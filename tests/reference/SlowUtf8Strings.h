// The UTF-8 string functions once more, as plainly as they can be said: a text is a string object
// without its terminator, characters are found by trying every length, nothing is shared with the
// library.
#ifndef TESTS_REFERENCE_SLOWUTF8STRINGS_H_
#define TESTS_REFERENCE_SLOWUTF8STRINGS_H_

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace reference {

struct SlowCharacter {
  unsigned int value;
  std::size_t bytes;
  bool isLegal;
};

// The character at byte `at`. An illegal one is a single byte and its value.
SlowCharacter DecodeAt(const std::string& s, std::size_t at, bool surrogatesPass);

// What the lead byte of a non-empty text announces, as far as the text goes.
int AnnouncedLength(const std::string& s);

// The length of the well-formed character at the start of the first `n` bytes; 0 when there are
// none, -1 when it is not well-formed.
int CheckedLength(const std::string& s, std::size_t n);

// The start of the character that ends before byte `i`, when it may stand in a text of characters;
// else one byte back.
int PreviousIndex(const std::string& s, int i);

// The length of the longest prefix that ends with such a character.
int LengthWithoutBadTail(const std::string& s);

// The first or last character `wanted`, by lead bytes alone, or -1.
int Search(const std::string& s, unsigned int wanted, bool last);

// The offset of the first character whose membership in `set` is `stopsInside`.
int Span(const std::string& s, const std::vector<unsigned int>& set, bool stopsInside);

struct Order {
  int order;
  int status;
};

using Mapping = std::function<unsigned int(unsigned int)>;

// Compares texts in which a zero byte is the end.
Order Compare(const std::string& a, const std::string& b, const Mapping& map);

}  // namespace reference

#endif  // TESTS_REFERENCE_SLOWUTF8STRINGS_H_
