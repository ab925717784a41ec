// Memory that ends, or begins, at a page that may not be touched.
#ifndef TESTS_ENCODING_GUARDEDMEMORY_H_
#define TESTS_ENCODING_GUARDEDMEMORY_H_

#include <sys/mman.h>

#include <cstddef>
#include <new>

namespace encoding_test {

// `size` bytes between two forbidden pages; `size` is rounded up to whole pages.
class GuardedMemory {
 public:
  explicit GuardedMemory(std::size_t size) : size_((size + kPage - 1) / kPage * kPage) {
    void* p = mmap(nullptr, size_ + 2 * kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) throw std::bad_alloc();
    base_ = static_cast<unsigned char*>(p);
    if (mprotect(Begin(), size_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
  }
  ~GuardedMemory() { munmap(base_, size_ + 2 * kPage); }
  GuardedMemory(const GuardedMemory&) = delete;
  GuardedMemory& operator=(const GuardedMemory&) = delete;

  unsigned char* Begin() const { return base_ + kPage; }
  unsigned char* End() const { return Begin() + size_; }

 private:
  static constexpr std::size_t kPage = 4096;
  std::size_t size_;
  unsigned char* base_;
};

}  // namespace encoding_test

#endif  // TESTS_ENCODING_GUARDEDMEMORY_H_
