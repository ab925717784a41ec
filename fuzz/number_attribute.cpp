// Any text as a numeric attribute: the reader of numbers agrees with the XML library's, bit by bit.
#include <mccommon/MCMissingValue.h>
#include <mcxprsutil/MCXDOMHelpers.h>
#include <mcxprsutil/MCXMLReadWrite.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/XMLDouble.hpp>

#include "Check.h"

namespace {

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MCXPrsUtil::MCXMLReadWrite platform;
  // Printable characters, as an attribute of a parsed document can hold them.
  std::vector<XMLCh> text;
  for (std::size_t i = 0; i < size; ++i) text.push_back(static_cast<XMLCh>(data[i] & 0x7f));
  text.push_back(0);

  static MCXPrsUtil::MCXMLReadWrite reader;
  std::istringstream in("<a/>");
  if (!reader.ParseToDOM(in).IsOK()) return 0;
  xercesc::DOMElement& element = *reader.GetDocument()->getDocumentElement();
  const XMLCh name[] = {'n', 0};
  element.setAttribute(name, text.data());

  double actual = 1.5;
  double expected = 1.5;
  const int result = MCXPrsUtil::GetDoubleAttribute(element, "n", actual);
  FUZZ_CHECK(result == Expected(text.data(), expected));
  FUZZ_CHECK(SameBits(actual, expected));
  return 0;
}
