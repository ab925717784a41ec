// Why a parse was given up, although the document may be well-formed.
#ifndef MCXPRSUTIL_XML_PARSEREFUSAL_H
#define MCXPRSUTIL_XML_PARSEREFUSAL_H

#include <string>
#include <utility>

namespace MCXPrsUtil {

// Thrown through the XML library, and so no std::exception and no XMLException, which that takes
// for an error of the document. Nothing outside of the parse sees it.
class ParseRefusal {
 public:
  explicit ParseRefusal(std::string text) : text_(std::move(text)) {}

  // In UTF-8.
  const std::string& GetText() const { return text_; }

 private:
  std::string text_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_PARSEREFUSAL_H
