#include "mcxprsutil/MCXInputSource.h"

#include <exception>
#include <istream>
#include <utility>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::BinInputStream;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;

class MCXBinInputStream final : public BinInputStream {
 public:
  explicit MCXBinInputStream(std::istream& in) : in_(&in) {}

  XMLFilePos curPos() const override { return static_cast<XMLFilePos>(in_->tellg()); }

  // A short count is the end of the input to the parser: std::istream::read() fills the whole
  // buffer as long as the stream has data, however small the pieces it comes in.
  //
  // An exception of the first call waits for the second one: the parser makes the first while it
  // builds its reader, which loses memory when that throws. A second call comes even after an empty
  // first one, unless the text of the first is malformed already.
  XMLSize_t readBytes(XMLByte* toFill, XMLSize_t maxToRead) override {
    if (error_) std::rethrow_exception(std::exchange(error_, nullptr));
    try {
      in_->read(reinterpret_cast<char*>(toFill), static_cast<std::streamsize>(maxToRead));
    } catch (...) {
      if (!is_first_) throw;
      error_ = std::current_exception();
    }
    is_first_ = false;
    return static_cast<XMLSize_t>(in_->gcount());
  }

  const XMLCh* getContentType() const override { return nullptr; }

 private:
  std::istream* in_;
  bool is_first_ = true;
  std::exception_ptr error_;
};

}  // namespace

MCXInputSource::MCXInputSource(std::istream& in)
    : InputSource("istream", XMLPlatformUtils::fgMemoryManager), in_(in) {}

MCXInputSource::~MCXInputSource() = default;

BinInputStream* MCXInputSource::makeStream() const {
  return new (getMemoryManager()) MCXBinInputStream(in_);
}

}  // namespace MCXPrsUtil
