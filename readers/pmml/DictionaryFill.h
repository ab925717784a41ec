// The part of filling a variable list that PMML documents of every use have in common.
#ifndef MCXPRSUTIL_READERS_PMML_DICTIONARYFILL_H
#define MCXPRSUTIL_READERS_PMML_DICTIONARYFILL_H

#include <memory>

#include "readers/FieldFill.h"
#include "readers/pmml/Discretisations.h"

namespace MCXPrsUtil {

// Reads values that are valid or missing, and the invalid range; takes the bins from a
// transformation dictionary; declares missing values, invalid range and bin labels. A dictionary
// says nothing about what a field is used for.
class DictionaryFill : public FieldFill {
 public:
  // `binDictionary` is null where continuous fields are to stay unbinned; it must outlive the fill.
  DictionaryFill(const FieldDialect& dialect, MCMTD_NAMESPACE::MCVarList& list,
                 const XERCES_CPP_NAMESPACE::DOMElement* binDictionary);

 protected:
  ~DictionaryFill() = default;

  MCCommon::MCStatus ReadChild(const XERCES_CPP_NAMESPACE::DOMElement& child) final;
  bool FindBins() final;
  MCCommon::MCStatus Declare(int index) override;

  // A child other than "Value", of a field with numbers. Reads the invalid range.
  virtual MCCommon::MCStatus ReadNumericChild(const XERCES_CPP_NAMESPACE::DOMElement& child);

 private:
  std::unique_ptr<const DiscretisationIndex> bins_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_PMML_DICTIONARYFILL_H
