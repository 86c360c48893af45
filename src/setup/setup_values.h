// What the printer setup holds, checks and saves.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "common/settings_store.h"
#include "engine/print_settings.h"
#include "setup/page_capacity.h"

namespace kel {

/// The margins and sizes of a page, in the order in which they are checked.
enum class PageField : std::uint8_t { kTop, kBottom, kLeft, kRight, kHeight, kWidth, kLines };
inline constexpr std::size_t kPageFields = 7;

/// The texts of these fields as they are typed.
class PageTexts {
 public:
  std::string& operator[](PageField field) { return texts_.at(static_cast<std::size_t>(field)); }
  const std::string& operator[](PageField field) const {
    return texts_.at(static_cast<std::size_t>(field));
  }
  bool operator==(const PageTexts&) const = default;

 private:
  std::array<std::string, kPageFields> texts_;
};

/// The font of Windows mode.
struct PrintFont {
  std::string name;
  double points = 0;  // above 0, at most 1000
  FontFlags flags;
  std::int32_t fore_color = 0;  // OLE colour
};

/// The settings of both modes; only those of the chosen one are checked and saved.
struct SetupValues {
  bool text_mode = true;
  std::string printer;
  std::string port;
  bool print_date_time = false;
  bool print_column_divider = false;

  // Text mode.
  std::string character_set;
  std::string code_page;
  PageTexts text_page;

  // Windows mode.
  PrintFont font;
  bool portrait = true;
  PageTexts windows_page;

  /// The page of the chosen mode.
  PageTexts& Page() { return text_mode ? text_page : windows_page; }
  const PageTexts& Page() const { return text_mode ? text_page : windows_page; }
};

/// The stored values; the published default where a key is absent or does not fit its type, or a
/// font size is none. Throws Error when the store cannot be read.
SetupValues LoadSetup(SettingsStore& store);

/// Puts the default page, character set or font with its colour, and date and time into the chosen
/// mode.
void PutDefaults(SetupValues& values);

/// What fits on the page of the chosen mode; in Windows mode and landscape, its width and height
/// change places. `cell` is that of its character set or font.
PageCapacity CapacityOf(const SetupValues& values, const CellSize& cell);

/// What keeps the values of the chosen mode from being saved.
struct SetupFault {
  std::string message;
  std::optional<PageField> field;  // none: the character set or font
};

/// The first fault; nothing when all is well.
std::optional<SetupFault> FindFault(const SetupValues& values, const CellSize& cell);

/// Saves the chosen mode and its settings and rebuilds the text-mode print files. Whatever the mode
/// reads can be read afterwards. Throws Error when
/// the store or the files cannot be written; the settings from before are put back then, as far as
/// the store lets that happen. REQUIRES that there is no fault.
void SaveSetup(SettingsStore& store, const SetupValues& values, const CellSize& cell);

}  // namespace kel
