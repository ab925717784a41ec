#include "encoding/CodePageTraits.h"

#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <mutex>

#include "encoding/AsciiRuns.h"
#include "encoding/CodePageProbe.h"
#include "encoding/ConverterStates.h"

namespace MCMEM_NAMESPACE {
namespace transcoding {

// Grows only, so that readers need no lock. There is room for all code pages that ICU brings with
// it; when an application's own fill the table, further ones do without the short cuts.
class TraitsTable {
 public:
  const CodePageTraits* Find(const char* name) const {
    const std::size_t size = size_.load(std::memory_order_acquire);
    for (std::size_t i = 0; i < size; ++i) {
      if (std::strcmp(rows_[i].name, name) == 0) return &rows_[i].traits;
    }
    return nullptr;
  }

  // Keeps the traits, or the earlier ones of another thread.
  const CodePageTraits* Add(const char* name, const CodePageTraits& traits) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const CodePageTraits* known = Find(name);
    const std::size_t size = size_.load(std::memory_order_relaxed);
    if (known != nullptr || size == rows_.size()) {
      delete traits.table_;
      return known;
    }
    std::memcpy(rows_[size].name, name, std::strlen(name) + 1);
    rows_[size].traits = traits;
    size_.store(size + 1, std::memory_order_release);
    return &rows_[size].traits;
  }

  bool IsFull() const { return size_.load(std::memory_order_relaxed) == rows_.size(); }

  static bool CanHold(const char* name) { return std::strlen(name) < kNameBytes; }

 private:
  static constexpr std::size_t kNameBytes = 64;

  struct Row {
    char name[kNameBytes];
    CodePageTraits traits;
  };

  std::array<Row, 256> rows_;
  std::atomic<std::size_t> size_{0};
  std::mutex mutex_;
};

namespace {

// In a sequence of characters that one character of the code page stands for, or the other way
// round, no more units than this: ICU's limit for its tables.
constexpr std::size_t kLongestSequence = 32;

TraitsTable& KnownTraits() {
  static TraitsTable table;
  return table;
}

}  // namespace

const CodePageTraits* CodePageTraits::Of(const UConverter& converter) {
  UErrorCode error = U_ZERO_ERROR;
  const char* name = ucnv_getName(&converter, &error);
  if (U_FAILURE(error) || name == nullptr) return nullptr;
  if (const CodePageTraits* known = KnownTraits().Find(name)) return known;
  if (HasStates(converter) || KnownTraits().IsFull() || !TraitsTable::CanHold(name)) return nullptr;
  CodePageTraits traits;
  return CodePageProbe(converter).Fill(traits) ? KnownTraits().Add(name, traits) : nullptr;
}

template <class Source>
std::size_t CodePageTraits::CountPlain(const typename Source::Unit* s, std::size_t n) const {
  std::size_t i = 0;
  for (; n - i >= 16; i += 16) {
    const ascii::Block block = Source::template Load16<false>(s + i);
    __m128i exceptions = _mm_setzero_si128();
    for (std::size_t k = 0; k < exception_count_; ++k) {
      const __m128i exception = _mm_set1_epi8(static_cast<char>(exceptions_[k]));
      exceptions = _mm_or_si128(exceptions, _mm_cmpeq_epi8(block.bytes, exception));
    }
    if (Source::AnyStop(block.marks) || ascii::ByteMaskOf(exceptions) != 0) break;
  }
  const unsigned char* const end = exceptions_ + exception_count_;
  while (i < n && s[i] < 0x80 && std::find(exceptions_, end, s[i]) == end) ++i;
  return i;
}

std::size_t CodePageTraits::CountPlainAscii(const char* s, std::size_t n) const {
  if (!has_plain_ascii_) return 0;
  const auto bytes = reinterpret_cast<const unsigned char*>(s);
  const std::size_t count = CountPlain<ascii::Bytes>(bytes, n);
  if (count == n) return n;
  return count - std::min(count, kLongestSequence);
}

std::size_t CodePageTraits::CountPlainAscii(const unsigned short* s, std::size_t n) const {
  if (!has_plain_ascii_) return 0;
  const std::size_t count = CountPlain<ascii::Units16<unsigned short, false>>(s, n);
  if (count == n) return n;
  return count - std::min(count, kLongestSequence);
}

}  // namespace transcoding
}  // namespace MCMEM_NAMESPACE
