#include "xml/StackGuard.h"

#include <pthread.h>

#include <algorithm>
#include <cstddef>

namespace MCXPrsUtil {
namespace {

// Room for the calls below a callback, for unwinding, and for a signal handler.
constexpr std::size_t kReserveBytes = std::size_t{128} * 1024;

struct Extent {
  std::uintptr_t lowest = 0;
  std::size_t bytes = 0;
};

Extent StackOfThisThread() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return {};
  void* lowest = nullptr;
  Extent stack;
  if (pthread_attr_getstack(&attributes, &lowest, &stack.bytes) == 0) {
    stack.lowest = reinterpret_cast<std::uintptr_t>(lowest);
  }
  pthread_attr_destroy(&attributes);
  return stack;
}

}  // namespace

// Asking for the main thread's stack reads a file of /proc, so each thread asks once.
StackGuard::StackGuard() {
  static thread_local const Extent stack = StackOfThisThread();
  const std::uintptr_t here = Here();
  if (here < stack.lowest || here - stack.lowest >= stack.bytes) return;
  floor_ = stack.lowest + std::min(kReserveBytes, stack.bytes / 4);
}

}  // namespace MCXPrsUtil
