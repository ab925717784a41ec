// What the combiner knows of the fields in the combined document.
#ifndef MCXPRSUTIL_COMBINER_OUTPUTRECORD_H
#define MCXPRSUTIL_COMBINER_OUTPUTRECORD_H

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace MCXPrsUtil {

// One "DataField" of the combined dictionary.
struct OutputField {
  XERCES_CPP_NAMESPACE::DOMNode* node;  // null once its document was exported
  std::optional<std::string> name;
  std::string optype;  // this and the next are empty where the field has none
  std::string data_type;
  std::vector<std::string> values;  // of its "Value" elements, in the order of recording
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
  const OutputField* Find(const std::string& name) const;

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

// The names of the fields of the combined schema.
class OutputNames {
 public:
  void Append(const std::string& name);

  // Where the caller expects the name, if anywhere, is `expected`: a look at that place usually
  // saves the conversion and the search.
  bool Contains(const XMLCh* name, std::size_t expected) const;

 private:
  std::vector<std::string> names_;
  std::unordered_set<std::string> index_;
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_COMBINER_OUTPUTRECORD_H
