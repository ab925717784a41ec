#include "ByteFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace examples {
namespace {

[[noreturn]] void Fail(const std::string& name, const char* what) {
  throw FileError(name + ": " + what + ": " + std::strerror(errno));
}

}  // namespace

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? "standard input" : path),
      file_(path == "-" ? stdin : std::fopen(path.c_str(), "rb")) {
  if (file_ == nullptr) Fail(name_, "cannot be opened");
}

std::size_t InputFile::Read(char* buffer, std::size_t bytes) {
  const std::size_t count = std::fread(buffer, 1, bytes, file_.get());
  if (std::ferror(file_.get()) != 0) Fail(name_, "cannot be read");
  return count;
}

OutputFile::OutputFile(const std::string& path)
    : name_(path.empty() ? "standard output" : path),
      file_(path.empty() ? stdout : std::fopen(path.c_str(), "wb")) {
  if (file_ == nullptr) Fail(name_, "cannot be opened for writing");
}

void OutputFile::Write(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
    Fail(name_, "cannot be written");
  }
}

void OutputFile::Close() {
  if (std::fclose(file_.release()) != 0) Fail(name_, "cannot be written");
}

bool IsSameRegularFile(const std::string& a, const std::string& b) {
  std::error_code ignored;  // a file that is not there is no other file
  return std::filesystem::is_regular_file(a, ignored) && std::filesystem::equivalent(a, b, ignored);
}

}  // namespace examples
