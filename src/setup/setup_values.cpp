#include "setup/setup_values.h"

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/number_text.h"
#include "common/numeric_value.h"
#include "common/temp_folder.h"
#include "common/text_cells.h"
#include "engine/code_page.h"
#include "engine/print_files.h"

namespace kel {
namespace {

constexpr std::string_view kSetup = "Setup";
constexpr std::string_view kWindowsSection = "Setup\\Windows";
constexpr std::string_view kWindowsMode = "WINDOWS";

constexpr double kLeastOuterMargin = 1;  // of top and bottom: the last bottom line ends the page
constexpr double kLongestPage = 255;     // inches; the printer is told the length in one byte
constexpr double kMost = std::numeric_limits<std::int16_t>::max();
constexpr double kMostPoints = 1000;  // of a font that is measured and shown

constexpr std::array<std::string_view, kPageFields> kPageKeys = {
    "TopMargin", "BottomMargin", "LeftMargin", "RightMargin", "PageHeight", "PageWidth", "Lines"};

std::string_view KeyOf(PageField field) { return kPageKeys.at(static_cast<std::size_t>(field)); }

bool IsOuterMargin(PageField field) {
  return field == PageField::kTop || field == PageField::kBottom;
}
bool IsInInches(PageField field) {
  return field == PageField::kHeight || field == PageField::kWidth;
}

// All fields, in the order of the checks.
constexpr std::array<PageField, kPageFields> kFields = {
    PageField::kTop,    PageField::kBottom, PageField::kLeft, PageField::kRight,
    PageField::kHeight, PageField::kWidth,  PageField::kLines};

std::string DefaultText(std::string_view section, std::string_view key) {
  return std::string(FindStoredSetting(section, key)->fallback);
}

// The stored text, or the default.
std::string StoredText(SettingsStore& store, std::string_view section, std::string_view key) {
  const StoredSetting& setting = *FindStoredSetting(section, key);
  std::string text = store.Read(section, key, setting.fallback);
  return FitsType(text, setting.type) ? text : std::string(setting.fallback);
}

double DefaultPoints() { return ExVal(DefaultText(kWindowsSection, "FontSize")); }

double StoredPoints(SettingsStore& store) {
  const double points = ExVal(StoredText(store, kWindowsSection, "FontSize"));
  return points > 0 && points <= kMostPoints ? points : DefaultPoints();
}

PageTexts StoredPage(SettingsStore& store, std::string_view section) {
  PageTexts page;
  for (const PageField field : kFields) page[field] = StoredText(store, section, KeyOf(field));
  return page;
}

}  // namespace

SetupValues LoadSetup(SettingsStore& store) {
  SettingsOverlay as_windows(store);
  as_windows.Override(kSetup, "Mode", kWindowsMode);
  PrintSettings stored;
  LoadPrintSettings(as_windows, stored);  // a text of the wrong type is mended by the next saving

  SetupValues values;
  values.text_mode = StoredText(store, kSetup, "Mode") == kTextMode;
  values.printer = stored.printer_device;
  values.port = stored.port;
  values.print_date_time = stored.print_date_time;
  values.print_column_divider = stored.print_column_divider;
  values.character_set = StoredText(store, kTextModeSection, "Font");
  values.code_page = store.Read(kTextModeSection, kCodePageKey, CodePage::Names().front());
  values.text_page = StoredPage(store, kTextModeSection);
  values.font = {stored.font, StoredPoints(store), stored.font_flags, stored.fore_color};
  values.portrait = stored.portrait;
  values.windows_page = StoredPage(store, kWindowsSection);
  return values;
}

void PutDefaults(SetupValues& values) {
  // Both modes get the lines of text mode, though unstored Windows settings have more.
  for (const PageField field : kFields) {
    values.Page()[field] = DefaultText(kTextModeSection, KeyOf(field));
  }
  values.print_date_time = true;
  if (values.text_mode) {
    values.character_set = DefaultText(kTextModeSection, "Font");
  } else {
    values.font = {DefaultText(kWindowsSection, "Font"), DefaultPoints(), {}, 0};
  }
}

PageCapacity CapacityOf(const SetupValues& values, const CellSize& cell) {
  const PageTexts& page = values.Page();
  double height = PageHeightOf(page[PageField::kHeight]);
  double width = ExVal(page[PageField::kWidth]);
  // A line printer feeds its paper one way; a sheet is typed upright and printed turned.
  if (!values.text_mode && !values.portrait) std::swap(height, width);
  return CapacityOf(height, width, cell);
}

namespace {

double NumberIn(const PageTexts& page, PageField field) {
  if (field == PageField::kHeight) return PageHeightOf(page[field]);
  const double number = ExVal(page[field]);
  return IsInInches(field) ? number : std::nearbyint(number);
}

std::optional<SetupFault> FindTooSmall(const PageTexts& page) {
  for (const PageField field : kFields) {
    if (ExVal(page[field]) >= (IsOuterMargin(field) ? kLeastOuterMargin : 0)) continue;
    return SetupFault{
        "Each value must be greater than or equal to zero. Minimum Top Margin and Bottom Margin "
        "is 1.",
        field};
  }
  return std::nullopt;
}

std::optional<SetupFault> FindTooManyLines(const PageTexts& page, std::int32_t supported) {
  const double lines = NumberIn(page, PageField::kTop) + NumberIn(page, PageField::kBottom) +
                       NumberIn(page, PageField::kLines);
  if (lines <= supported) return std::nullopt;
  return SetupFault{"Total lines per page should not exceed " + std::to_string(supported) + ".",
                    PageField::kLines};
}

// What could be saved but not be read again, or not be told to a printer.
std::optional<SetupFault> FindTooLarge(const PageTexts& page) {
  for (const PageField field : kFields) {
    const double most = IsInInches(field) ? kLongestPage : kMost;
    if (NumberIn(page, field) <= most) continue;
    return SetupFault{"This value should not exceed " + NumberText(most) + ".", field};
  }
  return std::nullopt;
}

}  // namespace

std::optional<SetupFault> FindFault(const SetupValues& values, const CellSize& cell) {
  const std::string& font = values.text_mode ? values.character_set : values.font.name;
  if (TrimBlanks(font).empty()) return SetupFault{"You must enter a font set.", std::nullopt};
  const PageTexts& page = values.Page();
  if (auto fault = FindTooSmall(page)) return fault;
  if (auto fault = FindTooManyLines(page, CapacityOf(values, cell).lines)) return fault;
  return FindTooLarge(page);
}

namespace {

// Settings that are written together, or put back together.
class SettingsChange {
 public:
  explicit SettingsChange(SettingsStore& store) : store_(store) {}

  void Write(std::string_view section, std::string_view key, std::string_view text) {
    std::optional<std::string> before = store_.Read(section, key);
    store_.Write(section, key, text);
    before_.emplace_back(section, key, std::move(before));
  }
  void WriteFlag(std::string_view section, std::string_view key, bool flag) {
    Write(section, key, flag ? "True" : "False");
  }

  bool Fits(std::string_view section, std::string_view key) {
    const StoredSetting& setting = *FindStoredSetting(section, key);
    return FitsType(store_.Read(section, key, setting.fallback), setting.type);
  }

  void Undo() noexcept {
    for (; !before_.empty(); before_.pop_back()) PutBack(before_.back());
  }

 private:
  using Before = std::tuple<std::string_view, std::string_view, std::optional<std::string>>;

  void PutBack(const Before& setting) noexcept try {
    const auto& [section, key, text] = setting;
    if (text) {
      store_.Write(section, key, *text);
    } else {
      store_.Delete(section, key);
    }
  } catch (const Error&) {
    // What the store refuses is already on its way to the user.
  }

  SettingsStore& store_;
  std::vector<Before> before_;  // the views are of published names
};

void WritePage(SettingsChange& change, std::string_view section, const SetupValues& values,
               std::int32_t columns) {
  for (const PageField field : kFields) {
    change.Write(section, KeyOf(field), NumberText(NumberIn(values.Page(), field)));
  }
  change.Write(section, "Cols", std::to_string(columns));
}

void WriteTextMode(SettingsChange& change, const SetupValues& values) {
  change.Write(kTextModeSection, "Font", values.character_set);
  change.Write(kTextModeSection, kCodePageKey, values.code_page);
  // Read in text mode, too, but left alone there unless it cannot be read.
  if (change.Fits(kWindowsSection, "Portrait")) return;
  change.WriteFlag(kWindowsSection, "Portrait", values.portrait);
}

void WriteWindowsMode(SettingsChange& change, const SetupValues& values) {
  const PrintFont& font = values.font;
  change.Write(kWindowsSection, "Font", font.name);
  change.WriteFlag(kWindowsSection, "FontBold", font.flags.bold);
  change.WriteFlag(kWindowsSection, "FontItalic", font.flags.italic);
  change.Write(kWindowsSection, "FontSize", NumberText(font.points));
  change.WriteFlag(kWindowsSection, "FontUnderline", font.flags.underline);
  change.WriteFlag(kWindowsSection, "FontStrikethru", font.flags.strikethrough);
  change.Write(kWindowsSection, "ForeColor", std::to_string(font.fore_color));
  change.WriteFlag(kWindowsSection, "Portrait", values.portrait);
}

void WriteAll(SettingsChange& change, const SetupValues& values, std::int32_t columns) {
  change.Write(kSetup, "Mode", values.text_mode ? kTextMode : kWindowsMode);
  change.Write(kSetup, "Printer", values.printer);
  change.Write(kSetup, "Port", values.port);
  change.WriteFlag(kSetup, "DateTime", values.print_date_time);
  change.WriteFlag(kSetup, "ColumnDivider", values.print_column_divider);
  values.text_mode ? WriteTextMode(change, values) : WriteWindowsMode(change, values);
  WritePage(change, values.text_mode ? kTextModeSection : kWindowsSection, values, columns);
}

void RebuildPrintFiles(SettingsStore& store) {
  PrintSettings saved;
  LoadPrintSettings(store, saved);
  BuildPrintFiles(TempFolder(), CodesFor(saved, store), saved.port);
}

}  // namespace

void SaveSetup(SettingsStore& store, const SetupValues& values, const CellSize& cell) {
  SettingsChange change(store);
  try {
    WriteAll(change, values, CapacityOf(values, cell).columns);
    RebuildPrintFiles(store);
  } catch (const Error&) {
    change.Undo();
    throw;
  }
}

}  // namespace kel
