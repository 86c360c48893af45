#include "platform/posix/port_target.h"

#include <optional>
#include <system_error>

#include "common/error.h"
#include "common/names.h"
#include "common/text_cells.h"
#include "engine/print_files.h"
#include "engine/printer_port.h"

namespace kel {
namespace {

[[noreturn]] void Refuse(std::string_view port, const char* why) {
  throw Error(error_number::kPrinterError,
              "cannot print to the port \"" + std::string(port) + "\": " + why);
}

// The device of "LPT2:" by its prefix "LPT": the first one has number 0.
std::optional<std::string> Device(std::string_view name, std::string_view prefix,
                                  const std::string& device) {
  if (name.size() != prefix.size() + 1 || !SameName(name.substr(0, prefix.size()), prefix)) {
    return {};
  }
  const char digit = name.back();
  if (digit < '1' || digit > '9') return {};
  return device + static_cast<char>(digit - 1);
}

std::optional<std::string> PublishedPort(std::string_view port) {
  std::string_view name = port;
  if (!name.empty() && name.back() == ':') name.remove_suffix(1);
  if (SameName(name, "PRN")) name = "LPT1";
  const auto parallel = Device(name, "LPT", "/dev/lp");
  return parallel ? parallel : Device(name, "COM", "/dev/ttyS");
}

bool Exists(const std::filesystem::path& file) {
  std::error_code unreadable;
  return std::filesystem::exists(file, unreadable);
}

// A device or a FIFO.
bool IsStream(const std::filesystem::path& file) {
  std::error_code unreadable;
  return std::filesystem::is_other(file, unreadable);
}

bool IsDevice(const std::filesystem::path& file) {
  constexpr std::string_view kDevices = "/dev/";
  constexpr std::string_view kSharedMemory = "/dev/shm/";  // holds plain files
  const std::string_view name = file.native();
  return name.starts_with(kDevices) && !name.starts_with(kSharedMemory);
}

}  // namespace

PortTarget TargetOf(std::string_view name) {
  const std::string_view port = TrimBlanks(name);
  RequirePortName(port);
  if (port.substr(0, kQueuePrefix.size()) == kQueuePrefix) {
    const std::string_view queue = port.substr(kQueuePrefix.size());
    if (queue.empty()) Refuse(port, "it names no print queue");
    return {{}, std::string(queue)};
  }
  const std::optional<std::string> device = PublishedPort(port);
  const std::filesystem::path file(device.value_or(std::string(port)));
  if (port.find('/') == std::string_view::npos && !device && !IsStream(file)) {
    Refuse(port, "it is no device path, no LPT1: and no queue:NAME");
  }
  if (IsDevice(file) && !Exists(file)) {
    Refuse(port, ("this computer has no " + file.string()).c_str());
  }
  return {std::filesystem::absolute(file), {}};
}

}  // namespace kel
