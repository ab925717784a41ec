/// Combining split models by hand: the floor of the split-model combiner.
#ifndef BENCHMARKS_BARECOMBINER_H_
#define BENCHMARKS_BARECOMBINER_H_

#include <string>
#include <unordered_set>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "BareXerces.h"

namespace bench {

struct SplitVariable {
  std::string name;
  std::string label;
  std::vector<std::string> values;
};

/// The program that an engineer would write for this one job with the XML library: a new parser per
/// file, importNode, the serializer. Trusts its input: every file has a dictionary and a TreeModel.
class BareCombiner {
 public:
  enum class Merge {
    kNone,             ///< the first file's dictionary and schema stand for all
    kDictionaryValues  ///< values that a later dictionary brings are added to the field's
  };

  BareCombiner(SplitVariable split, Merge merge) : split_(std::move(split)), merge_(merge) {}

  void Add(const std::string& path, const std::string& splitValue);
  void Export(const std::string& path);

 private:
  struct OutputField {
    xercesc::DOMElement* element;
    std::unordered_set<std::u16string> values;
  };

  void Begin(const xercesc::DOMElement& pmml, const xercesc::DOMElement& model);
  void AddSplitVariable(xercesc::DOMElement& dictionary, xercesc::DOMElement& schema);
  void RecordFields(const xercesc::DOMElement& dictionary);
  void MergeValues(const xercesc::DOMElement& dictionary);
  void AddSegment(const xercesc::DOMElement& pmml, const xercesc::DOMElement& model,
                  const std::string& splitValue);
  xercesc::DOMElement& Append(xercesc::DOMNode& parent, const XMLCh* name);
  xercesc::DOMNode* Copy(const xercesc::DOMNode* source, xercesc::DOMNode& parent, bool deep);

  SplitVariable split_;
  Merge merge_;
  XercesPtr<xercesc::DOMDocument> output_;
  xercesc::DOMElement* segmentation_ = nullptr;
  std::vector<OutputField> fields_;
};

}  // namespace bench

#endif  // BENCHMARKS_BARECOMBINER_H_
