// Does something as a user to whom the permissions of files apply.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_FOREIGNUSER_H
#define MCXPRSUTIL_TESTS_SUPPORT_FOREIGNUSER_H

#include <grp.h>
#include <unistd.h>

#include "support/ChildProcess.h"

namespace test_support {

inline constexpr int kCannotChangeUser = 99;

// Runs `work` in a process of its own, for root as nobody, whom permissions bind.
template <class Work>
ChildEnd RunAsNobody(Work work) {
  return RunInChild([&] {
    constexpr unsigned kNobody = 65534;
    const bool is_bound = geteuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(kNobody) == 0 &&
                                             setuid(kNobody) == 0);
    return is_bound ? work() : kCannotChangeUser;
  });
}

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_FOREIGNUSER_H
