// What the name of a printer port means on systems with device files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kel {

/// Where the bytes of a text-mode job go: into a file (device, FIFO, plain file) or to a print
/// queue.
struct PortTarget {
  std::filesystem::path file;  // empty for a queue
  std::string queue;
};

/// Reads a port: "queue:NAME"; "LPT1:" to "LPT9:" and "PRN" (/dev/lp0 and on), "COM1:" to "COM9:"
/// (/dev/ttyS0 and on), in any case and with or without the colon; otherwise the path of a file,
/// which becomes absolute. A device must exist, and a name without a folder must be one of a device
/// or FIFO, so that a mistyped name does not become, or replace, a file somewhere. Throws Error 482
/// as RequirePortName does, and for a name that is no port.
PortTarget TargetOf(std::string_view name);

}  // namespace kel
