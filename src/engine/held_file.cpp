#include "engine/held_file.h"

#include <atomic>
#include <string>
#include <system_error>
#include <utility>

namespace kel {
namespace {

constexpr const char* kName = "_kelHeld";

// A process that was killed leaves its files behind. The folder is this thread's own.
void RemoveLeftOvers(const std::filesystem::path& folder) {
  thread_local bool done = false;
  if (std::exchange(done, true)) return;
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(folder, failure)) {
    const bool held = entry.path().filename().string().rfind(kName, 0) == 0;
    if (held) std::filesystem::remove(entry.path(), failure);
  }
}

}  // namespace

std::shared_ptr<const HeldFile> HeldFile::Hold(const std::filesystem::path& file) {
  static std::atomic<unsigned> held{0};
  RemoveLeftOvers(file.parent_path());
  std::filesystem::path path = file.parent_path() / (kName + std::to_string(++held) + ".rpt");
  std::error_code failure;
  std::filesystem::create_hard_link(file, path, failure);
  if (failure) return nullptr;
  return std::shared_ptr<const HeldFile>(new HeldFile(std::move(path)));
}

HeldFile::~HeldFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace kel
