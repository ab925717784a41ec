/// The list of comparisons, and the table that they print.
#ifndef BENCHMARKS_SUITE_H_
#define BENCHMARKS_SUITE_H_

#include <functional>
#include <string>
#include <vector>

#include "Compare.h"

namespace bench {

struct RunOptions {
  std::vector<std::string> filters;  ///< parts of "group/operation size"; none: everything
  int rounds = 9;
  bool memory = true;
  bool markdown = false;
};

class Suite {
 public:
  /// Makes a comparison and everything it needs; called just before it is measured, and the
  /// comparison is destroyed right after, so that at most one set of inputs exists at a time.
  using Factory = std::function<Comparison()>;

  void Add(std::string group, std::string operation, std::string size, Factory make);

  void List() const;

  /// Measures and prints the comparisons that the filters select.
  /// @return false when a result was wrong, a comparison threw, or nothing was selected.
  bool Run(const RunOptions& options) const;

 private:
  struct Entry {
    std::string group;
    std::string operation;
    std::string size;
    Factory make;
    std::string Key() const { return group + "/" + operation + " " + size; }
  };

  static bool RunEntry(const Entry& entry, const RunOptions& options);

  std::vector<Entry> entries_;
};

}  // namespace bench

#endif  // BENCHMARKS_SUITE_H_
