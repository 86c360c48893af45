#include "keldll/file_ending.h"

#include <filesystem>

#include "common/names.h"

namespace kel::command {

std::string FileEnding(const std::string& path) {
  const std::string name = std::filesystem::path(path).filename();
  const std::size_t point = name.rfind('.');
  return point == std::string::npos ? "" : name.substr(point);
}

bool EndsAs(const std::string& path, std::string_view ending) {
  return SameName(FileEnding(path), ending);
}

}  // namespace kel::command
