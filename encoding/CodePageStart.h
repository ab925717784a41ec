// The quick beginning of the engines for code pages: for FillBuffer().
#ifndef MCMEM_ENCODING_CODEPAGESTART_H
#define MCMEM_ENCODING_CODEPAGESTART_H

#include "encoding/CodePageDriver.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Moves plain ASCII straight into the buffer. A text of nothing else, the most frequent kind, needs
// no more than that.
template <class From, class To>
class CodePageStart {
 public:
  // `converter` is the caller's or null for the default one; `finish` is EndDecoding or
  // EndEncoding.
  CodePageStart(void* converter, void (*finish)(void*)) : converter_(converter), finish_(finish) {}

  bool operator()(Text<From>& text, To*& next, To* end) {
    traits_ = TraitsFor(converter_, text);
    if (traits_ == nullptr) return false;
    MovePlainStart(*traits_, text, next, end);
    if (!text.IsEmpty()) return false;
    finish_(converter_);
    return true;
  }

  // As TraitsFor() found them for the whole text.
  const CodePageTraits* Traits() const { return traits_; }

 private:
  void* const converter_;
  void (*const finish_)(void*);
  const CodePageTraits* traits_ = nullptr;
};

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_CODEPAGESTART_H
