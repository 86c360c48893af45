// The per-user key/value store that keeps the settings between runs.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kel {

/// The title under which all of the library's settings are kept.
inline constexpr std::string_view kApplicationTitle = "KELDLL";

/// A store of texts addressed by section ("Setup\DOS") and key ("TopMargin").
/// What is written is there for the next process. Throws Error when the store cannot be read or
/// written; a failed write leaves the earlier settings whole.
class SettingsStore {
 public:
  using Entries = std::vector<std::pair<std::string, std::string>>;

  virtual ~SettingsStore() = default;

  /// The stored text; nothing when the key is absent.
  virtual std::optional<std::string> Read(std::string_view section, std::string_view key) = 0;
  virtual void Write(std::string_view section, std::string_view key, std::string_view text) = 0;
  /// Removes a key; nothing happens when it is absent.
  virtual void Delete(std::string_view section, std::string_view key) = 0;
  /// Removes every entry, also when what is stored can no longer be read.
  virtual void Clear() = 0;
  /// Key and text of every entry that stands directly in the section, ordered by key.
  virtual Entries ReadSection(std::string_view section) = 0;
  /// The names of all sections that hold entries, in order.
  virtual std::vector<std::string> Sections() = 0;

  std::string Read(std::string_view section, std::string_view key, std::string_view fallback) {
    return Read(section, key).value_or(std::string(fallback));
  }
};

/// A store that lives as long as the object: for programs that keep settings elsewhere, and tests.
class MemorySettingsStore : public SettingsStore {
 public:
  using SettingsStore::Read;
  std::optional<std::string> Read(std::string_view section, std::string_view key) override;
  void Write(std::string_view section, std::string_view key, std::string_view text) override;
  void Delete(std::string_view section, std::string_view key) override;
  void Clear() override;
  Entries ReadSection(std::string_view section) override;
  std::vector<std::string> Sections() override;

 private:
  std::map<std::pair<std::string, std::string>, std::string> entries_;
};

/// Another store seen with some settings changed for this process only; nothing reaches that
/// store's entries that were overridden here, everything else passes through.
class SettingsOverlay : public SettingsStore {
 public:
  explicit SettingsOverlay(SettingsStore& beneath) : beneath_(beneath) {}

  /// From now on `key` reads as `text`, whatever the store beneath holds.
  void Override(std::string_view section, std::string_view key, std::string_view text);

  using SettingsStore::Read;
  std::optional<std::string> Read(std::string_view section, std::string_view key) override;
  void Write(std::string_view section, std::string_view key, std::string_view text) override;
  void Delete(std::string_view section, std::string_view key) override;
  void Clear() override;
  Entries ReadSection(std::string_view section) override;
  std::vector<std::string> Sections() override;

 private:
  SettingsStore& beneath_;
  // Nothing stands for a setting that was deleted here and still exists beneath.
  std::map<std::pair<std::string, std::string>, std::optional<std::string>> overrides_;
};

}  // namespace kel
