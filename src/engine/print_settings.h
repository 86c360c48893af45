// The print settings: what they are, where they are stored, what holds when they are not.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "common/error.h"
#include "common/job_values.h"
#include "common/settings_store.h"

namespace kel {

struct FontFlags {
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikethrough = false;
};

/// The values that decide page geometry, print mode and printer of one job.
struct PrintSettings {
  std::string mode;
  std::string printer_device;
  std::string port;
  bool print_date_time = false;
  bool print_column_divider = false;

  std::string font;
  FontFlags font_flags;
  std::int32_t fore_color = 0;
  float font_size = 0;  // points

  std::int32_t top_margin = 0;     // lines
  std::int32_t bottom_margin = 0;  // lines
  std::int32_t left_margin = 0;    // characters
  std::int32_t right_margin = 0;   // characters
  float page_height = 0;           // inches
  float page_width = 0;            // inches
  std::int32_t lines = 0;
  std::int32_t cols = 0;
  bool portrait = false;

  // Not stored.
  PageNumber start_page = 1;
  PageNumber end_page = 10000;
  std::string under_line_char = "-";
};

/// The mode whose settings stand in "Setup\DOS"; every other mode uses "Setup\Windows".
inline constexpr std::string_view kTextMode = "DOS";

enum class SettingType { kText, kFlag, kInteger, kLong, kNumber };

/// One published key of the settings store.
struct StoredSetting {
  std::string_view section;
  std::string_view key;
  SettingType type;
  std::string_view fallback;  // the text that holds when the key is absent
};

/// All published print settings, section by section.
std::span<const StoredSetting> StoredPrintSettings();
/// The published setting of that name; nothing for other keys of the store.
const StoredSetting* FindStoredSetting(std::string_view section, std::string_view key);
/// True when `text` can be read as the setting's type: "True"/"False" for flags, a whole number of
/// 16 bits (kInteger) or 32 bits (kLong), a decimal number.
bool FitsType(std::string_view text, SettingType type);

/// Loads every stored setting into `settings`. A stored text that does not fit its type leaves the
/// published default in force; the first such is returned as Error 13.
std::optional<Error> LoadPrintSettings(SettingsStore& store, PrintSettings& settings);

}  // namespace kel
