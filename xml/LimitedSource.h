// An input source that gives no more of a document than a parse policy allows.
#ifndef MCXPRSUTIL_XML_LIMITEDSOURCE_H
#define MCXPRSUTIL_XML_LIMITEDSOURCE_H

#include <cstdint>
#include <string>
#include <xercesc/sax/InputSource.hpp>

#include "mcxprsutil/MCXParsePolicy.h"

namespace MCXPrsUtil {

// The parser hands out text in pieces of at most so many UTF-16 code units, none of which takes
// more than four bytes in any encoding.
constexpr std::uint64_t kTextPieceUnits = std::uint64_t{32} * 1024;
constexpr std::uint64_t kTextPieceBytes = 4 * kTextPieceUnits;

// How far a document was read. Shared by the stream that the parser reads and by the parser, which
// notes when it got somewhere; it outlives both.
class ReadProgress {
 public:
  explicit ReadProgress(const MCXParsePolicy& policy)
      : max_document_bytes_(policy.max_document_bytes),
        max_markup_bytes_(policy.max_markup_bytes) {}

  // The parser has come to the end of a piece of markup or of text.
  void NoteEvent() { n_at_event_ = n_read_; }

  // Before a read: throws a ParseRefusal if what came before was too much.
  void CheckBeforeRead() const;

  // How many of `wanted` bytes to ask for: one more than allowed shows that there is more.
  std::uint64_t BytesToAskFor(std::uint64_t wanted) const;

  // After a read: the number of bytes that may be used.
  std::uint64_t Take(std::uint64_t n_bytes);

  // Throws a ParseRefusal if there was more than allowed.
  void CheckSize() const;

 private:
  std::uint64_t Remaining() const { return max_document_bytes_ - n_read_; }

  const std::uint64_t max_document_bytes_;
  const std::uint64_t max_markup_bytes_;
  std::uint64_t n_read_ = 0;
  std::uint64_t n_at_event_ = 0;
  bool is_too_large_ = false;
};

// Gives what another source gives, within limits. Both arguments are borrowed.
//
// A document that is too large is refused by the read behind the one that showed it, or by
// ReadProgress::CheckSize() if there is none: the XML library loses memory when the first read
// throws.
class LimitedSource final : public XERCES_CPP_NAMESPACE::InputSource {
 public:
  LimitedSource(const XERCES_CPP_NAMESPACE::InputSource& source, ReadProgress& progress);
  LimitedSource(const LimitedSource&) = delete;
  LimitedSource& operator=(const LimitedSource&) = delete;

  XERCES_CPP_NAMESPACE::BinInputStream* makeStream() const override;

 private:
  const XERCES_CPP_NAMESPACE::InputSource& source_;
  ReadProgress& progress_;
};

// What a limit says to a user: `what` is beyond `limit`, which the policy's `member` sets.
std::string LimitText(const std::string& what, const char* member, std::uint64_t limit);

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_LIMITEDSOURCE_H
