// A UTF-8 name as a DOM string, for the length of one call.
#ifndef MCXPRSUTIL_XML_UTF16NAME_H
#define MCXPRSUTIL_XML_UTF16NAME_H

#include <cstddef>
#include <vector>

#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {

// Holds what ToUTF16() gives. A short ASCII name, which nearly every name is, needs no memory from
// the heap.
class Utf16Name {
 public:
  // `utf8` is zero-terminated and must not be null; it is not needed afterwards.
  explicit Utf16Name(const char* utf8) {
    for (std::size_t i = 0; i < kLocalUnits; ++i) {
      const auto byte = static_cast<unsigned char>(utf8[i]);
      if (byte >= 0x80) break;
      local_[i] = byte;
      if (byte == 0) return;
    }
    converted_ = ToUTF16(utf8);
    text_ = converted_.data();
  }
  Utf16Name(const Utf16Name&) = delete;
  Utf16Name& operator=(const Utf16Name&) = delete;

  // Zero-terminated; lives as long as this object.
  const XMLCh* Get() const { return text_; }

 private:
  static constexpr std::size_t kLocalUnits = 64;

  XMLCh local_[kLocalUnits];
  std::vector<XMLCh> converted_;
  const XMLCh* text_ = local_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_UTF16NAME_H
