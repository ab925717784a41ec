/// @file
/// Univariate statistics of one field.
#ifndef MCCOMMON_MCUNISTATS_H
#define MCCOMMON_MCUNISTATS_H

#include <string>
#include <vector>

#include "mccommon/MCExport.h"

namespace MCMTD_NAMESPACE {

/// The distribution of one field: how often each category or each interval occurs.
///
/// A value: copied and assigned freely. Nothing is checked on construction; IsValid() tells.
/// Several threads may read one object while none assigns to it.
class MCCOMMON_EXPORT MCUniStats {
 public:
  /// Summary of a continuous field; MCMV::gMissingValue where a figure is not known.
  struct MCCOMMON_EXPORT SummStats {
    double minimum;
    double maximum;
    double mean;
    double standardDeviation;

    /// All four missing.
    SummStats();
  };

  /// Statistics of nothing: not valid.
  MCUniStats();

  /// Statistics of a categorical field.
  ///
  /// @param name         the field's name, UTF-8.
  /// @param total        the number of records, weights included.
  /// @param frequencies  one per category.
  MCUniStats(const std::string& name, double total, const std::vector<double>& frequencies);

  /// Statistics of a continuous field.
  ///
  /// @param cutPoints    ends of the intervals, ascending; MCMV::gMissingValue as the first or the
  ///                     last leaves that side open.
  /// @param frequencies  one per interval, so one fewer than the cut points.
  MCUniStats(const std::string& name, double total, const SummStats& summary,
             const std::vector<double>& cutPoints, const std::vector<double>& frequencies);

  /// True when there is a name, the total is at least 0 and so is every frequency (a NaN is not),
  /// and, for a continuous field, both lists are empty or there is one frequency fewer than there
  /// are cut points.
  bool IsValid() const;

  const std::string& GetName() const { return name_; }
  double GetTotal() const { return total_; }
  bool IsContinuous() const { return continuous_; }

  /// All missing for a categorical field.
  const SummStats& GetSummary() const { return summary_; }

  /// Empty for a categorical field.
  const std::vector<double>& GetCutPoints() const { return cut_points_; }

  const std::vector<double>& GetFrequencies() const { return frequencies_; }

 private:
  std::string name_;
  double total_;
  bool continuous_;
  SummStats summary_;
  std::vector<double> cut_points_;
  std::vector<double> frequencies_;
};

}  // namespace MCMTD_NAMESPACE

#endif  // MCCOMMON_MCUNISTATS_H
