#include "ParseMessage.h"

#include <cstddef>
#include <cstdio>

namespace examples {

ParseMessage ReadParseMessage(const std::string& message) {
  int line = 0;
  int column = 0;
  int length = 0;
  std::sscanf(message.c_str(), "line %d, column %d: %n", &line, &column, &length);
  if (length == 0) return {message, {}, {}};
  if (line == 0) return {message.substr(static_cast<std::size_t>(length)), {}, {}};
  return {message, line, column};
}

}  // namespace examples
