// Allocations that fail when they are told to, wherever they come from: operator new, which a
// program with FailingAllocations.cpp replaces for all its libraries; the XML library's memory,
// while a FailingXmlMemory lives; and ICU's malloc. For programs of one thread.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_FAILINGALLOCATIONS_H
#define MCXPRSUTIL_TESTS_SUPPORT_FAILINGALLOCATIONS_H

#include <cstddef>
#include <ostream>
#include <xercesc/framework/MemoryManager.hpp>

namespace fault_test {

// Where an allocation comes from.
enum Source { kNew, kXml, kIcu };
inline constexpr unsigned kEverySource = 1u << kNew | 1u << kXml | 1u << kIcu;
inline constexpr unsigned kLibraries = 1u << kXml | 1u << kIcu;

// Blocks that are allocated and not freed yet, by their source.
struct Blocks {
  long of_new = 0;
  long of_xml = 0;
  long of_icu = 0;
};
bool operator==(const Blocks& a, const Blocks& b);
Blocks operator-(const Blocks& a, const Blocks& b);
std::ostream& operator<<(std::ostream& out, const Blocks& blocks);

Blocks LiveBlocks();

// While it lives, the allocation after `count` more fails, and then either none or all that follow.
// One at a time.
class FailingAllocation {
 public:
  enum Duration { kOnce, kForGood };
  // Only allocations from `counted` count and fail; by default all do.
  FailingAllocation(long count, Duration duration, unsigned counted = kEverySource);
  ~FailingAllocation() { Stop(); }
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // From now on allocations succeed.
  void Stop();

  // The first allocation that failed, if any.
  bool HasFailed() const;
  Source FailedSource() const;

  // How many allocations of the XML library and ICU there were before the first that failed.
  long LibrariesBefore() const;
};

// Holds the XML platform up while it lives, with a memory of its own; no other object may hold it
// before or after. What the XML library has lost at the end is freed.
class FailingXmlMemory : public XERCES_CPP_NAMESPACE::MemoryManager {
 public:
  FailingXmlMemory();
  ~FailingXmlMemory() override;
  FailingXmlMemory(const FailingXmlMemory&) = delete;
  FailingXmlMemory& operator=(const FailingXmlMemory&) = delete;

  MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t size) override;
  void deallocate(void* memory) override;
};

}  // namespace fault_test

#endif  // MCXPRSUTIL_TESTS_SUPPORT_FAILINGALLOCATIONS_H
