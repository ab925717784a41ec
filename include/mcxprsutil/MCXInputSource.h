/// @file
/// An input source that lets the XML parser read from a standard stream.
#ifndef MCXPRSUTIL_MCXINPUTSOURCE_H
#define MCXPRSUTIL_MCXINPUTSOURCE_H

#include <iosfwd>
#include <xercesc/sax/InputSource.hpp>

#include "mcxprsutil/Export.h"

namespace MCXPrsUtil {

/// Feeds a parser from a `std::istream`.
///
/// The source borrows the stream: neither the source nor the streams that it makes close or free
/// it, and it must outlive every parse that reads from it. A parse reads the stream from its
/// current position to its end, so one stream serves one parse. The system identifier is
/// "istream"; relative system identifiers inside the document resolve against the working
/// directory.
///
/// A stream that ends early, or goes bad, is the end of the document to the parser; of what was
/// being fetched when it went bad, up to 48 KiB, nothing is seen. A stream that is set to throw
/// (`std::ios::exceptions`) throws through the parser to the caller of the parse, unless what was
/// read before is malformed already: then the parse ends with that, and the exception may stay
/// unthrown.
///
/// The XML platform must be initialised (for example by a living MCXMLReadWrite) before a source is
/// made and as long as it lives. Do not use one source on two threads at once.
class MCXPRSUTIL_EXPORT MCXInputSource : public XERCES_CPP_NAMESPACE::InputSource {
 public:
  /// Makes a source that reads from `in`, which is borrowed.
  explicit MCXInputSource(std::istream& in);
  ~MCXInputSource() override;

  MCXInputSource(const MCXInputSource&) = delete;
  MCXInputSource& operator=(const MCXInputSource&) = delete;

  /// Makes the byte stream that the parser reads from.
  ///
  /// @return a new stream bound to the same `std::istream`; the caller (normally the parser)
  ///         deletes it. Never null.
  XERCES_CPP_NAMESPACE::BinInputStream* makeStream() const override;

 private:
  std::istream& in_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCXINPUTSOURCE_H
