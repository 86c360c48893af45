#include "data/threads.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace kel {
namespace {

/// More threads wait for memory rather than for a processor.
constexpr std::size_t kMostThreads = 8;

}  // namespace

std::size_t MostThreads() noexcept {
  return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostThreads);
}

void RunOnThreads(std::size_t jobs,
                  const std::function<void(std::size_t thread, std::size_t i)>& job) {
  std::atomic<std::size_t> next{0};
  std::mutex mutex;
  std::exception_ptr failure;  // guarded by mutex
  const auto work = [&](std::size_t thread) {
    try {
      for (std::size_t i = next++; i < jobs; i = next++) job(thread, i);
    } catch (...) {
      next = jobs;
      const std::lock_guard lock(mutex);
      if (!failure) failure = std::current_exception();
    }
  };

  std::vector<std::thread> others;
  const std::size_t threads = std::min(jobs, MostThreads());
  others.reserve(threads);
  try {
    while (others.size() + 1 < threads) others.emplace_back(work, others.size() + 1);
  } catch (const std::system_error&) {
    // The threads that there are do it.
  }
  work(0);
  for (std::thread& other : others) other.join();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace kel
