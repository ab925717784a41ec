/// Peak memory of a piece of work, measured in a child process of its own.
#ifndef BENCHMARKS_PEAKMEMORY_H_
#define BENCHMARKS_PEAKMEMORY_H_

#include <cstddef>
#include <functional>
#include <optional>

namespace bench {

struct PeakMemory {
  std::size_t before;  ///< resident bytes when the work began
  std::size_t peak;    ///< largest number of resident bytes until it ended
};

/// Runs `work` in a forked child, once. Nothing when the child failed or the kernel does not tell.
std::optional<PeakMemory> MeasurePeakMemory(const std::function<void()>& work);

}  // namespace bench

#endif  // BENCHMARKS_PEAKMEMORY_H_
