/// @file
/// Takes what a document says about the values of a variable beyond its categories and its range.
#ifndef MCCOMMON_IMCVARENCODER_H
#define MCCOMMON_IMCVARENCODER_H

#include <string>
#include <vector>

#include "mccommon/MCExport.h"

namespace MCMTD_NAMESPACE {

/// The encoder of one variable. Owned by the variable's list; all text is UTF-8 and is copied.
///
/// An application can derive from it to receive the declarations itself. It is called on the thread
/// that fills the list, one call at a time.
class MCCOMMON_EXPORT IMCVarEncoder {
 public:
  virtual ~IMCVarEncoder();

  /// Names the bins of a binned continuous variable, lowest bin first. Replaces earlier labels.
  virtual void SetBinLabels(const std::vector<std::string>& labels) = 0;

  /// Appends a number that stands for a missing value, with the text to show for it (may be empty).
  virtual void AddMissingValue(double value, const std::string& label) = 0;

  /// Appends a text that stands for a missing value, with the text to show for it (may be empty).
  virtual void AddMissingValue(const std::string& value, const std::string& label) = 0;

  /// Declares the numbers from `lower` to `upper` invalid. Replaces an earlier range. An open end
  /// is the largest finite double or its negative.
  virtual void SetInvalidRange(double lower, double upper) = 0;

 protected:
  IMCVarEncoder() = default;
  IMCVarEncoder(const IMCVarEncoder&) = default;
  IMCVarEncoder& operator=(const IMCVarEncoder&) = default;
};

}  // namespace MCMTD_NAMESPACE

#endif  // MCCOMMON_IMCVARENCODER_H
