// What the combiner knows of the fields in the combined document.
#ifndef MCXPRSUTIL_COMBINER_OUTPUTRECORD_H
#define MCXPRSUTIL_COMBINER_OUTPUTRECORD_H

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

// Where a text stands in a list that is only appended to.
class TextIndex {
 public:
  // The position of the first text in `list` that equals `text`, or list.size(). Looks only at what
  // was appended since the last call; the list must be the same one each time.
  std::size_t PositionIn(const std::vector<std::string>& list, const std::string& text);

 private:
  std::unordered_map<std::string, std::size_t> positions_;
  std::size_t n_indexed_ = 0;
};

// One "DataField" of the combined dictionary.
struct OutputField {
  XERCES_CPP_NAMESPACE::DOMNode* node = nullptr;  // null once its document was exported
  std::optional<std::string> name;
  std::string optype;  // this and the next are empty where the field has none
  std::string data_type;
  std::vector<std::string> values;  // of its "Value" elements, in the order of recording
  TextIndex values_index;           // empty until a value was searched for

  // What it held when it was recorded, for findings.
  std::string intervals;                                    // the texts of its "Interval" elements
  bool had_values = false;                                  // whether it held a "Value"
  std::unordered_map<std::string, std::string> properties;  // by value, where one is given
  bool is_split_variable = false;
  bool is_repeat = false;  // a field of the same document before it has the same name
};

// The fields of the combined dictionary in the order in which they were recorded. The list outlives
// its document: positions and names stay, so that they count in the next one as well.
class OutputFields {
 public:
  void Append(OutputField field);

  // Null behind the last field.
  OutputField* At(std::size_t position);

  // Null when no field has the name; else the first one of the current document that has it, or of
  // an earlier document if there is none.
  OutputField* Find(const std::string& name);

  // The number of fields that have a name, repeats included.
  int GetNNames() const { return n_names_; }

  // True if some field belongs to a document that was exported.
  bool HasExported() const { return has_exported_; }

  // Every field becomes one without a node.
  void ForgetNodes();

 private:
  std::vector<OutputField> fields_;
  std::unordered_map<std::string, std::size_t> positions_;  // of names, in fields_
  int n_names_ = 0;
  bool has_exported_ = false;
};

// One "MiningField" of the combined schema.
struct OutputName {
  std::string name;
  std::string usage;  // its "usageType"
  bool is_split_variable = false;
  bool is_exported = false;  // its document is gone
  bool is_repeat = false;    // a field of the same document before it has the same name
};

// The named fields of the combined schema. The list outlives its document: a name stays known.
class OutputNames {
 public:
  void Append(OutputName name);

  // Null when the name is not known; else as OutputFields::Find(). Where the caller expects the
  // name, if anywhere, is `expected`: a look at that place usually saves the conversion and the
  // search.
  const OutputName* Find(const XMLCh* name, std::size_t expected) const;

  // Every field becomes one of a document that is gone.
  void MarkExported();

 private:
  std::vector<OutputName> names_;
  std::unordered_map<std::string, std::size_t> positions_;  // in names_
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_COMBINER_OUTPUTRECORD_H
