/// Measuring several ways of doing one job side by side.
///
/// All variants of a comparison run in one process and in rotation (A B C, B C A, C A B, ...), so
/// that a change of clock speed or a busy neighbour meets all of them. The clock is the thread's
/// CPU time. Before the first round and after the last one the variants' results are held against
/// each other: a fast wrong answer is a failure, not a measurement.
#ifndef BENCHMARKS_COMPARE_H_
#define BENCHMARKS_COMPARE_H_

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bench {

/// Makes the compiler believe that `value` is used and that memory may have changed.
template <class T>
inline void Keep(const T& value) {
  asm volatile("" : : "r,m"(value) : "memory");
}

/// One way of doing a job.
struct Variant {
  std::string name;
  /// The work that is timed. It leaves its result where `result` finds it.
  std::function<void()> run;
  /// What the last run produced, as text; empty when there is nothing to compare, as in a peer that
  /// only sets a scale.
  std::function<std::string()> result{};
  /// Work before each run that is not timed. Each run is then timed alone, so use it only for runs
  /// of many microseconds.
  std::function<void()> prepare{};
};

/// What is asked for: our time per operation at most `factor` times the peer's plus `extraNs`.
struct Limit {
  double factor;
  double extraNs = 0;
};

struct Peer {
  Variant variant;
  std::optional<Limit> limit{};  ///< none: the ratio is shown, nothing is asked for
};

/// Ours against one or more peers; the first peer is the floor.
struct Comparison {
  Variant ours;
  std::vector<Peer> peers;
  std::size_t bytes = 0;                 ///< handled by one run; not 0: the speed is shown in MB/s
  std::size_t operations = 1;            ///< done by one run; the time is shown per operation
  std::optional<double> memoryFactor{};  ///< peak memory at most this times the floor's
  /// Another source of the right result, asked once and not timed: for a floor that takes too long
  /// to be measured again.
  std::function<std::string()> expected{};
};

/// Ours against one peer, in ns of CPU time per run.
struct Timing {
  double ours;
  double peer;
  double ratio;  ///< median of the rounds' ratios, steadier than the ratio of the medians
};

/// Two variants gave different results.
struct Mismatch {
  std::string variant;
  std::string where;  ///< the first difference, with a little text around it
};

struct Outcome {
  std::vector<Timing> timings;  ///< one per peer; empty after a mismatch
  std::optional<Mismatch> mismatch;
};

/// Measures `comparison` over at least `rounds` rounds, and over more while that takes less than
/// about a second. A sample takes 20 ms or one run, whichever is longer.
Outcome Measure(const Comparison& comparison, int rounds);

/// Pins malloc's thresholds: memory is neither given back nor mapped piece by piece between
/// samples, so that no variant pays for the page faults of another.
void PinMalloc();

}  // namespace bench

#endif  // BENCHMARKS_COMPARE_H_
