// Files of bytes whose failures tell why.
#ifndef MCX_EXAMPLES_BYTEFILE_H
#define MCX_EXAMPLES_BYTEFILE_H

#include <cstddef>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace examples {

// What went wrong with a file; the text holds its path.
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct CloseFile {
  void operator()(std::FILE* file) const { (void)std::fclose(file); }
};

class InputFile {
 public:
  // The path "-" stands for standard input. Throws FileError.
  explicit InputFile(const std::string& path);

  // Reads as much as there is and fits; 0 at the end. Throws FileError.
  std::size_t Read(char* buffer, std::size_t bytes);

 private:
  std::string name_;
  std::unique_ptr<std::FILE, CloseFile> file_;
};

class OutputFile {
 public:
  // An empty path stands for standard output; a file that is there is overwritten. Throws
  // FileError.
  explicit OutputFile(const std::string& path);

  // Throws FileError.
  void Write(std::string_view bytes);

  // Until this has returned, what was written may not be in the file. Throws FileError.
  void Close();

 private:
  std::string name_;
  std::unique_ptr<std::FILE, CloseFile> file_;
};

// Whether two paths lead to one file on a disk; false for terminals, pipes and other devices, and
// when one of them leads nowhere.
bool IsSameRegularFile(const std::string& a, const std::string& b);

}  // namespace examples

#endif  // MCX_EXAMPLES_BYTEFILE_H
