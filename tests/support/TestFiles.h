// Files of tests.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_TESTFILES_H
#define MCXPRSUTIL_TESTS_SUPPORT_TESTFILES_H

#include <string>

#include "xml/TestDocument.h"

namespace test_support {

using xml_test::ReadFile;
using xml_test::ScratchFolder;

// Returns `path`.
inline std::string WriteTo(const std::string& path, const std::string& content) {
  xml_test::WriteFile(path, content);
  return path;
}

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_TESTFILES_H
