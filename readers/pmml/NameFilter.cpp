#include "readers/pmml/NameFilter.h"

#include "mcxprsutil/MCXTranscoder.h"

namespace MCXPrsUtil {

NameFilter::NameFilter(const std::vector<std::string>& names) {
  names_.reserve(names.size());
  index_.reserve(names.size());
  for (const std::string& name : names) {
    index_.emplace(names_.emplace_back(ToUTF16(name.c_str())).data());
  }
}

bool NameFilter::Admits(const XMLCh* name) const {
  return index_.empty() || index_.count(name) != 0;
}

}  // namespace MCXPrsUtil
