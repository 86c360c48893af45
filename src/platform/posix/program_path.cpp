#include "platform/posix/program_path.h"

#include <unistd.h>

#include <cstdlib>
#include <system_error>

namespace kel {
namespace {

constexpr const char* kUsualPath = "/usr/local/bin:/usr/bin:/bin";

bool IsProgram(const std::filesystem::path& path) {
  std::error_code unknown;
  return std::filesystem::is_regular_file(path, unknown) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::filesystem::path ProgramPath(std::string_view name) {
  if (name.find('/') != std::string_view::npos) return IsProgram(name) ? name : "";
  const char* const chosen = std::getenv("PATH");
  std::string_view rest = chosen == nullptr ? kUsualPath : chosen;
  while (!rest.empty()) {
    const std::string_view folder = rest.substr(0, rest.find(':'));
    rest.remove_prefix(folder.size() < rest.size() ? folder.size() + 1 : rest.size());
    std::filesystem::path path = std::filesystem::path(folder) / name;
    if (path.is_absolute() && IsProgram(path)) return path;
  }
  return {};
}

}  // namespace kel
