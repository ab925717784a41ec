// What the programs ask about the terminal they talk to.
#ifndef MCX_EXAMPLES_TERMINAL_H
#define MCX_EXAMPLES_TERMINAL_H

namespace examples {

// The width in columns of the terminal behind a file descriptor; 0 when it is no terminal.
int TerminalWidth(int fileDescriptor);

}  // namespace examples

#endif  // MCX_EXAMPLES_TERMINAL_H
