/// @file
/// Memory to write to that tells who writes beside it, without a sanitizer as well.
#ifndef MCXPRSUTIL_FUZZ_GUARDEDTARGET_H
#define MCXPRSUTIL_FUZZ_GUARDEDTARGET_H

#include <cstddef>
#include <string>

#include "Check.h"

namespace fuzz {

/// `size` bytes between two guards; all hold `#`.
class GuardedTarget {
 public:
  explicit GuardedTarget(std::size_t size) : size_(size), memory_(kGuard + size + kGuard, kOld) {}

  char* Get() { return &memory_[kGuard]; }

  /// What the bytes are now. Nothing may have been written beside them.
  std::string Content() const {
    const std::string untouched(kGuard, kOld);
    FUZZ_CHECK(memory_.compare(0, kGuard, untouched) == 0);
    FUZZ_CHECK(memory_.compare(kGuard + size_, kGuard, untouched) == 0);
    return memory_.substr(kGuard, size_);
  }

  static constexpr char kOld = '#';

 private:
  static constexpr std::size_t kGuard = 16;

  std::size_t size_;
  std::string memory_;
};

}  // namespace fuzz

#endif  // MCXPRSUTIL_FUZZ_GUARDEDTARGET_H
