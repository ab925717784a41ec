// Decodes one character of code-page text at a time.
#ifndef MCMEM_ENCODING_CODEPAGEDECODE_H
#define MCMEM_ENCODING_CODEPAGEDECODE_H

#include <unicode/ucnv.h>

#include <cstddef>
#include <cstdint>

#include "encoding/WorkingConverter.h"

namespace MCMEM_NAMESPACE {

struct CodePageCharacter {
  enum Outcome {
    kClean,
    kFailed,  // not a character of the code page, or cut off by the end
    kEnd,     // no character is left: nothing at all, or only a change of state
  };
  Outcome outcome;
  std::uint32_t value;   // 0 unless clean
  std::ptrdiff_t bytes;  // consumed; 0 unless clean. One character may stand for two code points:
                         // the second one comes with 0 bytes.
  std::ptrdiff_t looked_at;  // how many bytes the converter took to find out
};

// Where a text of at most `length` bytes ends: at its terminator if that comes first, and in any
// case when `length` is negative. A null text is empty.
const char* EndOfText(const char* s, int length);

// The decoding side of a converter. While it lives, the converter stops at everything that it
// would replace: a replaced character cannot pass for a clean one, whatever callbacks the converter
// has and whatever ICU makes of their marks. The converter gets its callback back at the end.
class CodePageDecoder {
 public:
  // The converter is `given`, borrowed, or a clone of the default converter; it is reset.
  explicit CodePageDecoder(void* given);

  // A clone in any case, to decode another text meanwhile.
  CodePageDecoder(void* given, WorkingConverter::AlwaysClone clone);

  ~CodePageDecoder();

  CodePageDecoder(const CodePageDecoder&) = delete;
  CodePageDecoder& operator=(const CodePageDecoder&) = delete;

  // EndOfText(), but in a code page of wide units a given length spans zero bytes: they may be
  // halves of characters. See IsTerminator().
  const char* EndOf(const char* s, int length) const {
    return has_wide_units_ && length >= 0 && s != nullptr ? s + length : EndOfText(s, length);
  }

  // Whether a decoded character is the terminator of a text in wide units.
  bool IsTerminator(const CodePageCharacter& c) const {
    return has_wide_units_ && c.outcome == CodePageCharacter::kClean && c.value == 0;
  }

  // Decodes the character at `p`, from the state that the one before left behind. After a failure
  // the state is the initial one. Without a converter every byte fails.
  CodePageCharacter Next(const char* p, const char* end);

  // The same from the initial state.
  CodePageCharacter NextAlone(const char* p, const char* end);

 private:
  void Prepare();
  void Reset();

  WorkingConverter converter_;
  UConverterToUCallback callback_ = nullptr;
  const void* context_ = nullptr;
  bool is_ascii_itself_ = false;
  bool has_states_ = false;
  bool has_wide_units_ = false;
  bool looks_ahead_ = false;
};

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CODEPAGEDECODE_H
