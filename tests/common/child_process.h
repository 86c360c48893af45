// A second process of a test, in step with it over pipes.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace kel {

/// One end of two processes saying "done" to each other, without waiting by time.
class Signal {
 public:
  Signal() { EXPECT_EQ(::pipe(ends_.data()), 0); }
  ~Signal() {
    ::close(ends_[0]);
    ::close(ends_[1]);
  }
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  void Give() const { EXPECT_EQ(::write(ends_[1], "!", 1), 1); }
  void Await() const {
    char told = 0;
    EXPECT_EQ(::read(ends_[0], &told, 1), 1);
  }

 private:
  std::array<int, 2> ends_{};
};

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

}  // namespace kel
