#include "combiner/OutputRecord.h"

#include <utility>

#include "mcxprsutil/MCXDOMHelpers.h"
#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {

std::size_t TextIndex::PositionIn(const std::vector<std::string>& list, const std::string& text) {
  for (; n_indexed_ < list.size(); ++n_indexed_) positions_.emplace(list[n_indexed_], n_indexed_);
  const auto entry = positions_.find(text);
  return entry == positions_.end() ? list.size() : entry->second;
}

void OutputFields::Append(OutputField field) {
  if (field.name) {
    ++n_names_;
    const auto [entry, is_new] = positions_.emplace(*field.name, fields_.size());
    field.is_repeat = !is_new && fields_[entry->second].node != nullptr;
    if (!field.is_repeat) entry->second = fields_.size();
  }
  fields_.push_back(std::move(field));
}

OutputField* OutputFields::At(std::size_t position) {
  return position < fields_.size() ? &fields_[position] : nullptr;
}

OutputField* OutputFields::Find(const std::string& name) {
  const auto entry = positions_.find(name);
  return entry == positions_.end() ? nullptr : &fields_[entry->second];
}

void OutputFields::ForgetNodes() {
  for (OutputField& field : fields_) field.node = nullptr;
  has_exported_ = !fields_.empty();
}

void OutputNames::Append(OutputName name) {
  const auto [entry, is_new] = positions_.emplace(name.name, names_.size());
  name.is_repeat = !is_new && !names_[entry->second].is_exported;
  if (!name.is_repeat) entry->second = names_.size();
  names_.push_back(std::move(name));
}

const OutputName* OutputNames::Find(const XMLCh* name, std::size_t expected) const {
  if (expected < names_.size()) {
    const OutputName& there = names_[expected];
    const bool is_first = !there.is_repeat && !there.is_exported;
    if (is_first && XStrEqualsUTF8Str(name, there.name.c_str())) return &there;
  }
  const auto entry = positions_.find(ToUTF8(name));
  return entry == positions_.end() ? nullptr : &names_[entry->second];
}

void OutputNames::MarkExported() {
  for (OutputName& name : names_) name.is_exported = true;
}

}  // namespace MCXPrsUtil
