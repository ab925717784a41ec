#include "FileCheck.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace examples {

std::string WhyNotReadable(const std::string& file) {
  std::error_code ignored;  // whatever it is, opening the file says it as well
  if (std::filesystem::is_directory(file, ignored)) return "this is a folder";
  errno = 0;
  const std::ifstream in(file, std::ios::binary);
  return in ? "" : std::string("cannot be opened: ") + std::strerror(errno);
}

}  // namespace examples
