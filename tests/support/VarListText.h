// Everything that a filled variable list holds, as text.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_VARLISTTEXT_H
#define MCXPRSUTIL_TESTS_SUPPORT_VARLISTTEXT_H

#include <string>

#include "mccommon/MCVarList.h"

namespace test_support {

// A line per variable.
std::string TextOf(const MCMTD_NAMESPACE::MCVarList& list);

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_VARLISTTEXT_H
