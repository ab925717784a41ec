#include "mccommon/MCVarEncoder.h"

#include "mccommon/MCMissingValue.h"

namespace MCMTD_NAMESPACE {

MCVarEncoder::MCVarEncoder()
    : invalid_lower_(MCMV::gMissingValue), invalid_upper_(MCMV::gMissingValue) {}

MCVarEncoder::~MCVarEncoder() = default;

void MCVarEncoder::SetBinLabels(const std::vector<std::string>& labels) {
  // Copied aside first: a plain assignment that runs out of memory half way loses the old labels.
  std::vector<std::string> copy(labels);
  bin_labels_.swap(copy);
}

void MCVarEncoder::AddMissingValue(double value, const std::string& label) {
  missing_numbers_.push_back({value, label});
}

void MCVarEncoder::AddMissingValue(const std::string& value, const std::string& label) {
  missing_texts_.push_back({value, label});
}

void MCVarEncoder::SetInvalidRange(double lower, double upper) {
  has_invalid_range_ = true;
  invalid_lower_ = lower;
  invalid_upper_ = upper;
}

}  // namespace MCMTD_NAMESPACE
