// How far a recursion that is not ours may go down the stack.
#ifndef MCXPRSUTIL_XML_STACKGUARD_H
#define MCXPRSUTIL_XML_STACKGUARD_H

#include <cstddef>
#include <cstdint>

namespace MCXPrsUtil {

// Made before a call that recurses over a document, and asked before it or from its callbacks. It
// holds for the thread that made it. On a stack that is not the thread's own (a coroutine's), whose
// end nobody tells, it never warns.
class StackGuard {
 public:
  StackGuard();

  // True once less is left than a callback needs to throw its way out.
  bool IsNearlyUsedUp() const { return Here() < floor_; }

  // What a recursion that starts here may use.
  std::size_t BytesLeft() const { return IsNearlyUsedUp() ? 0 : Here() - floor_; }

 private:
  // The stack grows towards lower addresses.
  [[gnu::always_inline]] static std::uintptr_t Here() {
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  }

  std::uintptr_t floor_ = 0;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_STACKGUARD_H
