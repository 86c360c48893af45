// The settings of a user in an INI file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/settings_store.h"
#include "platform/qt/ini_text.h"

namespace kel {

/// The settings store of a desktop program: an INI file in the form of QSettings, which a person
/// may edit and a Qt program may read with QSettings.
///
/// Every operation sees what other processes have written before it, and every write replaces the
/// whole file in one step under the lock that QSettings itself uses ("KELDLL.ini.lock"), so that
/// processes that write at once lose nothing. A file that cannot be read, or holds something else
/// than settings, is an Error that names it, never a store full of defaults. Names and texts may
/// hold any bytes. May be used by several threads.
class QtSettingsStore : public SettingsStore {
 public:
  /// The user's own: KELDLL/KELDLL.ini in the configuration folder ($XDG_CONFIG_HOME, ~/.config).
  QtSettingsStore();
  /// A file of the caller's choice; it and its folder are made by the first write.
  explicit QtSettingsStore(std::filesystem::path ini_file);

  const std::filesystem::path& File() const { return path_; }

  using SettingsStore::Read;
  std::optional<std::string> Read(std::string_view section, std::string_view key) override;
  void Write(std::string_view section, std::string_view key, std::string_view text) override;
  void Delete(std::string_view section, std::string_view key) override;
  void Clear() override;
  Entries ReadSection(std::string_view section) override;
  std::vector<std::string> Sections() override;

 private:
  // What tells one state of the file from the next.
  struct FileState {
    std::uintmax_t size = 0;
    std::filesystem::file_time_type time;
    bool operator==(const FileState&) const = default;
  };

  const SettingsMap& Current();
  std::optional<FileState> StateOfFile() const;
  SettingsMap Load() const;
  void Store(const SettingsMap& settings);
  template <typename Change>
  void ChangeUnderLock(Change change);

  std::filesystem::path path_;
  std::mutex mutex_;
  SettingsMap loaded_;  // as of loaded_state_
  std::optional<FileState> loaded_state_;
};

}  // namespace kel
