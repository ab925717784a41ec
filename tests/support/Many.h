// How many levels, or elements side by side, the tests of deep and wide documents make.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_MANY_H
#define MCXPRSUTIL_TESTS_SUPPORT_MANY_H

#include <cstdlib>

namespace test_support {

// A hundred thousand, or what MCX_MANY asks for.
inline int Many() {
  const char* text = std::getenv("MCX_MANY");
  return text != nullptr ? std::atoi(text) : 100'000;
}

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_MANY_H
