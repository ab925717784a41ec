#include "mccommon/MCFormat.h"

#include <charconv>
#include <cmath>
#include <iterator>

#include "mccommon/MCMissingValue.h"

namespace MCXML_NAMESPACE {
namespace {

// The longest plain form is that of a number near the smallest normal double: a sign, "0.", 307
// zeros and 17 digits.
constexpr std::size_t kMaxLength = 400;

constexpr double kWholeLimit = 1e15;

const char* NameOfNonFinite(double value) {
  if (std::isnan(value)) return "NaN";
  return value > 0 ? "INF" : "-INF";
}

// Negative zero is left out: as an integer it would lose its sign.
bool IsSmallWhole(double value) {
  return std::fabs(value) < kWholeLimit && value == std::trunc(value) &&
         !(value == 0 && std::signbit(value));
}

std::to_chars_result Write(char* first, char* last, double value, bool fixed) {
  if (IsSmallWhole(value)) return std::to_chars(first, last, static_cast<long long>(value));
  if (fixed) return std::to_chars(first, last, value, std::chars_format::fixed);
  return std::to_chars(first, last, value);
}

}  // namespace

std::string Format(double value, bool fixed, const char* missingText) {
  if (missingText != nullptr && value == MCMV::gMissingValue) return missingText;
  if (!std::isfinite(value)) return NameOfNonFinite(value);
  char text[kMaxLength];
  const std::to_chars_result end = Write(std::begin(text), std::end(text), value, fixed);
  return std::string(text, end.ptr);
}

}  // namespace MCXML_NAMESPACE
