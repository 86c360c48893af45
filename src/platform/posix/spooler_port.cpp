#include "platform/posix/spooler_port.h"

#include <fcntl.h>
#include <unistd.h>

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
#include "platform/posix/child_program.h"
#include "platform/posix/port_target.h"
#include "platform/posix/spooler_protocol.h"

namespace kel {
namespace {

namespace fs = std::filesystem;

Descriptor OpenPart(const fs::path& file) {
  Descriptor part(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!part.IsOpen()) throw Error::FromSystem(errno, "cannot print " + file.string());
  return Moved(std::move(part));
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
  ChildProgram helper;
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
    helper.Give(parts.back(), kFirstPart + static_cast<int>(parts.size()) - 1);
    arguments.emplace_back(part.is_text ? kTextPart : kBinaryPart);
  }

  Pipe report = MakePipe();
  helper.GiveNothing(STDIN_FILENO);
  helper.GiveNothing(STDOUT_FILENO);
  helper.Give(report.in, STDERR_FILENO);
  helper.Start(std::move(arguments));
  report.in = Descriptor();
  RequireSent(ReadToEnd(report.out));
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
