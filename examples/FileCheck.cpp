#include "FileCheck.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace examples {
namespace {

std::string WithReason(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

}  // namespace

// Nothing is read of a pipe, which would be missing afterwards.
std::string WhyNotReadable(const std::string& file) {
  std::error_code ignored;  // whatever it is, opening the file says it as well
  if (std::filesystem::is_directory(file, ignored)) return "this is a folder";
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in) return WithReason("cannot be opened");
  if (std::filesystem::is_regular_file(file, ignored)) (void)in.peek();
  return in.bad() ? WithReason("cannot be read") : "";
}

}  // namespace examples
