// Runs a program as a user would, and keeps what it wrote.
#ifndef MCX_TESTS_EXAMPLES_RUNPROGRAM_H
#define MCX_TESTS_EXAMPLES_RUNPROGRAM_H

#include <string>
#include <vector>

namespace testing_examples {

struct ProgramResult {
  int exitCode = -1;  // -1 when a signal ended it
  std::string out;
  std::string error;
};

struct RunOptions {
  std::string input;             // what it reads from standard input
  bool errorIsTerminal = false;  // standard error is a terminal of 80 columns
};

// `arguments` begin behind the program's name. Throws std::runtime_error when it cannot be started.
ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const RunOptions& options = {});

// A folder for one test, removed with its content.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path(const std::string& name) const { return path_ + "/" + name; }
  const std::string& Path() const { return path_; }

  // Returns the path of the file.
  std::string Write(const std::string& name, const std::string& content) const;

 private:
  std::string path_;
};

std::string ReadFile(const std::string& path);

// A small PMML document with a regression tree on `x` that always predicts `score`.
std::string TreeDocument(const std::string& score, const std::string& functionName = "regression");

}  // namespace testing_examples

#endif  // MCX_TESTS_EXAMPLES_RUNPROGRAM_H
