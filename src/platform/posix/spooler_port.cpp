#include "platform/posix/spooler_port.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t is POSIX
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/temp_folder.h"
#include "engine/code_page.h"
#include "platform/posix/port_target.h"
#include "platform/posix/spooler_protocol.h"

extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace kel {
namespace {

namespace fs = std::filesystem;

// Above every descriptor that the helper is to find its files at, so that putting one in its place
// closes none that is still wanted.
constexpr int kFirstFree = kFirstPart + 64;

// A descriptor that is closed with the object and in the programs that are started.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() {
    if (number_ != -1) ::close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const { return number_; }

 private:
  int number_;
};

Descriptor Moved(int number) {
  const Descriptor low(number);
  return Descriptor(::fcntl(number, F_DUPFD_CLOEXEC, kFirstFree));
}

Descriptor OpenPart(const fs::path& file) {
  const int opened = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (opened == -1) throw Error::FromSystem(errno, "cannot print " + file.string());
  Descriptor part = Moved(opened);
  if (part.Get() == -1) throw Error::FromSystem(errno, "cannot print " + file.string());
  return part;
}

// What the helper is started with: its arguments and its open files.
class Launch {
 public:
  Launch() {
    ::posix_spawn_file_actions_init(&files_);
    ::posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t usual;
    ::sigemptyset(&none);
    ::sigfillset(&usual);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setsigdefault(&attributes_, &usual);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Launch() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&files_);
  }
  Launch(const Launch&) = delete;
  Launch& operator=(const Launch&) = delete;

  void Give(const Descriptor& from, int as) {
    ::posix_spawn_file_actions_adddup2(&files_, from.Get(), as);
  }
  void GiveNothing(int as) {
    ::posix_spawn_file_actions_addopen(&files_, as, "/dev/null", O_RDWR, 0);
  }

  pid_t Start(std::vector<std::string> arguments) const {
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    pid_t child = 0;
    const int failure =
        ::posix_spawn(&child, words.front(), &files_, &attributes_, words.data(), environ);
    if (failure != 0) throw Error::FromSystem(failure, "cannot start " + arguments.front());
    return child;
  }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

std::string ReadAll(const Descriptor& pipe) {
  std::string text;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = ::read(pipe.Get(), block.data(), block.size());
    if (count == -1 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(block.data(), static_cast<std::size_t>(count));
  }
}

// A host that ignores SIGCHLD has nothing to wait for here; the report tells how it went.
void Reap(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) == -1 && errno == EINTR) {
  }
}

void RequireSent(const std::string& report) {
  int number = error_number::kPrinterError;
  const auto [end, failure] = std::from_chars(report.data(), report.data() + report.size(), number);
  if (failure != std::errc()) {
    throw Error(error_number::kPrinterError, "the print helper ended before the job was sent");
  }
  if (number == 0) return;
  throw Error(number, std::string(end, report.data() + report.size()).substr(1));
}

bool IsProgram(const fs::path& path) { return ::access(path.c_str(), X_OK) == 0; }

}  // namespace

void SpoolerPort::Send(const PortJob& job) {
  const PortTarget target = TargetOf(job.port);
  const CodePage known(job.code_page);
  Launch launch;
  std::vector<std::string> arguments = {SpoolerProgram().string(),
                                        waiting_ == Waiting::kNever ? kDetached : kWaitedFor,
                                        target.file.string(),
                                        target.queue,
                                        job.title,
                                        job.code_page,
                                        TempFolder().string()};
  std::vector<Descriptor> parts;
  for (const PortJob::Part& part : job.parts) {
    parts.push_back(OpenPart(part.file));
    launch.Give(parts.back(), kFirstPart + static_cast<int>(parts.size()) - 1);
    arguments.emplace_back(part.is_text ? kTextPart : kBinaryPart);
  }

  std::array<int, 2> ends{};
  if (::pipe(ends.data()) == -1) throw Error::FromSystem(errno, "cannot print");
  const Descriptor report = Moved(ends[0]);
  Descriptor reported = Moved(ends[1]);
  launch.GiveNothing(STDIN_FILENO);
  launch.GiveNothing(STDOUT_FILENO);
  launch.Give(reported, STDERR_FILENO);
  const pid_t child = launch.Start(std::move(arguments));
  reported = Descriptor();
  const std::string told = ReadAll(report);
  Reap(child);
  RequireSent(told);
}

fs::path SpoolerProgram() {
  constexpr const char* kName = "keldll-spool";
  std::vector<fs::path> places;
  const char* const chosen = std::getenv("KELDLL_SPOOL");
  if (chosen != nullptr) places.emplace_back(chosen);
  std::error_code unknown;
  const fs::path running = fs::read_symlink("/proc/self/exe", unknown).parent_path();
  if (!unknown) {
    places.push_back(running / kName);
    places.push_back(running / ".." / "libexec" / kName);
  }
  places.push_back(fs::path(KELDLL_LIBEXEC_FOLDER) / kName);
  for (const fs::path& place : places) {
    if (IsProgram(place)) return place;
  }
  throw Error(error_number::kFileNotFound,
              "cannot print: the program keldll-spool is not installed");
}

}  // namespace kel
