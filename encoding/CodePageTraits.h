// What is known about a code page without asking its converter.
#ifndef MCMEM_ENCODING_CODEPAGETRAITS_H
#define MCMEM_ENCODING_CODEPAGETRAITS_H

#include <unicode/ucnv.h>

#include <cstddef>

#include "encoding/SingleByteTable.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Found out by converting, once per converter name and process, and kept. Only code pages without
// shift states have traits; a character is one there wherever it stands.
class CodePageTraits {
 public:
  // Null when the code page has shift states or cannot be judged. The converter is only asked for
  // its type and name, or cloned, so that it may be one that several threads share. What comes back
  // stays valid.
  static const CodePageTraits* Of(const UConverter& converter);

  // How many units at the head of the text are characters below U+0080 that the code page has in
  // the place that they have in ASCII, in both directions, and that stay what they are whatever
  // follows: some code pages swap control characters, or have a currency sign for a backslash.
  std::size_t CountPlainAscii(const char* s, std::size_t n) const;
  std::size_t CountPlainAscii(const unsigned short* s, std::size_t n) const;

  // The converter is one for UTF-8.
  bool IsUtf8() const { return is_utf8_; }

  // The whole code page, if it is one of single bytes; null otherwise.
  const SingleByteTable* Table() const { return table_; }

 private:
  friend class CodePageProbe;
  friend class TraitsTable;

  static constexpr std::size_t kMostExceptions = 8;

  template <class Source>
  std::size_t CountPlain(const typename Source::Unit* s, std::size_t n) const;

  const SingleByteTable* table_ = nullptr;  // kept as long as the process lives
  bool has_plain_ascii_ = false;
  bool is_utf8_ = false;
  unsigned char exception_count_ = 0;
  unsigned char exceptions_[kMostExceptions] = {};  // the ASCII characters that are not in place
};

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CODEPAGETRAITS_H
