// Any text as a number or a list of numbers, and any number as a text: the reader of numbers agrees
// with the XML library's, bit by bit, and what is written as an attribute reads back.
#include <mccommon/MCMissingValue.h>
#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXTranscoder.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLString.hpp>

#include "Check.h"

namespace {

using xercesc::DOMElement;

// 0 and the value, or 1 for what is no number.
int Expected(const XMLCh* text, double& value) {
  try {
    const xercesc::XMLDouble number(text);
    switch (number.getType()) {
      case xercesc::XMLDouble::NaN:
        value = MCMV::gMissingValue;
        return 0;
      case xercesc::XMLDouble::Normal:
        value = number.getValue();
        return 0;
      default:
        return 1;
    }
  } catch (const xercesc::NumberFormatException&) {
    return 1;
  }
}

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

using Text = std::vector<XMLCh>;  // zero-terminated

void CheckDouble(const DOMElement& element, const Text& text) {
  double actual = 1.5;
  double expected = 1.5;
  const int result = MCXPrsUtil::GetDoubleAttribute(element, "n", actual);
  FUZZ_CHECK(result == Expected(text.data(), expected));
  FUZZ_CHECK(SameBits(actual, expected));
}

// XMLBigInteger tells what an integer is; its own value of one wraps around.
bool Fits(const Text& text, long long& value) {
  Text digits(text.size());
  int sign = 0;
  try {
    xercesc::XMLBigInteger::parseBigInteger(text.data(), digits.data(), sign,
                                            xercesc::XMLPlatformUtils::fgMemoryManager);
  } catch (const xercesc::NumberFormatException&) {
    return false;
  }
  constexpr XMLSize_t kMostDigits = 12;
  if (sign != 0 && xercesc::XMLString::stringLen(digits.data()) > kMostDigits) return false;
  value = sign == 0 ? 0 : sign * std::stoll(MCXPrsUtil::ToUTF8(digits.data()));
  return value >= INT_MIN && value <= INT_MAX;
}

void CheckInt(const DOMElement& element, const Text& text) {
  long long value = 0;
  const bool fits = Fits(text, value);
  for (const int sign : {-1, 0, 1}) {
    int actual = -7;
    const bool isAccepted = fits && (sign < 0 || value >= sign);
    FUZZ_CHECK(MCXPrsUtil::GetIntAttribute(element, "n", sign, actual) == (isAccepted ? 0 : 1));
    FUZZ_CHECK(actual == (fits ? value : -7));
  }
}

bool IsBlank(XMLCh c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// One by one, as attributes are read.
bool ReadsAsList(const Text& text, std::vector<double>& values) {
  Text token;
  for (const XMLCh c : text) {
    if (c != 0 && !IsBlank(c)) {
      token.push_back(c);
      continue;
    }
    if (token.empty()) continue;
    token.push_back(0);
    double value = 0;
    if (Expected(token.data(), value) != 0) return false;
    values.push_back(value);
    token.clear();
  }
  return true;
}

void CheckList(DOMElement& element, const Text& text) {
  if (text.size() > 1) {
    element.appendChild(element.getOwnerDocument()->createTextNode(text.data()));
  }
  std::vector<double> expected;
  const bool reads = ReadsAsList(text, expected);
  if (!reads) expected.clear();
  std::vector<double> actual = {1.5};
  FUZZ_CHECK(MCXPrsUtil::AssembleDoublesList(element, actual) == reads);
  FUZZ_CHECK(actual.size() == expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) FUZZ_CHECK(SameBits(actual[i], expected[i]));
}

// A number too small to be normal reads as 0.
void CheckWritten(DOMElement& element, double number) {
  if (!std::isfinite(number)) return;
  FUZZ_CHECK(MCXPrsUtil::SetAttribute(element, "n", number));
  double again = 1.5;
  FUZZ_CHECK(MCXPrsUtil::GetDoubleAttribute(element, "n", again) == 0);
  FUZZ_CHECK(SameBits(again, number) || (!std::isnormal(number) && again == 0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MCXPrsUtil::MCXMLReadWrite platform;
  // Printable characters, as an attribute of a parsed document can hold them.
  Text text;
  for (std::size_t i = 0; i < size; ++i) {
    const auto c = static_cast<XMLCh>(data[i] & 0x7f);
    if (c != 0) text.push_back(c);
  }
  text.push_back(0);

  static MCXPrsUtil::MCXMLReadWrite reader;
  std::istringstream in("<a/>");
  if (!reader.ParseToDOM(in).IsOK()) return 0;
  DOMElement& element = *reader.GetDocument()->getDocumentElement();
  const XMLCh name[] = {'n', 0};
  element.setAttribute(name, text.data());
  CheckDouble(element, text);
  CheckInt(element, text);
  CheckList(element, text);
  for (std::size_t at = 0; at + sizeof(double) <= size; at += sizeof(double)) {
    double number;
    std::memcpy(&number, data + at, sizeof number);
    CheckWritten(element, number);
  }
  return 0;
}
