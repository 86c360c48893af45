// Work that is shared among the machine's processors.
#pragma once

#include <cstddef>
#include <functional>

namespace kel {

/// How many threads RunOnThreads uses at most; at least 1.
std::size_t MostThreads() noexcept;

/// Runs `job(thread, i)` for every i below `jobs`, on the calling thread and others that end with
/// the call; `thread` is a number below MostThreads() that no other thread has meanwhile. The jobs
/// begin in order, each as soon as a thread is free. Throws what a job threw first; jobs that have
/// not begun then are left out. Does with fewer threads where the system gives no more.
void RunOnThreads(std::size_t jobs,
                  const std::function<void(std::size_t thread, std::size_t i)>& job);

}  // namespace kel
