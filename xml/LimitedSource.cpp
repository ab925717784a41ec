#include "xml/LimitedSource.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <xercesc/util/BinInputStream.hpp>

#include "xml/ParseRefusal.h"

namespace MCXPrsUtil {

using XERCES_CPP_NAMESPACE::BinInputStream;

namespace {

class LimitedStream final : public BinInputStream {
 public:
  LimitedStream(std::unique_ptr<BinInputStream> stream, ReadProgress& progress)
      : stream_(std::move(stream)), progress_(progress) {}

  XMLFilePos curPos() const override { return stream_->curPos(); }

  XMLSize_t readBytes(XMLByte* toFill, XMLSize_t maxToRead) override {
    progress_.CheckBeforeRead();
    const auto wanted = static_cast<XMLSize_t>(progress_.BytesToAskFor(maxToRead));
    return static_cast<XMLSize_t>(progress_.Take(stream_->readBytes(toFill, wanted)));
  }

  const XMLCh* getContentType() const override { return stream_->getContentType(); }

  const XMLCh* getEncoding() const override { return stream_->getEncoding(); }

 private:
  std::unique_ptr<BinInputStream> stream_;
  ReadProgress& progress_;
};

}  // namespace

void ReadProgress::CheckBeforeRead() const {
  CheckSize();
  const std::uint64_t n_since = n_read_ - n_at_event_;  // with what may be one piece of text
  if (n_since > kTextPieceBytes && n_since - kTextPieceBytes > max_markup_bytes_) {
    throw ParseRefusal(
        LimitText("a tag, a comment or the like is longer", "max_markup_bytes", max_markup_bytes_));
  }
}

std::uint64_t ReadProgress::BytesToAskFor(std::uint64_t wanted) const {
  return wanted <= Remaining() ? wanted : Remaining() + 1;
}

std::uint64_t ReadProgress::Take(std::uint64_t n_bytes) {
  if (n_bytes > Remaining()) is_too_large_ = true;
  const std::uint64_t taken = std::min(n_bytes, Remaining());
  n_read_ += taken;
  return taken;
}

void ReadProgress::CheckSize() const {
  if (is_too_large_) {
    throw ParseRefusal(
        LimitText("the document is larger", "max_document_bytes", max_document_bytes_));
  }
}

LimitedSource::LimitedSource(const InputSource& source, ReadProgress& progress)
    : InputSource(source.getSystemId(), source.getPublicId(), source.getMemoryManager()),
      source_(source),
      progress_(progress) {
  InputSource::setEncoding(source.getEncoding());
  InputSource::setIssueFatalErrorIfNotFound(source.getIssueFatalErrorIfNotFound());
}

BinInputStream* LimitedSource::makeStream() const {
  std::unique_ptr<BinInputStream> stream(source_.makeStream());
  if (stream == nullptr) return nullptr;
  return new (getMemoryManager()) LimitedStream(std::move(stream), progress_);
}

std::string LimitText(const std::string& what, const char* member, std::uint64_t limit) {
  return what + " than the parse policy allows (" + member + " = " + std::to_string(limit) + ')';
}

}  // namespace MCXPrsUtil
