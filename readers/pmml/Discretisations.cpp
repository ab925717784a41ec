#include "readers/pmml/Discretisations.h"

#include "mcxprsutil/MCXTranscoder.h"
#include "readers/DomWalk.h"
#include "readers/Field.h"
#include "readers/Names.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"

namespace MCXPrsUtil {
namespace {

using XERCES_CPP_NAMESPACE::DOMElement;

// Calls visit(discretize, field) in document order until it returns true. A "Discretize" without
// attributes is passed over; one with attributes but without "field" bins the field with the empty
// name, since an absent text equals the empty one everywhere.
template <class Visit>
void VisitDiscretisations(const DOMElement& transformationDictionary, Visit visit) {
  static constexpr XMLCh kNoField[] = {0};
  for (const DOMElement& derived : Children(transformationDictionary, names::kDerivedField)) {
    for (const DOMElement& discretize : Children(derived, names::kDiscretize)) {
      if (!discretize.hasAttributes()) continue;
      const XMLCh* field = AttributeText(discretize, names::kField);
      if (visit(discretize, field == nullptr ? kNoField : field)) return;
    }
  }
}

double Margin(const DOMElement& interval, const XMLCh* name, double open) {
  double margin = open;
  if (const XMLCh* text = AttributeText(interval, name)) ParseDouble(text, margin);
  return margin;
}

}  // namespace

const DOMElement* FindDiscretize(const DOMElement& transformationDictionary, const XMLCh* name) {
  const DOMElement* found = nullptr;
  VisitDiscretisations(transformationDictionary,
                       [&](const DOMElement& discretize, const XMLCh* field) {
                         if (SameText(field, name)) found = &discretize;
                         return found != nullptr;
                       });
  return found;
}

void ReadBins(const DOMElement& discretize, std::vector<double>& cutPoints,
              std::vector<std::string>& binValues) {
  cutPoints.assign(1, 0.0);
  binValues.clear();
  for (const DOMElement& bin : Children(discretize, names::kDiscretizeBin)) {
    if (const XMLCh* value = AttributeText(bin, names::kBinValue))
      binValues.push_back(ToUTF8(value));
    for (const DOMElement& interval : Children(bin, names::kInterval)) {
      if (cutPoints.size() == 1) {
        cutPoints.front() = Margin(interval, names::kLeftMargin, -kLargestDouble);
      }
      cutPoints.push_back(Margin(interval, names::kRightMargin, kLargestDouble));
    }
  }
}

DiscretisationIndex::DiscretisationIndex(const DOMElement& transformationDictionary) {
  VisitDiscretisations(transformationDictionary,
                       [this](const DOMElement& discretize, const XMLCh* field) {
                         by_field_.emplace(field, &discretize);  // keeps the first of a field
                         return false;
                       });
}

const DOMElement* DiscretisationIndex::Find(const XMLCh* name) const {
  const auto found = by_field_.find(name);
  return found == by_field_.end() ? nullptr : found->second;
}

}  // namespace MCXPrsUtil
