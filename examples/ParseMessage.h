// What the parser says about a document that it cannot read.
#ifndef MCX_EXAMPLES_PARSEMESSAGE_H
#define MCX_EXAMPLES_PARSEMESSAGE_H

#include <optional>
#include <string>

namespace examples {

struct ParseMessage {
  std::string text;  // "line 3, column 7: why", or only why where no place is known
  std::optional<int> line;
  std::optional<int> column;
};

// Takes a message of the library apart. A parser that could not begin at all tells line 0, which is
// no place to look at: that is left out.
ParseMessage ReadParseMessage(const std::string& message);

}  // namespace examples

#endif  // MCX_EXAMPLES_PARSEMESSAGE_H
