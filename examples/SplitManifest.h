// Which model belongs to which split: from a manifest file or from arguments.
#ifndef MCX_EXAMPLES_SPLITMANIFEST_H
#define MCX_EXAMPLES_SPLITMANIFEST_H

#include <stdexcept>
#include <string>
#include <vector>

namespace examples {

// What the user gave cannot be understood; the text says where and why.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct SplitModel {
  std::vector<std::string> values;  // one per split variable, in their order
  std::string path;
};

// Reads a manifest: a header with the names of the split variables and "model" at its end, then a
// row per model with its split values and its path, which is relative to the manifest.
//
// `variables` says which variables there must be and in which order their values are wanted; when
// it is empty it becomes those of the header. Throws InputError.
std::vector<SplitModel> ReadManifest(const std::string& file, std::vector<std::string>& variables);

// Reads an argument VALUE[,VALUE...]=PATH. A value with a comma, an equals sign or a quote is put
// into quotes, a quote in it is doubled; the path is everything behind the first equals sign
// outside quotes. Throws InputError.
SplitModel ParseSplitArgument(const std::string& argument,
                              const std::vector<std::string>& variables);

}  // namespace examples

#endif  // MCX_EXAMPLES_SPLITMANIFEST_H
