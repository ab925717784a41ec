#include "mccommon/MCUniStats.h"

#include <algorithm>

#include "mccommon/MCMissingValue.h"

namespace MCMTD_NAMESPACE {

MCUniStats::SummStats::SummStats()
    : minimum(MCMV::gMissingValue),
      maximum(MCMV::gMissingValue),
      mean(MCMV::gMissingValue),
      standardDeviation(MCMV::gMissingValue) {}

MCUniStats::MCUniStats() : total_(MCMV::gMissingValue), continuous_(false) {}

MCUniStats::MCUniStats(const std::string& name, double total,
                       const std::vector<double>& frequencies)
    : name_(name), total_(total), continuous_(false), frequencies_(frequencies) {}

MCUniStats::MCUniStats(const std::string& name, double total, const SummStats& summary,
                       const std::vector<double>& cutPoints, const std::vector<double>& frequencies)
    : name_(name),
      total_(total),
      continuous_(true),
      summary_(summary),
      cut_points_(cutPoints),
      frequencies_(frequencies) {}

bool MCUniStats::IsValid() const {
  // Written so that a NaN fails: no comparison with one is true.
  const auto isCount = [](double number) { return number >= 0; };
  if (name_.empty() || !isCount(total_)) return false;
  if (!std::all_of(frequencies_.begin(), frequencies_.end(), isCount)) return false;
  if (!continuous_ || (cut_points_.empty() && frequencies_.empty())) return true;
  return frequencies_.size() + 1 == cut_points_.size();
}

}  // namespace MCMTD_NAMESPACE
