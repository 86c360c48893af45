// Printer ports of systems with device files: a helper program sends each job.
#pragma once

#include <filesystem>

#include "engine/printer_port.h"

namespace kel {

/// Hands every job to a `keldll-spool` of its own, which sends it while the program goes on, or
/// has ended. Jobs to one device or FIFO do not mix. A plain file is replaced by the job once that
/// is whole. A print queue gets one raw job.
///
/// What cannot be found out at once (a printer that refuses, a full disk) is in the error log of
/// the calling thread's temporary folder.
class SpoolerPort : public PrinterPort {
 public:
  /// With kUntilSent, Send returns when the last byte is sent and throws what failed.
  enum class Waiting { kNever, kUntilSent };
  explicit SpoolerPort(Waiting waiting = Waiting::kNever) : waiting_(waiting) {}

  void Send(const PortJob& job) override;

 private:
  Waiting waiting_;
};

/// The helper program: $KELDLL_SPOOL, else keldll-spool beside the running program, in the libexec
/// folder beside it, or where this library was installed. Throws Error 53 when it is in none.
std::filesystem::path SpoolerProgram();

}  // namespace kel
