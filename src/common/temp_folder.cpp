#include "common/temp_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "common/descriptor.h"
#include "common/error.h"

namespace kel {
namespace {

constexpr const char* kHomeVariable = "KELDLL_HOME";
constexpr const char* kFolderName = "DLLTemp";
constexpr std::chrono::hours kHandoverTime{7 * 24};
constexpr const char* kLockName = ".lock";
constexpr int kMostFolders = 10'000;
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kLockMode = 0600;
constexpr mode_t kPermissionBits = 0777;

// The endings of *.tmp, *.txt, *.doc and *.xls.
constexpr std::array<std::string_view, 4> kEmptiedEndings = {".tmp", ".txt", ".doc", ".xls"};

[[noreturn]] void ThrowCannotUse(const std::filesystem::path& path, int system_error = errno) {
  throw Error::FromSystem(system_error, "cannot use the temporary folder " + path.string());
}

// One thread's hold on its folder. The lock belongs to the open lock file, so it ends with it.
class LockedFolder {
 public:
  const std::filesystem::path& Path();
  /// Takes a folder anew when the one held has been removed from outside.
  void MakeReady();

 private:
  void Take();
  bool IsOurs() const;
  bool StillStands() const;

  std::filesystem::path path_;
  Descriptor lock_;
  pid_t owner_ = 0;  // a forked child must not go on in its parent's folder
};

LockedFolder& ThisThreadsFolder() {
  thread_local LockedFolder folder;
  return folder;
}

std::filesystem::path VariableAsPath(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? std::filesystem::path() : std::filesystem::path(text);
}

std::filesystem::path Absolute(const std::filesystem::path& path) {
  std::error_code no_current_folder;
  std::filesystem::path absolute = std::filesystem::absolute(path, no_current_folder);
  if (no_current_folder) ThrowCannotUse(path, no_current_folder.value());
  return absolute;
}

std::filesystem::path HomeFolder() {
  const std::filesystem::path chosen = VariableAsPath(kHomeVariable);
  if (!chosen.empty()) return Absolute(chosen);
  // A relative cache folder is to be ignored (XDG base directories).
  const std::filesystem::path cache = VariableAsPath("XDG_CACHE_HOME");
  if (cache.is_absolute()) return cache / "keldll";
  const std::filesystem::path home = VariableAsPath("HOME");
  if (home.empty()) {
    throw Error(error_number::kPathNotFound,
                "no place for the temporary folder: neither KELDLL_HOME nor HOME is set");
  }
  return Absolute(home) / ".cache" / "keldll";
}

// Returns once the folder stands, whoever made it.
void MakeFolders(const std::filesystem::path& path) {
  if (::mkdir(path.c_str(), kFolderMode) == 0 || errno == EEXIST) return;
  if (errno != ENOENT || !path.has_relative_path()) ThrowCannotUse(path);
  MakeFolders(path.parent_path());
  if (::mkdir(path.c_str(), kFolderMode) == -1 && errno != EEXIST) ThrowCannotUse(path);
}

// Another user's folder, or a link planted in place of ours, is refused.
Descriptor OpenOwnFolder(const std::filesystem::path& path) {
  Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder.IsOpen()) {
    const int failure = errno;
    std::error_code unknown;
    const bool is_link = std::filesystem::is_symlink(path, unknown);
    ThrowCannotUse(path, is_link ? ELOOP : failure);
  }
  struct stat status {};
  if (::fstat(folder.Get(), &status) == -1) ThrowCannotUse(path);
  if (status.st_uid != ::geteuid()) ThrowCannotUse(path, EACCES);
  if ((status.st_mode & kPermissionBits) != kFolderMode &&
      ::fchmod(folder.Get(), kFolderMode) == -1) {
    ThrowCannotUse(path);
  }
  return folder;
}

// None when another process or thread holds the folder.
Descriptor LockFolder(const std::filesystem::path& path) {
  const Descriptor folder = OpenOwnFolder(path);
  Descriptor lock(
      ::openat(folder.Get(), kLockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kLockMode));
  if (!lock.IsOpen()) ThrowCannotUse(path / kLockName);
  if (::flock(lock.Get(), LOCK_EX | LOCK_NB) == 0) return lock;
  if (errno != EWOULDBLOCK) ThrowCannotUse(path / kLockName);
  return Descriptor();
}

bool EndsWithIgnoringCase(std::string_view name, std::string_view lower_case) {
  if (name.size() < lower_case.size()) return false;
  name.remove_prefix(name.size() - lower_case.size());
  return std::equal(name.begin(), name.end(), lower_case.begin(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

bool IsEmptied(const std::filesystem::directory_entry& entry) {
  std::error_code unknown;
  const std::filesystem::file_status status = entry.symlink_status(unknown);
  if (!std::filesystem::is_regular_file(status) && !std::filesystem::is_symlink(status)) {
    return false;
  }
  const std::string name = entry.path().filename().string();
  return std::any_of(kEmptiedEndings.begin(), kEmptiedEndings.end(),
                     [&](std::string_view ending) { return EndsWithIgnoringCase(name, ending); });
}

void EmptyFolder(const std::filesystem::path& folder) {
  std::error_code skipped;
  std::filesystem::directory_iterator entry(folder, skipped);
  for (; entry != std::filesystem::directory_iterator(); entry.increment(skipped)) {
    std::error_code not_deleted;
    if (IsEmptied(*entry)) std::filesystem::remove(entry->path(), not_deleted);
  }
}

void RemoveOldHandovers(const std::filesystem::path& folder) {
  const auto oldest = std::filesystem::file_time_type::clock::now() - kHandoverTime;
  std::error_code skipped;
  if (!std::filesystem::is_directory(std::filesystem::symlink_status(folder, skipped))) return;
  std::filesystem::directory_iterator entry(folder, skipped);
  for (; entry != std::filesystem::directory_iterator(); entry.increment(skipped)) {
    std::error_code failure;
    const auto changed = entry->last_write_time(failure);
    if (!failure && changed < oldest) std::filesystem::remove_all(entry->path(), failure);
  }
}

const std::filesystem::path& LockedFolder::Path() {
  if (!IsOurs()) Take();
  return path_;
}

void LockedFolder::MakeReady() {
  if (!IsOurs() || !StillStands()) Take();
}

void LockedFolder::Take() {
  const std::filesystem::path home = HomeFolder();
  for (int number = 1; number <= kMostFolders; ++number) {
    const std::filesystem::path path =
        home / (number == 1 ? kFolderName : kFolderName + std::to_string(number));
    MakeFolders(path);
    Descriptor lock = LockFolder(path);
    if (!lock.IsOpen()) continue;
    path_ = path;
    lock_ = std::move(lock);
    owner_ = ::getpid();
    return;
  }
  throw Error(error_number::kPermissionDenied,
              "every temporary folder in " + home.string() + " is in use");
}

bool LockedFolder::IsOurs() const { return lock_.IsOpen() && owner_ == ::getpid(); }

bool LockedFolder::StillStands() const {
  struct stat held {};
  struct stat standing {};
  return ::fstat(lock_.Get(), &held) == 0 && ::lstat((path_ / kLockName).c_str(), &standing) == 0 &&
         held.st_dev == standing.st_dev && held.st_ino == standing.st_ino;
}

}  // namespace

const std::filesystem::path& TempFolder() { return ThisThreadsFolder().Path(); }

void PrepareTempFolder() {
  ThisThreadsFolder().MakeReady();
  EmptyFolder(TempFolder());
  RemoveOldHandovers(TempFolder() / kHandoverFolderName);
}

}  // namespace kel
