// The caller's choice among the fields of a document.
#ifndef MCXPRSUTIL_READERS_PMML_NAMEFILTER_H
#define MCXPRSUTIL_READERS_PMML_NAMEFILTER_H

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

namespace MCXPrsUtil {

// Answers what FindXStrInList() would, from an index: searching a long list for every field of a
// wide dictionary would take quadratic time.
class NameFilter {
 public:
  // `names` (UTF-8) is not needed afterwards. An empty list admits every name.
  explicit NameFilter(const std::vector<std::string>& names);
  NameFilter(const NameFilter&) = delete;
  NameFilter& operator=(const NameFilter&) = delete;

  bool Admits(const XMLCh* name) const;

 private:
  std::vector<std::vector<XMLCh>> names_;
  std::unordered_set<std::u16string_view> index_;  // views of names_
};

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_READERS_PMML_NAMEFILTER_H
