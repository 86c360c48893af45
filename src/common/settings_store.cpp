#include "common/settings_store.h"

#include <set>

namespace kel {

std::optional<std::string> MemorySettingsStore::Read(std::string_view section,
                                                     std::string_view key) {
  const auto entry = entries_.find({std::string(section), std::string(key)});
  if (entry == entries_.end()) return std::nullopt;
  return entry->second;
}

void MemorySettingsStore::Write(std::string_view section, std::string_view key,
                                std::string_view text) {
  entries_.insert_or_assign({std::string(section), std::string(key)}, std::string(text));
}

void MemorySettingsStore::Delete(std::string_view section, std::string_view key) {
  entries_.erase({std::string(section), std::string(key)});
}

void MemorySettingsStore::Clear() { entries_.clear(); }

SettingsStore::Entries MemorySettingsStore::ReadSection(std::string_view section) {
  Entries found;
  for (auto entry = entries_.lower_bound({std::string(section), ""});
       entry != entries_.end() && entry->first.first == section; ++entry) {
    found.emplace_back(entry->first.second, entry->second);
  }
  return found;
}

std::vector<std::string> MemorySettingsStore::Sections() {
  std::vector<std::string> sections;
  for (const auto& [place, text] : entries_) {
    if (sections.empty() || sections.back() != place.first) sections.push_back(place.first);
  }
  return sections;
}

void SettingsOverlay::Override(std::string_view section, std::string_view key,
                               std::string_view text) {
  overrides_.insert_or_assign({std::string(section), std::string(key)}, std::string(text));
}

std::optional<std::string> SettingsOverlay::Read(std::string_view section, std::string_view key) {
  const auto override = overrides_.find({std::string(section), std::string(key)});
  return override == overrides_.end() ? beneath_.Read(section, key) : override->second;
}

void SettingsOverlay::Write(std::string_view section, std::string_view key, std::string_view text) {
  const auto override = overrides_.find({std::string(section), std::string(key)});
  if (override == overrides_.end()) {
    beneath_.Write(section, key, text);
  } else {
    override->second = text;
  }
}

void SettingsOverlay::Delete(std::string_view section, std::string_view key) {
  const auto override = overrides_.find({std::string(section), std::string(key)});
  if (override == overrides_.end()) {
    beneath_.Delete(section, key);
  } else {
    override->second.reset();
  }
}

void SettingsOverlay::Clear() {
  overrides_.clear();
  beneath_.Clear();
}

SettingsStore::Entries SettingsOverlay::ReadSection(std::string_view section) {
  std::map<std::string, std::string> merged;
  for (auto& [key, text] : beneath_.ReadSection(section)) merged.emplace(key, std::move(text));
  for (auto override = overrides_.lower_bound({std::string(section), ""});
       override != overrides_.end() && override->first.first == section; ++override) {
    const std::string& key = override->first.second;
    if (override->second) {
      merged.insert_or_assign(key, *override->second);
    } else {
      merged.erase(key);
    }
  }
  return {merged.begin(), merged.end()};
}

std::vector<std::string> SettingsOverlay::Sections() {
  std::set<std::string> candidates;
  for (std::string& section : beneath_.Sections()) candidates.insert(std::move(section));
  for (const auto& [place, text] : overrides_) candidates.insert(place.first);
  std::vector<std::string> sections;
  for (const std::string& section : candidates) {
    if (!ReadSection(section).empty()) sections.push_back(section);
  }
  return sections;
}

}  // namespace kel
