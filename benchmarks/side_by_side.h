// What the benchmarks measure with, and the plainest yardstick.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>

namespace kel::benchmarks {

inline double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The least of some runs.
inline double BestSeconds(int runs, const std::function<void()>& work) {
  double best = std::numeric_limits<double>::max();
  for (int run = 0; run < runs; ++run) best = std::min(best, Seconds(work));
  return best;
}

/// Copies a file with the program `cat`.
inline void Cat(const std::filesystem::path& from, const std::filesystem::path& to) {
  const pid_t child = fork();
  if (child == 0) {
    const int out = open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(out, STDOUT_FILENO);
    execlp("cat", "cat", from.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) std::abort();
}

}  // namespace kel::benchmarks
