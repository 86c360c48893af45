#include "keldll/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "common/error.h"

namespace kel::command {

void ReserveStandardStreams() {
  // Opened the wrong way round: a write to a missing standard output must fail, not vanish.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    const int mode = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", mode) != descriptor) _exit(1);  // NOLINT(*-vararg)
  }
  // A file beyond the size limit is then a failed write like any other.
  std::signal(SIGXFSZ, SIG_IGN);
}

void WriteStandardOutput(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw Error::FromSystem(errno, "cannot write to standard output");
    }
  }
}

}  // namespace kel::command
