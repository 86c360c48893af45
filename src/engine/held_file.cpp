#include "engine/held_file.h"

#include <atomic>
#include <string>
#include <system_error>

namespace kel {

std::shared_ptr<const HeldFile> HeldFile::Hold(const std::filesystem::path& file) {
  static std::atomic<unsigned> held{0};
  std::filesystem::path path = file.parent_path() / ("_kelHeld" + std::to_string(++held) + ".rpt");
  std::error_code failure;
  std::filesystem::remove(path, failure);  // of a process that was killed
  std::filesystem::create_hard_link(file, path, failure);
  if (failure) return nullptr;
  return std::shared_ptr<const HeldFile>(new HeldFile(std::move(path)));
}

HeldFile::~HeldFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace kel
