// The discretisations of a PMML transformation dictionary.
#ifndef MCXPRSUTIL_READERS_PMML_DISCRETISATIONS_H
#define MCXPRSUTIL_READERS_PMML_DISCRETISATIONS_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace MCXPrsUtil {

// The first "Discretize" in document order that bins the field `name`; null when there is none.
const XERCES_CPP_NAMESPACE::DOMElement* FindDiscretize(
    const XERCES_CPP_NAMESPACE::DOMElement& transformationDictionary, const XMLCh* name);

// Reads the bins of a "Discretize"; replaces both lists. See MCPMMLParser::SetBinsFrTransDict.
void ReadBins(const XERCES_CPP_NAMESPACE::DOMElement& discretize, std::vector<double>& cutPoints,
              std::vector<std::string>& binValues);

// Finds what FindDiscretize() finds after a single walk over the dictionary: for those who look up
// many fields. It must not outlive the dictionary.
class DiscretisationIndex {
 public:
  explicit DiscretisationIndex(const XERCES_CPP_NAMESPACE::DOMElement& transformationDictionary);
  DiscretisationIndex(const DiscretisationIndex&) = delete;
  DiscretisationIndex& operator=(const DiscretisationIndex&) = delete;

  const XERCES_CPP_NAMESPACE::DOMElement* Find(const XMLCh* name) const;

 private:
  // The keys are views of attribute values in the document.
  std::unordered_map<std::u16string_view, const XERCES_CPP_NAMESPACE::DOMElement*> by_field_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_PMML_DISCRETISATIONS_H
