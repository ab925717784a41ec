// The converter that one operation works with.
#ifndef MCMEM_ENCODING_WORKINGCONVERTER_H
#define MCMEM_ENCODING_WORKINGCONVERTER_H

#include <unicode/ucnv.h>

namespace MCMEM_NAMESPACE {

// The caller's converter as it is, or else a clone of the default converter, in its initial state
// and closed at the end. The default converter itself is never converted with, so that several
// threads may have operations under way.
class WorkingConverter {
 public:
  // `given` is borrowed; null asks for a clone.
  explicit WorkingConverter(void* given);

  // A second converter of the same kind: a clone in any case, of `given` or of the default
  // converter, in its initial state.
  struct AlwaysClone {};
  WorkingConverter(void* given, AlwaysClone);

  // For callers that reset before they convert: a clone has the state of the default converter.
  struct NotReset {};
  WorkingConverter(void* given, NotReset);

  ~WorkingConverter();

  WorkingConverter(const WorkingConverter&) = delete;
  WorkingConverter& operator=(const WorkingConverter&) = delete;

  // Null when there is no default converter and none can be opened, or when it cannot be cloned.
  UConverter* Get() const { return converter_; }

  // Whether it is closed at the end.
  bool IsClone() const { return is_clone_; }

 private:
  // Enough for every converter of ICU; one that needs more is cloned to the heap by ICU.
  static constexpr int kCloneBytes = 1040;

  alignas(16) char clone_[kCloneBytes];
  UConverter* converter_;
  bool is_clone_;
};

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_WORKINGCONVERTER_H
