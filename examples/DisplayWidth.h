// UTF-8 text on a terminal: how wide it shows, and what may be sent there.
#ifndef MCX_EXAMPLES_DISPLAYWIDTH_H
#define MCX_EXAMPLES_DISPLAYWIDTH_H

#include <cstddef>
#include <string>
#include <string_view>

namespace examples {

// The number of terminal columns that a text takes: two for East Asian wide characters and emoji,
// none for combining marks, one for all others.
std::size_t DisplayWidth(std::string_view utf8);

// The length in bytes of the longest beginning of a text that takes at most `columns` columns and
// ends between characters; at least one character, so that a caller gets on.
std::size_t PrefixThatFits(std::string_view utf8, std::size_t columns);

// The text with control characters written as \n, \t or \u001b and bytes that are no UTF-8 as
// U+FFFD: names from a document never steer the terminal.
std::string Printable(std::string_view text);

}  // namespace examples

#endif  // MCX_EXAMPLES_DISPLAYWIDTH_H
