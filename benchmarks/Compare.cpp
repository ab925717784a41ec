#include "Compare.h"

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <cmath>

namespace bench {
namespace {

constexpr double kSampleNs = 20e6;
constexpr double kComparisonNs = 1.2e9;

double ThreadCpuNs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// CPU time of one run, in ns.
double Sample(const Variant& variant, int repetitions) {
  if (!variant.prepare) {
    const double start = ThreadCpuNs();
    for (int i = 0; i < repetitions; ++i) variant.run();
    return (ThreadCpuNs() - start) / repetitions;
  }
  double total = 0;
  for (int i = 0; i < repetitions; ++i) {
    variant.prepare();
    const double start = ThreadCpuNs();
    variant.run();
    total += ThreadCpuNs() - start;
  }
  return total / repetitions;
}

// The first run warms the caches and the heap. One that is long by itself tells enough.
int FindRepetitions(const Variant& variant) {
  double ns = Sample(variant, 1);
  if (ns < 10 * kSampleNs) ns = Sample(variant, 2);
  return static_cast<int>(std::max(1.0, std::ceil(kSampleNs / ns)));
}

std::string DescribeDifference(const std::string& expected, const std::string& actual) {
  const auto [left, right] =
      std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
  const auto offset = static_cast<std::size_t>(left - expected.begin());
  const std::size_t from = offset < 40 ? 0 : offset - 40;
  return "at byte " + std::to_string(offset) + " of " + std::to_string(expected.size()) + ": \"" +
         expected.substr(from, 80) + "\" against \"" + actual.substr(from, 80) + "\"";
}

std::vector<const Variant*> Variants(const Comparison& comparison) {
  std::vector<const Variant*> variants{&comparison.ours};
  for (const Peer& peer : comparison.peers) variants.push_back(&peer.variant);
  return variants;
}

std::optional<Mismatch> CheckResults(const std::vector<const Variant*>& variants,
                                     std::optional<std::string> expected) {
  for (const Variant* variant : variants) {
    if (!variant->result) continue;
    std::string actual = variant->result();
    if (actual.empty()) return Mismatch{variant->name, "no result"};
    if (!expected) {
      expected = std::move(actual);
    } else if (actual != *expected) {
      return Mismatch{variant->name, DescribeDifference(*expected, actual)};
    }
  }
  return std::nullopt;
}

// samples[variant][round]
using Samples = std::vector<std::vector<double>>;

Samples SampleInRotation(const std::vector<const Variant*>& variants,
                         const std::vector<int>& repetitions, std::size_t rounds) {
  Samples samples(variants.size());
  const double start = ThreadCpuNs();
  for (std::size_t round = 0; round < rounds || ThreadCpuNs() - start < kComparisonNs; ++round) {
    for (std::size_t turn = 0; turn < variants.size(); ++turn) {
      const std::size_t i = (round + turn) % variants.size();
      samples[i].push_back(Sample(*variants[i], repetitions[i]));
    }
  }
  return samples;
}

Timing Summarise(const std::vector<double>& ours, const std::vector<double>& peer) {
  std::vector<double> ratios;
  for (std::size_t round = 0; round < ours.size(); ++round)
    ratios.push_back(ours[round] / peer[round]);
  return {Median(ours), Median(peer), Median(std::move(ratios))};
}

}  // namespace

Outcome Measure(const Comparison& comparison, int rounds) {
  const std::vector<const Variant*> variants = Variants(comparison);
  std::optional<std::string> expected;
  if (comparison.expected) expected = comparison.expected();
  std::vector<int> repetitions;
  for (const Variant* variant : variants) repetitions.push_back(FindRepetitions(*variant));
  if (auto mismatch = CheckResults(variants, expected)) return {{}, std::move(mismatch)};

  const Samples samples = SampleInRotation(variants, repetitions, static_cast<std::size_t>(rounds));
  if (auto mismatch = CheckResults(variants, expected)) return {{}, std::move(mismatch)};

  Outcome outcome;
  for (std::size_t i = 1; i < variants.size(); ++i)
    outcome.timings.push_back(Summarise(samples[0], samples[i]));
  return outcome;
}

void PinMalloc() {
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the largest value that malloc accepts
}

}  // namespace bench
