// A second process of a test.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace kel::testing {

/// Runs `action` in a forked child that ends without any clean-up, as a killed process does.
/// The child's exit status is 0 when `action` returns true.
template <typename Action>
pid_t StartChild(Action action) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(action() ? 0 : 1);
  return child;
}

inline bool Succeeded(pid_t child) {
  int status = -1;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace kel::testing
