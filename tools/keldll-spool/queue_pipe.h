// A raw job to a print queue.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "common/file.h"

namespace kel::spool {

/// The bytes of one job on their way into a print queue, through the program `lp` of the system's
/// print service (started without a shell).
class QueuePipe {
 public:
  /// Throws Error 482 when there is no `lp`.
  QueuePipe(const std::string& queue, const std::string& title);
  ~QueuePipe();
  QueuePipe(const QueuePipe&) = delete;
  QueuePipe& operator=(const QueuePipe&) = delete;

  /// Lets `write` write the job and waits until the queue has taken it. Throws Error 482 with what
  /// the print service says.
  void Feed(const std::function<void(OutputFile&)>& write);

 private:
  void RequireTaken();

  std::string queue_;
  pid_t child_ = -1;
  int job_ = -1;     // where the job's bytes go
  int answer_ = -1;  // what lp says
};

}  // namespace kel::spool
