#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace examples {

int TerminalWidth(int fileDescriptor) {
  if (isatty(fileDescriptor) == 0) return 0;
  winsize size{};
  if (ioctl(fileDescriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
  return size.ws_col;
}

}  // namespace examples
