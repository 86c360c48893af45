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
/// (/dev/ttyS0 and on), in any case and with or without the colon; otherwise the path of a file. A
/// path without a folder, and a device, must exist, so that a mistyped name does not become a file
/// somewhere.
/// Throws Error 482 for a name with a blank, a quote, "&", "%" or a control character, none of
/// which every system's batch files could pass on, and for one that is no port.
PortTarget TargetOf(std::string_view port);

}  // namespace kel
