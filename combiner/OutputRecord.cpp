#include "combiner/OutputRecord.h"

#include <utility>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {

void OutputFields::Append(OutputField field) {
  if (field.name) {
    ++n_names_;
    const auto [entry, is_new] = positions_.emplace(*field.name, fields_.size());
    if (!is_new && fields_[entry->second].node == nullptr) entry->second = fields_.size();
  }
  fields_.push_back(std::move(field));
}

OutputField* OutputFields::At(std::size_t position) {
  return position < fields_.size() ? &fields_[position] : nullptr;
}

const OutputField* OutputFields::Find(const std::string& name) const {
  const auto entry = positions_.find(name);
  return entry == positions_.end() ? nullptr : &fields_[entry->second];
}

void OutputFields::ForgetNodes() {
  for (OutputField& field : fields_) field.node = nullptr;
  has_exported_ = !fields_.empty();
}

void OutputNames::Append(const std::string& name) {
  names_.push_back(name);
  index_.insert(name);
}

bool OutputNames::Contains(const XMLCh* name, std::size_t expected) const {
  if (expected < names_.size() && XStrEqualsUTF8Str(name, names_[expected].c_str())) return true;
  return index_.count(ToUTF8(name)) != 0;
}

}  // namespace MCXPrsUtil
