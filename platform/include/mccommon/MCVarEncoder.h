/// @file
/// The encoder that MCVarList holds, with everything that was declared to it.
#ifndef MCCOMMON_MCVARENCODER_H
#define MCCOMMON_MCVARENCODER_H

#include <string>
#include <vector>

#include "mccommon/IMCVarEncoder.h"
#include "mccommon/MCExport.h"

namespace MCMTD_NAMESPACE {

/// Remembers the declarations of one variable and gives them back as they came.
///
/// Nothing is checked, sorted or removed: a value that a document declares twice is here twice.
/// When an operation throws std::bad_alloc, the encoder is as it was before. One thread at a time
/// may declare; several may read while none does.
class MCCOMMON_EXPORT MCVarEncoder final : public IMCVarEncoder {
 public:
  /// A number that stands for a missing value.
  struct MissingNumber {
    double value;
    std::string label;  ///< The text to show for it; may be empty.
  };

  /// A text that stands for a missing value.
  struct MissingText {
    std::string value;
    std::string label;  ///< The text to show for it; may be empty.
  };

  MCVarEncoder();
  ~MCVarEncoder() override;

  void SetBinLabels(const std::vector<std::string>& labels) override;
  void AddMissingValue(double value, const std::string& label) override;
  void AddMissingValue(const std::string& value, const std::string& label) override;
  void SetInvalidRange(double lower, double upper) override;

  /// The labels of the bins, lowest bin first; empty where none were set.
  const std::vector<std::string>& GetBinLabels() const { return bin_labels_; }

  /// The numeric missing values, in the order of their declaration.
  const std::vector<MissingNumber>& GetMissingNumbers() const { return missing_numbers_; }

  /// The text missing values, in the order of their declaration.
  const std::vector<MissingText>& GetMissingTexts() const { return missing_texts_; }

  /// True once an invalid range was set.
  bool HasInvalidRange() const { return has_invalid_range_; }

  /// The lower end of the invalid range as given; MCMV::gMissingValue before there is one.
  double GetInvalidLower() const { return invalid_lower_; }

  /// The upper end of the invalid range as given; MCMV::gMissingValue before there is one.
  double GetInvalidUpper() const { return invalid_upper_; }

 private:
  std::vector<std::string> bin_labels_;
  std::vector<MissingNumber> missing_numbers_;
  std::vector<MissingText> missing_texts_;
  bool has_invalid_range_ = false;
  double invalid_lower_;
  double invalid_upper_;
};

}  // namespace MCMTD_NAMESPACE

#endif  // MCCOMMON_MCVARENCODER_H
