/// Generated PMML documents. The same shape gives the same bytes on every machine.
///
/// The text is like that of models fitted to real data: trees of irregular form with numeric and
/// set predicates, score distributions, long decimals, labels with some letters beyond ASCII. No
/// stretch of it repeats every few bytes.
#ifndef BENCHMARKS_DOCUMENTS_H_
#define BENCHMARKS_DOCUMENTS_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace bench {

struct PmmlShape {
  std::size_t categoricalFields = 12;
  std::size_t valuesPerField = 5;  ///< at most 40
  std::size_t bytes = 0;  ///< the tree grows until the document is about this long; 0: no model
  std::uint64_t dictionarySeed = 1;
  std::uint64_t treeSeed = 1;
  /// Leaves one value in twelve out of the dictionary, chosen by the tree seed, as the splits of
  /// one data set do.
  bool omitSomeValues = false;
};

/// A document with `categoricalFields` categorical fields, a tenth as many continuous ones (at
/// least four), two derived fields and one tree model.
std::string MakePmml(const PmmlShape& shape);

/// 1 MB: a dictionary of 200 fields by 10 values, the rest is a tree.
std::string MegabytePmml();

/// A directory of its own under the system's place for temporary files, removed at the end.
class TempDirectory {
 public:
  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;
  std::string PathOf(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

void WriteFile(const std::string& path, const std::string& text);
std::string ReadFile(const std::string& path);

}  // namespace bench

#endif  // BENCHMARKS_DOCUMENTS_H_
