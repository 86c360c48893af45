#include "common/work_folder.h"

#include <atomic>
#include <string>
#include <system_error>
#include <utility>

#include "common/error.h"
#include "common/temp_folder.h"

namespace kel {
namespace {

constexpr const char* kName = "_kelWork";

// The temporary folder is this thread's own.
void RemoveLeftOvers() {
  thread_local bool done = false;
  if (std::exchange(done, true)) return;
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(TempFolder(), failure)) {
    const bool work = entry.path().filename().string().rfind(kName, 0) == 0;
    if (work) std::filesystem::remove_all(entry.path(), failure);
  }
}

}  // namespace

WorkFolder::WorkFolder() {
  static std::atomic<unsigned> made{0};
  RemoveLeftOvers();
  path_ = TempFolder() / (kName + std::to_string(++made));
  std::error_code failure;
  std::filesystem::create_directory(path_, failure);
  if (failure) throw Error::FromSystem(failure.value(), "cannot make the folder " + path_.string());
}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace kel
