// Sends one text-mode job to a printer port, for a program that does not wait for it.

#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "common/error.h"
#include "keldll-spool/port_job.h"
#include "platform/posix/spooler_protocol.h"
#include "toolkit/error_log.h"

namespace kel::spool {
namespace {

constexpr const char* kLocation = "[DLL.PrintReport]";

enum Argument : std::size_t { kHow = 1, kFile, kQueue, kTitle, kCodePage, kLogFolder, kParts };

Job ReadJob(const std::vector<std::string>& words) {
  Job job{words[kFile], words[kQueue], words[kTitle], words[kCodePage], {}};
  for (std::size_t i = kParts; i < words.size(); ++i) {
    const std::size_t descriptor = kFirstPart + i - kParts;
    job.parts.push_back({"/dev/fd/" + std::to_string(descriptor), words[i] == kTextPart});
  }
  return job;
}

// The host program's files and folder are not held while a printer is waited for.
void LetGo(std::size_t last_part) {
  std::vector<int> open;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/fd")) {
    open.push_back(std::stoi(entry.path().filename().string()));
  }
  for (const int descriptor : open) {
    if (descriptor > static_cast<int>(last_part)) ::close(descriptor);
  }
  std::filesystem::current_path("/");
}

// A job that is waited for ends with the program that waits.
void EndWithHost() {
#ifdef __linux__
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
#endif
}

void Tell(int number, std::string_view description) {
  const std::string text = std::to_string(number) + ' ' + std::string(description);
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

// Goes on in a process that nobody waits for; the one that was started tells that it is in hand.
void Detach() {
  const pid_t child = ::fork();
  if (child == -1) throw Error::FromSystem(errno, "cannot print");
  if (child > 0) {
    Tell(0, "");
    ::_exit(0);
  }
  ::setsid();
  ::close(STDERR_FILENO);
  ::dup2(STDOUT_FILENO, STDERR_FILENO);
}

int Run(const std::vector<std::string>& words) {
  const bool detached = words[kHow] == kDetached;
  bool told_elsewhere = false;
  try {
    LetGo(kFirstPart + words.size() - kParts - 1);
    detached ? Detach() : EndWithHost();
    told_elsewhere = detached;
    Send(ReadJob(words));
    if (!detached) Tell(0, "");
    return 0;
  } catch (const Error& failure) {
    if (!told_elsewhere) {
      Tell(failure.Number(), failure.Description());
    } else {
      AppendToErrorLog(words[kLogFolder], kLocation,
                       std::to_string(failure.Number()) + " : " + failure.Description());
    }
  }
  return 1;
}

}  // namespace
}  // namespace kel::spool

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv, argv + argc);
  if (words.size() <= kel::spool::kParts) {
    std::fputs("keldll-spool is started by programs that print in text mode.\n", stderr);
    return 2;
  }
  std::signal(SIGXFSZ, SIG_IGN);  // a file too large is an error to tell, as a full disk is
  try {
    return kel::spool::Run(words);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%d %s", kel::error_number::kInternalError,
                 failure.what());  // NOLINT(*-vararg)
    return 1;
  }
}
