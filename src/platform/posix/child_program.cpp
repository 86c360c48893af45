#include "platform/posix/child_program.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t is POSIX
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <mutex>
#include <thread>

#include "common/error.h"

extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace kel {
namespace {

// Above every number that a child program is given a file at, so that putting one in its place
// closes none that is still wanted.
constexpr int kFirstFree = 100;

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPause{10};
constexpr std::chrono::milliseconds kTimeToObey{2000};
constexpr std::chrono::milliseconds kTimeToVanish{1000};

template <typename Condition>
bool BecomesTrue(Condition condition, std::chrono::milliseconds longest) {
  const Clock::time_point until = Clock::now() + longest;
  while (!condition()) {
    if (Clock::now() >= until) return false;
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

// The programs of this process that nobody waits for.
struct LeftRunning {
  std::mutex guard;
  std::vector<pid_t> children;
};

LeftRunning& TheLeftRunning() {
  static LeftRunning left;
  return left;
}

// No program that has ended stays in the system's list for as long as the host runs.
void ForgetEnded() {
  LeftRunning& left = TheLeftRunning();
  const std::lock_guard lock(left.guard);
  const auto ended = [](pid_t child) { return ::waitpid(child, nullptr, WNOHANG) != 0; };
  left.children.erase(std::remove_if(left.children.begin(), left.children.end(), ended),
                      left.children.end());
}

}  // namespace

ChildProgram::ChildProgram() {
  ::posix_spawn_file_actions_init(&files_);
  ::posix_spawnattr_init(&attributes_);
  sigset_t none;
  sigset_t all;
  ::sigemptyset(&none);
  ::sigfillset(&all);
  ::posix_spawnattr_setsigmask(&attributes_, &none);
  ::posix_spawnattr_setsigdefault(&attributes_, &all);
  ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

ChildProgram::~ChildProgram() {
  if (apart_) {
    StopWholly();
  } else {
    HasEnded(0);
  }
  ::posix_spawnattr_destroy(&attributes_);
  ::posix_spawn_file_actions_destroy(&files_);
}

void ChildProgram::Give(const Descriptor& from, int as) {
  ::posix_spawn_file_actions_adddup2(&files_, from.Get(), as);
}

void ChildProgram::GiveNothing(int as) {
  ::posix_spawn_file_actions_addopen(&files_, as, "/dev/null", O_RDWR, 0);
}

void ChildProgram::SetApart() {
  apart_ = true;
  ::posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
}

void ChildProgram::Start(std::vector<std::string> arguments) {
  ForgetEnded();
  std::vector<char*> words;
  words.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) words.push_back(argument.data());
  words.push_back(nullptr);
  const int failure =
      ::posix_spawnp(&child_, words.front(), &files_, &attributes_, words.data(), environ);
  if (failure == 0) return;
  child_ = -1;
  throw Error::FromSystem(failure, "cannot start the program " + arguments.front());
}

void ChildProgram::Stop() { Signal(SIGTERM); }

void ChildProgram::StopWholly() {
  if (child_ == -1) return;
  const pid_t group = child_;
  Stop();
  BecomesTrue([this] { return IsOver(); }, kTimeToObey);
  Signal(SIGKILL);
  HasEnded(0);
  BecomesTrue([group] { return ::kill(-group, 0) == -1; }, kTimeToVanish);
}

bool ChildProgram::EndsWithin(std::chrono::milliseconds longest) {
  return BecomesTrue([this] { return HasEnded(WNOHANG); }, longest);
}

void ChildProgram::LeaveRunning() {
  if (child_ == -1) return;
  LeftRunning& left = TheLeftRunning();
  const std::lock_guard lock(left.guard);
  left.children.push_back(child_);
  child_ = -1;
}

bool ChildProgram::Succeeded(bool unknown) {
  HasEnded(0);
  return status_ ? *status_ == 0 : unknown;
}

void ChildProgram::Signal(int signal) const {
  if (child_ != -1) ::kill(apart_ ? -child_ : child_, signal);
}

bool ChildProgram::IsOver() const {
  siginfo_t end{};
  const int found = ::waitid(P_PID, static_cast<id_t>(child_), &end, WEXITED | WNOWAIT | WNOHANG);
  return found == -1 || end.si_pid == child_;
}

bool ChildProgram::HasEnded(int how_to_wait) {
  if (child_ == -1) return true;
  int end = 0;
  pid_t ended = -1;
  do {
    ended = ::waitpid(child_, &end, how_to_wait);
  } while (ended == -1 && errno == EINTR);
  if (ended == 0) return false;
  if (ended == child_) {
    constexpr int kEndedBySignal = 128;
    status_ = WIFEXITED(end) ? WEXITSTATUS(end) : kEndedBySignal + WTERMSIG(end);
  }
  child_ = -1;
  return true;
}

Pipe MakePipe() {
  std::array<int, 2> ends{};
#ifdef __linux__
  const int made = ::pipe2(ends.data(), O_CLOEXEC);  // no child of another thread gets them
#else
  const int made = ::pipe(ends.data());
#endif
  if (made == -1) throw Error::FromSystem(errno, "cannot make a pipe");
  Descriptor out(ends[0]);
  Descriptor in(ends[1]);
  return {Moved(std::move(out)), Moved(std::move(in))};
}

Descriptor Moved(Descriptor low) {
  Descriptor high(::fcntl(low.Get(), F_DUPFD_CLOEXEC, kFirstFree));
  if (!high.IsOpen()) throw Error::FromSystem(errno, "cannot keep a file open");
  return high;
}

std::string ReadToEnd(const Descriptor& pipe) {
  std::string text;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = ::read(pipe.Get(), block.data(), block.size());
    if (count == -1 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(block.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace kel
