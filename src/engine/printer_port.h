// Where text-mode jobs go.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kel {

/// A print queue as a port: kQueuePrefix and its name.
inline constexpr std::string_view kQueuePrefix = "queue:";

/// One text-mode job: the bytes of its files, one after the other.
struct PortJob {
  struct Part {
    std::filesystem::path file;
    bool is_text = false;  // characters are put into the printer's code page
  };

  /// A device, a FIFO or a plain file by its path; "LPT1:" and its like; "queue:NAME".
  std::string port;
  std::string title;        // for the print queue
  std::string code_page;    // see CodePage
  std::vector<Part> parts;  // in the order in which they are sent
};

/// Sends jobs to printer ports. What is sent is what the files hold at the call; they may be
/// replaced or deleted right after it.
class PrinterPort {
 public:
  virtual ~PrinterPort() = default;
  /// Begins to send and returns at once: a slow or absent printer is waited for in the background,
  /// and what fails there is written to the error log. Throws Error when the job cannot begin.
  virtual void Send(const PortJob& job) = 0;
};

}  // namespace kel
