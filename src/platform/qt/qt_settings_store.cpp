#include "platform/qt/qt_settings_store.h"

#include <QFile>
#include <QLockFile>
#include <QSettings>
#include <array>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "common/error.h"
#include "common/file.h"

namespace kel {
namespace {

constexpr std::chrono::seconds kLongestWait{10};
constexpr std::chrono::milliseconds kBetweenTries{1};

// File systems count time in ticks of some milliseconds (two seconds on the coarsest). A file
// changed so lately may change again without looking different.
constexpr std::chrono::seconds kCoarsestTick{2};

std::filesystem::path UsersFile() {
  const QString title =
      QString::fromUtf8(kApplicationTitle.data(), static_cast<qsizetype>(kApplicationTitle.size()));
  const QSettings users(QSettings::IniFormat, QSettings::UserScope, title, title);
  return QFile::encodeName(users.fileName()).toStdString();
}

// Held while the file is read, changed and written.
class WriteLock {
 public:
  explicit WriteLock(const std::filesystem::path& path)
      : lock_(QFile::decodeName(QByteArray::fromStdString(path.string() + ".lock"))) {
    const auto give_up = std::chrono::steady_clock::now() + kLongestWait;
    while (!lock_.tryLock(0)) {
      if (lock_.error() == QLockFile::UnknownError) {
        throw Error(error_number::kDiskFull,
                    "cannot write " + path.string() + ": the disk is full");
      }
      const bool taken = lock_.error() == QLockFile::LockFailedError;
      if (!taken || std::chrono::steady_clock::now() > give_up) {
        throw Error(error_number::kPermissionDenied,
                    "cannot write " + path.string() +
                        (taken ? ": another program keeps it locked"
                               : ": its folder does not let a file be made"));
      }
      std::this_thread::sleep_for(kBetweenTries);
    }
  }

 private:
  QLockFile lock_;
};

void MakeFolderOf(const std::filesystem::path& path) {
  if (!path.has_parent_path()) return;
  std::error_code failure;
  std::filesystem::create_directories(path.parent_path(), failure);
  if (failure) {
    throw Error::FromSystem(failure.value(), "cannot create the folder of " + path.string());
  }
}

std::string FileText(const std::filesystem::path& path) {
  InputFile file(path);
  std::string text;
  std::array<char, 4096> block{};
  while (const std::size_t count = file.Read(block)) text.append(block.data(), count);
  return text;
}

}  // namespace

QtSettingsStore::QtSettingsStore() : path_(UsersFile()) {}

QtSettingsStore::QtSettingsStore(std::filesystem::path ini_file) : path_(std::move(ini_file)) {}

std::optional<std::string> QtSettingsStore::Read(std::string_view section, std::string_view key) {
  const std::lock_guard guard(mutex_);
  const SettingsMap& settings = Current();
  const auto entry = settings.find({std::string(section), std::string(key)});
  if (entry == settings.end()) return std::nullopt;
  return entry->second;
}

SettingsStore::Entries QtSettingsStore::ReadSection(std::string_view section) {
  const std::lock_guard guard(mutex_);
  const SettingsMap& settings = Current();
  Entries entries;
  for (auto entry = settings.lower_bound({std::string(section), ""});
       entry != settings.end() && entry->first.first == section; ++entry) {
    entries.emplace_back(entry->first.second, entry->second);
  }
  return entries;
}

std::vector<std::string> QtSettingsStore::Sections() {
  const std::lock_guard guard(mutex_);
  std::vector<std::string> sections;
  for (const auto& [name, text] : Current()) {
    if (sections.empty() || sections.back() != name.first) sections.push_back(name.first);
  }
  return sections;
}

void QtSettingsStore::Write(std::string_view section, std::string_view key, std::string_view text) {
  ChangeUnderLock([&](SettingsMap& settings) {
    settings.insert_or_assign({std::string(section), std::string(key)}, std::string(text));
    return true;
  });
}

void QtSettingsStore::Delete(std::string_view section, std::string_view key) {
  if (!Read(section, key)) return;
  ChangeUnderLock([&](SettingsMap& settings) {
    return settings.erase({std::string(section), std::string(key)}) > 0;
  });
}

void QtSettingsStore::Clear() {
  const std::lock_guard guard(mutex_);
  MakeFolderOf(path_);
  const WriteLock lock(path_);
  Store({});
}

const SettingsMap& QtSettingsStore::Current() {
  const auto state = StateOfFile();
  if (!state || state != loaded_state_) {
    loaded_state_.reset();
    loaded_ = Load();
    const auto now = std::filesystem::file_time_type::clock::now();
    if (state && state->time + kCoarsestTick < now) loaded_state_ = state;
  }
  return loaded_;
}

// Nothing when there is no file, or none that can be looked at.
std::optional<QtSettingsStore::FileState> QtSettingsStore::StateOfFile() const {
  std::error_code no_size;
  std::error_code no_time;
  const FileState state{std::filesystem::file_size(path_, no_size),
                        std::filesystem::last_write_time(path_, no_time)};
  if (no_size || no_time) return std::nullopt;
  return state;
}

SettingsMap QtSettingsStore::Load() const {
  try {
    return ParseIni(FileText(path_));
  } catch (const Error& failure) {
    if (failure.Number() == error_number::kFileNotFound) return {};
    if (failure.Number() != error_number::kInvalidFileFormat) throw;
    throw Error(failure.Number(),
                "cannot read the settings in " + path_.string() + ": " + failure.Description());
  }
}

template <typename Change>
void QtSettingsStore::ChangeUnderLock(Change change) {
  const std::lock_guard guard(mutex_);
  MakeFolderOf(path_);
  const WriteLock lock(path_);
  SettingsMap settings = Load();
  if (change(settings)) Store(settings);
}

void QtSettingsStore::Store(const SettingsMap& settings) {
  loaded_state_.reset();
  OutputFile file(path_);
  file.Write(IniText(settings));
  file.Commit();
}

}  // namespace kel
