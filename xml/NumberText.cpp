#include "xml/NumberText.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <system_error>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLString.hpp>

#include "mccommon/MCMissingValue.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::NumberFormatException;
using XERCES_CPP_NAMESPACE::XMLChar1_0;
using XERCES_CPP_NAMESPACE::XMLDouble;
using XERCES_CPP_NAMESPACE::XMLPlatformUtils;
using XERCES_CPP_NAMESPACE::XMLString;

constexpr std::size_t kPlainChars = 64;

bool IsDigit(XMLCh c) { return c >= u'0' && c <= u'9'; }

bool IsPlainUnit(XMLCh c) {
  return IsDigit(c) || c == u'.' || c == u'-' || c == u'+' || c == u'e' || c == u'E';
}

// std::from_chars and XMLDouble agree on every ordinary number. The ends of the range are not
// ordinary: XMLDouble flushes what is below the smallest normal double, and whether from_chars
// reports an underflow to zero depends on the library version.
bool IsOrdinary(double number, const char* first, const char* last) {
  if (number != 0) return std::fabs(number) > DBL_MIN;
  return std::none_of(first, last, [](char c) { return c >= '1' && c <= '9'; });
}

// Reads text that is short and plainly formed; false means "ask XMLDouble", not "refused".
bool ParsePlainDouble(const XMLCh* first, const XMLCh* last, double& value) {
  if (first != last && *first == u'+') {
    ++first;  // from_chars takes no plus sign
    if (first == last || *first == u'-') return false;
  }
  const auto count = static_cast<std::size_t>(last - first);
  if (count > kPlainChars) return false;

  char text[kPlainChars] = {};
  for (std::size_t i = 0; i < count; ++i) {
    if (!IsPlainUnit(first[i])) return false;
    text[i] = static_cast<char>(first[i]);
  }
  double number = 0;
  const auto [end, error] = std::from_chars(text, text + count, number);
  if (error != std::errc() || end != text + count) return false;
  if (!IsOrdinary(number, text, end)) return false;
  value = number;
  return true;
}

bool ParseAnyDouble(const XMLCh* text, double& value) {
  try {
    const XMLDouble number(text, XMLPlatformUtils::fgMemoryManager);
    switch (number.getType()) {
      case XMLDouble::Normal:
        value = number.getValue();
        return true;
      case XMLDouble::NaN:
        value = MCMV::gMissingValue;
        return true;
      default:
        return false;
    }
  } catch (const NumberFormatException&) {
    return false;
  }
}

}  // namespace

bool ParseDouble(const XMLCh* first, const XMLCh* last, double& value) {
  if (ParsePlainDouble(first, last, value)) return true;
  return ParseAnyDouble(std::basic_string<XMLCh>(first, last).c_str(), value);
}

bool ParseDouble(const XMLCh* text, double& value) {
  if (ParsePlainDouble(text, text + XMLString::stringLen(text), value)) return true;
  return ParseAnyDouble(text, value);
}

bool ParseInt(const XMLCh* text, int& value) {
  const XMLCh* first = text;
  const XMLCh* last = text + XMLString::stringLen(text);
  while (first != last && XMLChar1_0::isWhitespace(*first)) ++first;
  while (first != last && XMLChar1_0::isWhitespace(last[-1])) --last;

  const bool negative = first != last && *first == u'-';
  if (negative || (first != last && *first == u'+')) ++first;
  if (first == last || !std::all_of(first, last, IsDigit)) return false;

  // One more negative number than positive ones fits, so the sum runs below zero.
  constexpr int kLeast = std::numeric_limits<int>::min();
  int sum = 0;
  for (; first != last; ++first) {
    const int digit = *first - u'0';
    if (sum < (kLeast + digit) / 10) return false;
    sum = sum * 10 - digit;
  }
  if (!negative && sum == kLeast) return false;
  value = negative ? sum : -sum;
  return true;
}

}  // namespace MCXPrsUtil
