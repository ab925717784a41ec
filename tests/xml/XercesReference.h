// What the XML library itself makes of texts and numbers: slow, plain, and right by definition.
#ifndef MCXPRSUTIL_TESTS_XML_XERCESREFERENCE_H
#define MCXPRSUTIL_TESTS_XML_XERCESREFERENCE_H

#include <memory>
#include <string>
#include <vector>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>

namespace xml_test {

// Its UTF-8 transcoder, in pieces of 1000; empty for every failure.
class ReferenceTranscoder {
 public:
  ReferenceTranscoder() {
    xercesc::XMLTransService::Codes code = xercesc::XMLTransService::Ok;
    transcoder_.reset(
        xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor("UTF-8", code, 4000));
  }

  std::string To(const std::basic_string<XMLCh>& text) const {
    std::string result;
    XMLByte chunk[1000];
    for (std::size_t at = 0; at < text.size();) {
      XMLSize_t eaten = 0;
      try {
        const XMLSize_t made =
            transcoder_->transcodeTo(text.data() + at, text.size() - at, chunk, 1000, eaten,
                                     xercesc::XMLTranscoder::UnRep_Throw);
        result.append(reinterpret_cast<const char*>(chunk), made);
      } catch (...) {
        return {};
      }
      if (eaten == 0) return {};
      at += eaten;
    }
    return result;
  }

  std::vector<XMLCh> From(const std::string& text) const {
    const std::vector<XMLCh> kEmpty(1, 0);
    std::vector<XMLCh> result;
    XMLCh chunk[1000];
    unsigned char sizes[1000];
    for (std::size_t at = 0; at < text.size();) {
      XMLSize_t eaten = 0;
      try {
        const XMLSize_t made =
            transcoder_->transcodeFrom(reinterpret_cast<const XMLByte*>(text.data()) + at,
                                       text.size() - at, chunk, 1000, eaten, sizes);
        result.insert(result.end(), chunk, chunk + made);
      } catch (...) {
        return kEmpty;
      }
      if (eaten == 0) return kEmpty;
      at += eaten;
    }
    result.push_back(0);
    return result;
  }

 private:
  std::unique_ptr<xercesc::XMLTranscoder> transcoder_;
};

enum class NumberKind { kNumber, kMissing, kRefused };

inline NumberKind ReferenceDouble(const XMLCh* text, double& value) {
  try {
    const xercesc::XMLDouble number(text);
    switch (number.getType()) {
      case xercesc::XMLDouble::Normal:
        value = number.getValue();
        return NumberKind::kNumber;
      case xercesc::XMLDouble::NaN:
        return NumberKind::kMissing;
      default:
        return NumberKind::kRefused;
    }
  } catch (const xercesc::NumberFormatException&) {
    return NumberKind::kRefused;
  }
}

// Tells whether XMLBigInteger accepts the text, of whatever size.
inline bool ReferenceIsInteger(const XMLCh* text) {
  try {
    const xercesc::XMLBigInteger number(text);
    return true;
  } catch (const xercesc::NumberFormatException&) {
    return false;
  }
}

}  // namespace xml_test

#endif  // MCXPRSUTIL_TESTS_XML_XERCESREFERENCE_H
