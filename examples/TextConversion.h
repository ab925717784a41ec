// Conversion of texts of any length from one encoding to another, a block at a time.
#ifndef MCX_EXAMPLES_TEXTCONVERSION_H
#define MCX_EXAMPLES_TEXTCONVERSION_H

#include <unicode/ucnv.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Encodings.h"

namespace examples {

// Places of a text where something else was put for what could not be converted.
struct LossyPlaces {
  std::uint64_t count = 0;
  std::uint64_t firstOffset = 0;  // in bytes of the text
  std::string first;              // what was there, in a clause
};

// Takes texts in pieces and turns them into one output. The two converters hold what a piece leaves
// unfinished, be it a character or a shift sequence: pieces may end anywhere.
//
// The way goes through UTF-16 in two steps, not through one of ICU's functions that do both: each
// of several texts can then be ended while the output goes on, and a lossy place can be found
// again.
class TextConversion {
 public:
  // Borrows two different converters for its own life; their callbacks decide what is put in the
  // place of what cannot be converted. `bufferSize` is that of its buffers, in units of either
  // side, and at least 1.
  TextConversion(UConverter& from, UConverter& to, std::size_t bufferSize);
  ~TextConversion();

  TextConversion(const TextConversion&) = delete;
  TextConversion& operator=(const TextConversion&) = delete;

  // Leaves out a byte order mark (U+FEFF) at the start of each text from now on.
  void DropByteOrderMarks() { drops_marks_ = true; }

  // Begins a text; its bytes and lossy places are counted anew.
  void BeginText();

  // Appends what the next bytes of the text give to `out`. Throws std::runtime_error when ICU
  // fails.
  void Convert(std::string_view bytes, std::string& out);

  // Ends the text: bytes of an unfinished character are a lossy place. Throws as Convert().
  void EndText(std::string& out);

  // Ends the output, for example by the way back from a shift. Throws as Convert().
  void EndOutput(std::string& out);

  // Those of the text since BeginText().
  const LossyPlaces& Lossy() const { return lossy_; }

 private:
  static void U_CALLCONV OnToUnicode(const void* context, UConverterToUnicodeArgs* args,
                                     const char* bytes, int32_t length,
                                     UConverterCallbackReason reason, UErrorCode* error);
  static void U_CALLCONV OnFromUnicode(const void* context, UConverterFromUnicodeArgs* args,
                                       const UChar* units, int32_t length, UChar32 codePoint,
                                       UConverterCallbackReason reason, UErrorCode* error);

  ConverterPtr CloneOfSource() const;  // null when it cannot be cloned
  void Decode(std::string_view bytes, bool isEnd, std::string& out);
  bool DecodeStep(const char*& source, const char* end, bool isEnd, std::string& out);
  const UChar* SkipMark(const UChar* units, const UChar* end);
  void Encode(const UChar* units, const UChar* end, bool isEnd, std::string& out);
  std::uint64_t OffsetOfUnit(UConverter& decoder, std::string_view bytes) const;

  // Counts a lossy place; true when it is the first one so far, and is to be described.
  bool NoteLoss(const UChar* where, int32_t length);

  UConverter& from_;
  UConverter& to_;
  UConverterToUCallback to_unicode_ = nullptr;
  UConverterFromUCallback from_unicode_ = nullptr;
  const void* to_unicode_context_ = nullptr;
  const void* from_unicode_context_ = nullptr;

  std::vector<UChar> units_;
  std::vector<char> bytes_;
  std::uint64_t piece_offset_ = 0;     // of the piece that is being converted, in bytes of the text
  std::int64_t units_before_ = 0;      // of this piece, decoded before what units_ holds
  std::int64_t first_lossy_unit_ = 0;  // of this piece; no later place is described

  bool drops_marks_ = false;
  bool is_at_start_ = true;
  LossyPlaces lossy_;
};

}  // namespace examples

#endif  // MCX_EXAMPLES_TEXTCONVERSION_H
