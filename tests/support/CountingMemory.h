// A memory manager for the XML platform that counts and that fails when it is told to.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_COUNTINGMEMORY_H
#define MCXPRSUTIL_TESTS_SUPPORT_COUNTINGMEMORY_H

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <unordered_map>
#include <utility>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLUni.hpp>

// Holds the platform up while it lives; no other object may hold it before or after. What the XML
// library leaks while an allocation fails is freed at the end.
class CountingMemory : public XERCES_CPP_NAMESPACE::MemoryManager {
 public:
  CountingMemory() {
    using XERCES_CPP_NAMESPACE::XMLPlatformUtils;
    XMLPlatformUtils::Initialize(XERCES_CPP_NAMESPACE::XMLUni::fgXercescDefaultLocale, nullptr,
                                 nullptr, this);
  }
  ~CountingMemory() override {
    XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
    for (const auto& block : blocks_) std::free(block.first);
  }
  CountingMemory(const CountingMemory&) = delete;
  CountingMemory& operator=(const CountingMemory&) = delete;

  // The allocation after `count` more calls `fail`, which throws; the ones after it succeed.
  void FailAfter(long count, std::function<void()> fail) {
    countdown_ = count;
    fail_ = std::move(fail);
  }
  // Whether the failure that was ordered is still to come; it is then cancelled.
  bool CancelFailure() {
    const bool pending = countdown_ >= 0;
    countdown_ = -1;
    return pending;
  }
  std::size_t LiveBlocks() const { return blocks_.size(); }
  std::size_t LiveBytes() const { return live_bytes_; }

  MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t size) override {
    if (countdown_ >= 0 && countdown_-- == 0) fail_();
    void* block = std::malloc(size);
    blocks_[block] = size;
    live_bytes_ += size;
    return block;
  }
  void deallocate(void* block) override {
    if (block == nullptr) return;
    const auto found = blocks_.find(block);
    live_bytes_ -= found->second;
    blocks_.erase(found);
    std::free(block);
  }

 private:
  std::unordered_map<void*, std::size_t> blocks_;
  std::size_t live_bytes_ = 0;
  long countdown_ = -1;
  std::function<void()> fail_;
};

// Two ways to fail. The XML library's lack of memory is not one of its XMLExceptions.
inline void ThrowXMLException() {
  throw XERCES_CPP_NAMESPACE::RuntimeException(
      __FILE__, __LINE__, XERCES_CPP_NAMESPACE::XMLExcepts::CPtr_PointerIsZero);
}
inline void ThrowOutOfMemory() { throw XERCES_CPP_NAMESPACE::OutOfMemoryException(); }

#endif  // MCXPRSUTIL_TESTS_SUPPORT_COUNTINGMEMORY_H
