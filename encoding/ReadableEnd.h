// How far a zero-terminated text may be read by vectors, when its stated end lies behind its zero.
#ifndef MCMEM_ENCODING_READABLEEND_H
#define MCMEM_ENCODING_READABLEEND_H

#include <cstddef>
#include <cstdint>

#if defined(__SANITIZE_ADDRESS__)
#define MCMEM_READS_ARE_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MCMEM_READS_ARE_CHECKED 1
#endif
#endif
#ifndef MCMEM_READS_ARE_CHECKED
#define MCMEM_READS_ARE_CHECKED 0
#endif

namespace MCMEM_NAMESPACE {

// Memory is protected by pages: where one byte may be read, the rest of its page may be, too. No
// page of x86-64 is smaller.
constexpr std::size_t kPageBytes = 4096;

// Behind the units from `s` on that can be read at one go: up to `end`, but not beyond the page of
// `s`. What lies behind a zero there is looked at and ignored; so that AddressSanitizer, which
// knows better than pages, has nothing to find, the result is behind the first zero where it
// watches. Codec is one of AsciiRuns.h.
template <class Codec>
inline const typename Codec::Unit* ReadableEnd(const typename Codec::Unit* s,
                                               const typename Codec::Unit* end) {
  const std::size_t left = kPageBytes - (reinterpret_cast<std::uintptr_t>(s) & (kPageBytes - 1));
  const auto units = static_cast<std::ptrdiff_t>(left / sizeof(*s));
  const auto* const pageEnd = end - s <= units ? end : s + units;
  if (!MCMEM_READS_ARE_CHECKED) return pageEnd;
  for (; s < pageEnd; ++s)
    if (Codec::Get(*s) == 0) return s + 1;
  return pageEnd;
}

// Whether all of a text of at most `kMost` units can be read at one go. Quicker to tell, and no is
// said near the end of a page without a look at how long the text is.
template <class Codec, std::size_t kMost>
inline bool IsReadable(const typename Codec::Unit* s, const typename Codec::Unit* end) {
  if (MCMEM_READS_ARE_CHECKED) return ReadableEnd<Codec>(s, end) == end;
  return (reinterpret_cast<std::uintptr_t>(s) & (kPageBytes - 1)) <= kPageBytes - kMost * sizeof *s;
}

}  // namespace MCMEM_NAMESPACE

#endif  // MCMEM_ENCODING_READABLEEND_H
