#include "readers/pmml/DictionaryFill.h"

#include "readers/DomWalk.h"
#include "readers/Names.h"
#include "xml/AttributeText.h"
#include "xml/NumberText.h"
#include "xml/Utf16Name.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;
using XERCES_CPP_NAMESPACE::DOMElement;

namespace {

// Valid unless "property" says another word. Without attributes it is no value.
void ReadValue(const DOMElement& value, const FieldDialect& dialect, Field& field) {
  if (!value.hasAttributes()) return;
  const XMLCh* property = AttributeText(value, names::kProperty);
  const bool valid = property == nullptr || SameText(property, names::kValid);
  AppendValue(value, dialect, field.content, valid ? field.valid : field.missing);
}

// Takes a bound from an "Extension" that holds one as a number. Its "extender" does not matter.
void ReadInvalidRange(const DOMElement& extension, Range& range) {
  const XMLCh* name = AttributeText(extension, names::kName);
  const XMLCh* text = AttributeText(extension, names::kValueText);
  double bound = 0;
  if (name == nullptr || text == nullptr || !ParseDouble(text, bound)) return;
  if (SameText(name, names::kInvalidRangeLower)) range.lower = bound;
  if (SameText(name, names::kInvalidRangeUpper)) range.upper = bound;
}

}  // namespace

DictionaryFill::DictionaryFill(const FieldDialect& dialect, MCVarList& list,
                               const DOMElement* binDictionary)
    : FieldFill(dialect, list) {
  if (binDictionary != nullptr) bins_ = std::make_unique<DiscretisationIndex>(*binDictionary);
}

MCStatus DictionaryFill::ReadChild(const DOMElement& child) {
  if (IsNamed(child, names::kValue)) {
    ReadValue(child, dialect_, field_);
    return MCStatus();
  }
  return field_.content == Content::kNumbers ? ReadNumericChild(child) : MCStatus();
}

MCStatus DictionaryFill::ReadNumericChild(const DOMElement& child) {
  if (IsNamed(child, names::kExtension)) ReadInvalidRange(child, field_.invalidRange);
  return MCStatus();
}

bool DictionaryFill::FindBins() {
  if (bins_ == nullptr) return true;
  const Utf16Name name(field_.name.c_str());
  const DOMElement* discretize = bins_->Find(name.Get());
  if (discretize == nullptr) return false;
  ReadBins(*discretize, field_.cutPoints, field_.binLabels);
  return true;
}

MCStatus DictionaryFill::Declare(int index) { return DeclareAtEncoder(field_, index, list_); }

}  // namespace MCXPrsUtil
