#include "keldll-spool/queue_pipe.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <utility>

#include "common/error.h"
#include "common/text_cells.h"

extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace kel::spool {
namespace {

std::array<int, 2> MakePipe() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) == -1) throw Error::FromSystem(errno, "cannot print");
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  return ends;
}

std::string ReadAll(int descriptor) {
  std::string text;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = ::read(descriptor, block.data(), block.size());
    if (count == -1 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(block.data(), static_cast<std::size_t>(count));
  }
}

void Close(int& descriptor) {
  if (descriptor != -1) ::close(std::exchange(descriptor, -1));
}

}  // namespace

QueuePipe::QueuePipe(const std::string& queue, const std::string& title) : queue_(queue) {
  const std::array<int, 2> job = MakePipe();
  const std::array<int, 2> answer = MakePipe();
  posix_spawn_file_actions_t files{};
  ::posix_spawn_file_actions_init(&files);
  ::posix_spawn_file_actions_adddup2(&files, job[0], STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&files, answer[1], STDERR_FILENO);
  std::array<std::string, 7> words = {"lp", "-d", queue, "-o", "raw", "-t", title};
  std::array<char*, 8> arguments{};
  for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
  const int failure = ::posix_spawnp(&child_, "lp", &files, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&files);
  ::close(job[0]);
  ::close(answer[1]);
  job_ = job[1];
  answer_ = answer[0];
  if (failure == 0) return;
  child_ = -1;
  throw Error(error_number::kPrinterError,
              "cannot print to the queue " + queue + ": the program lp cannot be started (" +
                  std::strerror(failure) + ")");  // NOLINT(concurrency-mt-unsafe)
}

QueuePipe::~QueuePipe() {
  Close(job_);
  Close(answer_);
  int status = 0;
  if (child_ != -1) ::waitpid(child_, &status, 0);
}

void QueuePipe::Feed(const std::function<void(OutputFile&)>& write) {
  std::exception_ptr failure;
  try {
    OutputFile pipe("/dev/fd/" + std::to_string(job_));
    write(pipe);
  } catch (const Error&) {
    failure = std::current_exception();  // when lp has ended, what it says is the reason
  }
  Close(job_);
  RequireTaken();
  if (failure) std::rethrow_exception(failure);
}

void QueuePipe::RequireTaken() {
  const std::string said = ReadAll(answer_);
  int status = 0;
  while (::waitpid(child_, &status, 0) == -1 && errno == EINTR) {
  }
  child_ = -1;
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
  const std::string reason(TrimBlanks(CleanText(said)));
  throw Error(error_number::kPrinterError, "cannot print to the queue " + queue_ + ": " +
                                               (reason.empty() ? "lp failed" : reason));
}

}  // namespace kel::spool
