#include "keldll/settings_command.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "common/host.h"
#include "common/settings_store.h"
#include "engine/print_settings.h"
#include "keldll/arguments.h"
#include "keldll/job_settings.h"
#include "keldll/standard_streams.h"
#include "platform/qt/qt_host.h"

namespace kel::command {
namespace {

struct Key {
  std::string section;
  std::string name;
};

std::string ListLine(std::string_view section, std::string_view key, std::string text) {
  // One line per setting, whatever it holds; `get` gives the value as it is.
  for (char& byte : text) {
    if (byte == '\n' || byte == '\r') byte = ' ';
  }
  return std::string(section) + '/' + std::string(key) + '=' + text + '\n';
}

// The published settings in their order, then everything else that is stored.
void List(SettingsStore& store) {
  std::string lines;
  for (const StoredSetting& setting : StoredPrintSettings()) {
    lines += ListLine(setting.section, setting.key,
                      store.Read(setting.section, setting.key, setting.fallback));
  }
  for (const std::string& section : store.Sections()) {
    for (const auto& [key, text] : store.ReadSection(section)) {
      if (FindStoredSetting(section, key) == nullptr) lines += ListLine(section, key, text);
    }
  }
  WriteStandardOutput(lines);
}

Key ReadKey(const std::string& text) {
  const std::size_t slash = text.find('/');
  if (slash == 0 || slash == std::string::npos || slash + 1 == text.size()) {
    throw UsageError("\"" + text + "\": a key is written Section/Key");
  }
  return {text.substr(0, slash), text.substr(slash + 1)};
}

void Get(SettingsStore& store, const Key& key) {
  std::optional<std::string> text = store.Read(key.section, key.name);
  if (!text) {
    const StoredSetting* const published = FindStoredSetting(key.section, key.name);
    if (published == nullptr) {
      throw Error(error_number::kInvalidProcedureCall,
                  "there is no setting \"" + key.section + '/' + key.name + '"');
    }
    text = std::string(published->fallback);
  }
  WriteStandardOutput(*text + '\n');
}

void RequireFit(const Key& key, const std::string& text) {
  const StoredSetting* const published = FindStoredSetting(key.section, key.name);
  if (published == nullptr || FitsType(text, published->type)) return;
  throw UsageError(key.section + '/' + key.name + ": \"" + text + "\" is not " +
                   std::string(ExpectedText(published->type)));
}

SettingsStore& UserStore() {
  InstallQtHost();
  return *CurrentHost().settings;
}

void RequireCount(std::span<const std::string> words, std::size_t count) {
  if (words.size() < count) throw UsageError(words[0] + ": something is missing");
  if (words.size() > count) throw UsageError("unexpected \"" + words[count] + "\"");
}

// No verb option begins with a hyphen here, so a `--` has nothing to end and is passed over.
std::vector<std::string> WithoutEndOfOptions(std::span<const std::string> words) {
  std::vector<std::string> rest(words.begin(), words.end());
  const auto end = std::find(rest.begin(), rest.end(), "--");
  if (end != rest.end()) rest.erase(end);
  return rest;
}

}  // namespace

void RunSettings(std::span<const std::string> all_words) {
  const std::vector<std::string> words = WithoutEndOfOptions(all_words);
  if (words.empty()) {
    List(UserStore());
  } else if (words[0] == "get") {
    RequireCount(words, 2);
    const Key key = ReadKey(words[1]);
    Get(UserStore(), key);
  } else if (words[0] == "set") {
    RequireCount(words, 3);
    const Key key = ReadKey(words[1]);
    RequireFit(key, words[2]);
    UserStore().Write(key.section, key.name, words[2]);
  } else if (words[0] == "reset") {
    RequireCount(words, 1);
    UserStore().Clear();
  } else {
    throw UsageError("unexpected \"" + words[0] + "\"");
  }
}

}  // namespace kel::command
