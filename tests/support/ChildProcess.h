// Runs a piece of a test in a process of its own, which may end in any way.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_CHILDPROCESS_H
#define MCXPRSUTIL_TESTS_SUPPORT_CHILDPROCESS_H

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>

namespace test_support {

struct ChildEnd {
  int exit_code = -1;  // -1 when a signal ended it
  int signal = 0;
};

// Forks, and ends the child with what `work` returns. The child writes to neither standard output
// nor standard error, runs no destructors of globals, and is killed after a minute. Not for
// programs with threads.
template <class Work>
ChildEnd RunInChild(Work work) {
  std::fflush(nullptr);  // or the child writes it again
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    alarm(60);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    _exit(work());
  }
  int status = 0;
  while (waitpid(child, &status, 0) != child) {
    if (errno != EINTR) throw std::runtime_error("waitpid");
  }
  if (WIFSIGNALED(status)) return {-1, WTERMSIG(status)};
  return {WEXITSTATUS(status), 0};
}

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_CHILDPROCESS_H
