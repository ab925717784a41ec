#include "mccommon/MCVarEncoder.h"

#include "mccommon/MCMissingValue.h"

namespace MCMTD_NAMESPACE {

MCVarEncoder::MCVarEncoder()
    : invalidLower_(MCMV::gMissingValue), invalidUpper_(MCMV::gMissingValue) {}

MCVarEncoder::~MCVarEncoder() = default;

void MCVarEncoder::SetBinLabels(const std::vector<std::string>& labels) {
  // Copied aside first: a plain assignment that runs out of memory half way loses the old labels.
  std::vector<std::string> copy(labels);
  binLabels_.swap(copy);
}

void MCVarEncoder::AddMissingValue(double value, const std::string& label) {
  missingNumbers_.push_back({value, label});
}

void MCVarEncoder::AddMissingValue(const std::string& value, const std::string& label) {
  missingTexts_.push_back({value, label});
}

void MCVarEncoder::SetInvalidRange(double lower, double upper) {
  hasInvalidRange_ = true;
  invalidLower_ = lower;
  invalidUpper_ = upper;
}

}  // namespace MCMTD_NAMESPACE
