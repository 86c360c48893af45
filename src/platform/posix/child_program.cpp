#include "platform/posix/child_program.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t is POSIX
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <cstddef>

#include "common/error.h"

extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace kel {
namespace {

// Above every number that a child program is given a file at, so that putting one in its place
// closes none that is still wanted.
constexpr int kFirstFree = 100;

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
  if (child_ != -1) Succeeded(true);
  ::posix_spawnattr_destroy(&attributes_);
  ::posix_spawn_file_actions_destroy(&files_);
}

void ChildProgram::Give(const Descriptor& from, int as) {
  ::posix_spawn_file_actions_adddup2(&files_, from.Get(), as);
}

void ChildProgram::GiveNothing(int as) {
  ::posix_spawn_file_actions_addopen(&files_, as, "/dev/null", O_RDWR, 0);
}

void ChildProgram::Start(std::vector<std::string> arguments) {
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

void ChildProgram::Stop() {
  if (child_ != -1) ::kill(child_, SIGTERM);
}

bool ChildProgram::Succeeded(bool unknown) {
  int status = 0;
  pid_t ended = -1;
  do {
    ended = ::waitpid(child_, &status, 0);
  } while (ended == -1 && errno == EINTR);
  child_ = -1;
  return ended == -1 ? unknown : WIFEXITED(status) && WEXITSTATUS(status) == 0;
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
