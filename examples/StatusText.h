// The status codes of the library in words that a user of the programs understands.
#ifndef MCX_EXAMPLES_STATUSTEXT_H
#define MCX_EXAMPLES_STATUSTEXT_H

#include <string>

#include "mccommon/MCStatus.h"

namespace examples {

// What the code means, without its number; "unknown status" for a code that the library never
// raises.
const char* StatusText(int code);

// The same with the number behind it: "the file is not ... (status 105)".
std::string StatusText(const MCCommon::MCStatus& status);

}  // namespace examples

#endif  // MCX_EXAMPLES_STATUSTEXT_H
