/// @file
/// Conversion between the 16-bit strings of the DOM and 8-bit text.
#ifndef MCXPRSUTIL_MCXTRANSCODER_H
#define MCXPRSUTIL_MCXTRANSCODER_H

#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "mcxprsutil/Export.h"

namespace MCXPrsUtil {

/// Converts between UTF-16 and one 8-bit encoding through the transcoding service of the XML
/// library.
///
/// A conversion gives the whole text or nothing: any error (malformed input, a sequence that is cut
/// off, a character that the encoding lacks, memory shortage on the way) yields the empty result.
/// The exception are encodings with shift states, such as UTF-7 and ISO-2022-JP: the XML library
/// never tells their converters that the text has ended, so that TranscodeTo() may lack the last
/// bytes, and TranscodeFrom() may drop a sequence that is cut off at the end. Each conversion
/// starts in the initial state of the encoding, whatever the one before it left behind.
///
/// The XML platform must be initialised (for example by a living MCXMLReadWrite): an object made
/// before that is not valid. Do not call one object from two threads at once.
class MCXPRSUTIL_EXPORT MCXTranscoder {
 public:
  /// Looks the encoding up in the transcoding service.
  ///
  /// @param encoding name of the encoding, zero-terminated, borrowed for the call; null means
  ///        "UTF-8". A name that the service does not know, or that is not all ASCII, leaves the
  ///        object not valid.
  explicit MCXTranscoder(const char* encoding);
  ~MCXTranscoder();

  MCXTranscoder(const MCXTranscoder&) = delete;
  MCXTranscoder& operator=(const MCXTranscoder&) = delete;

  /// Tells whether the encoding is served.
  bool isValid() const;

  /// Converts UTF-16 to the encoding.
  ///
  /// @param text zero-terminated UTF-16, borrowed; null counts as empty.
  /// @return the converted bytes without a terminator; empty when `text` is empty, when the object
  ///         is not valid, and on any conversion error.
  std::string TranscodeTo(const XMLCh* text) const;

  /// Converts text in the encoding to UTF-16.
  ///
  /// @param text zero-terminated bytes, borrowed; must not be null.
  /// @return UTF-16 that always ends with one zero unit, so that `data()` is a DOM string; only
  ///         that zero when `text` is empty, when the object is not valid, and on any conversion
  ///         error.
  std::vector<XMLCh> TranscodeFrom(const char* text) const;

 private:
  std::string encoding_;
  bool valid_;
};

/// Converts a DOM string to UTF-8.
///
/// Gives what `MCXTranscoder(nullptr).TranscodeTo(text)` gives, and makes a transcoder only for
/// text that is not well-formed UTF-16. May run on several threads at once while the XML platform
/// is initialised.
///
/// @param text zero-terminated UTF-16, borrowed; null counts as empty.
/// @return UTF-8 without a terminator; empty on a conversion error.
MCXPRSUTIL_EXPORT std::string ToUTF8(const XMLCh* text);

/// Converts UTF-8 to a DOM string.
///
/// Gives what `MCXTranscoder(nullptr).TranscodeFrom(text)` gives, and makes a transcoder only for
/// text that is not well-formed UTF-8. May run on several threads at once while the XML platform is
/// initialised.
///
/// @param text zero-terminated UTF-8, borrowed; must not be null.
/// @return UTF-16 that always ends with one zero unit; only that zero on a conversion error.
MCXPRSUTIL_EXPORT std::vector<XMLCh> ToUTF16(const char* text);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCXTRANSCODER_H
