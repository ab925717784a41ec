#include "support/FailingAllocations.h"

#include <unicode/uclean.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace fault_test {
namespace {

using XERCES_CPP_NAMESPACE::XMLPlatformUtils;

constexpr long kNever = -1;

// Constant-initialised: operator new runs before any constructor of this program.
std::atomic<long> live_blocks[3];
std::atomic<long> countdown{kNever};
std::atomic<bool> fails_for_good{false};
std::atomic<bool> is_out{false};
std::atomic<bool> has_failed{false};
std::atomic<Source> failed_source{kNew};
std::atomic<unsigned> counted_sources{0};
std::atomic<long> libraries_before{0};

bool Fails(Source source) {
  if (countdown.load(std::memory_order_relaxed) == kNever && !is_out) return false;
  if ((counted_sources & 1u << source) == 0) return false;
  if (is_out) return true;
  if (countdown.fetch_sub(1) != 0) {
    if (source != kNew) ++libraries_before;
    return false;
  }
  has_failed = true;
  failed_source = source;
  is_out = fails_for_good.load();
  return true;
}

void* Allocate(Source source, std::size_t size) {
  void* const block = Fails(source) ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block != nullptr) ++live_blocks[source];
  return block;
}

void Free(Source source, void* block) {
  if (block == nullptr) return;
  --live_blocks[source];
  std::free(block);
}

void* AllocateOrThrow(std::size_t size) {
  void* const block = Allocate(kNew, size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

// The blocks of the libraries, in a ring: so a tool that looks for leaks finds those that a library
// loses, which are for the tests to judge, and those of the XML library can be freed.
struct Link {
  Link* before;
  Link* behind;
  Source source;
};
constexpr std::size_t kHeaderBytes = 2 * alignof(std::max_align_t);
static_assert(sizeof(Link) <= kHeaderBytes);
Link ring = {&ring, &ring, kNew};

void* LinkUp(void* block, Source source) {
  if (block == nullptr) return nullptr;
  auto* const link = new (block) Link{&ring, ring.behind, source};
  link->behind->before = link;
  ring.behind = link;
  return static_cast<char*>(block) + kHeaderBytes;
}

Link* LinkOf(void* memory) {
  return reinterpret_cast<Link*>(static_cast<char*>(memory) - kHeaderBytes);
}

void* Unlink(void* memory) {
  Link* const link = LinkOf(memory);
  link->before->behind = link->behind;
  link->behind->before = link->before;
  return link;
}

void* AllocateLinked(Source source, std::size_t size) {
  return LinkUp(Allocate(source, kHeaderBytes + size), source);
}

void FreeLinked(Source source, void* memory) {
  if (memory != nullptr) Free(source, Unlink(memory));
}

void* U_CALLCONV IcuAllocate(const void*, std::size_t size) { return AllocateLinked(kIcu, size); }

void U_CALLCONV IcuFree(const void*, void* memory) { FreeLinked(kIcu, memory); }

void* U_CALLCONV IcuReallocate(const void*, void* memory, std::size_t size) {
  if (memory == nullptr) return AllocateLinked(kIcu, size);
  if (Fails(kIcu)) return nullptr;
  void* const block = Unlink(memory);
  void* const moved = std::realloc(block, kHeaderBytes + size);
  void* const result = LinkUp(moved == nullptr ? block : moved, kIcu);
  return moved == nullptr ? nullptr : result;
}

// ICU wants to know its memory before it is used for the first time.
[[maybe_unused]] const bool kIcuIsWatched = [] {
  UErrorCode error = U_ZERO_ERROR;
  u_setMemoryFunctions(nullptr, IcuAllocate, IcuReallocate, IcuFree, &error);
  if (U_SUCCESS(error)) return true;
  std::fputs("ICU takes no memory functions\n", stderr);
  std::abort();
}();

}  // namespace

bool operator==(const Blocks& a, const Blocks& b) {
  return a.of_new == b.of_new && a.of_xml == b.of_xml && a.of_icu == b.of_icu;
}

Blocks operator-(const Blocks& a, const Blocks& b) {
  return {a.of_new - b.of_new, a.of_xml - b.of_xml, a.of_icu - b.of_icu};
}

std::ostream& operator<<(std::ostream& out, const Blocks& blocks) {
  return out << blocks.of_new << " of new, " << blocks.of_xml << " of the XML library, "
             << blocks.of_icu << " of ICU";
}

Blocks LiveBlocks() { return {live_blocks[kNew], live_blocks[kXml], live_blocks[kIcu]}; }

FailingAllocation::FailingAllocation(long count, Duration duration, unsigned counted) {
  has_failed = false;
  counted_sources = counted;
  libraries_before = 0;
  fails_for_good = duration == kForGood;
  countdown = count;
}

void FailingAllocation::Stop() {
  countdown = kNever;
  is_out = false;
}

bool FailingAllocation::HasFailed() const { return has_failed; }

Source FailingAllocation::FailedSource() const { return failed_source; }

long FailingAllocation::LibrariesBefore() const { return libraries_before; }

FailingXmlMemory::FailingXmlMemory() {
  XMLPlatformUtils::Initialize(XERCES_CPP_NAMESPACE::XMLUni::fgXercescDefaultLocale, nullptr,
                               nullptr, this);
}

FailingXmlMemory::~FailingXmlMemory() {
  XMLPlatformUtils::Terminate();
  for (Link* link = ring.behind; link != &ring;) {
    Link* const lost = link;
    link = link->behind;
    if (lost->source == kXml) deallocate(reinterpret_cast<char*>(lost) + kHeaderBytes);
  }
}

void* FailingXmlMemory::allocate(XMLSize_t size) {
  void* const memory = AllocateLinked(kXml, size);
  if (memory == nullptr) throw XERCES_CPP_NAMESPACE::OutOfMemoryException();
  return memory;
}

void FailingXmlMemory::deallocate(void* memory) { FreeLinked(kXml, memory); }

}  // namespace fault_test

using fault_test::Allocate;
using fault_test::AllocateOrThrow;
using fault_test::Free;
using fault_test::kNew;

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(kNew, size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(kNew, size);
}
void operator delete(void* block) noexcept { Free(kNew, block); }
void operator delete[](void* block) noexcept { Free(kNew, block); }
void operator delete(void* block, std::size_t) noexcept { Free(kNew, block); }
void operator delete[](void* block, std::size_t) noexcept { Free(kNew, block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Free(kNew, block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Free(kNew, block); }
