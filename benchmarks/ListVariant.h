/// Variants that fill a variable list.
#ifndef BENCHMARKS_LISTVARIANT_H_
#define BENCHMARKS_LISTVARIANT_H_

#include <mccommon/MCVarList.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Compare.h"

namespace bench {

/// A list of its own for each variant. Clearing the last one is not part of filling the next.
/// @param describe  tells all of the list that the variants must agree on.
inline Variant WithList(std::string name,
                        const std::function<void(MCMTD_NAMESPACE::MCVarList&)>& fill,
                        const std::function<std::string(MCMTD_NAMESPACE::MCVarList&)>& describe) {
  auto list = std::make_shared<std::optional<MCMTD_NAMESPACE::MCVarList>>();
  return {std::move(name), [list, fill] { fill(**list); },
          [list, describe] { return describe(**list); },
          [list] {
            list->reset();
            list->emplace();
          }};
}

}  // namespace bench

#endif  // BENCHMARKS_LISTVARIANT_H_
