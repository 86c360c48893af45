#include "engine/print_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace kel {

namespace {

constexpr std::string_view kSetup = "Setup";
constexpr std::string_view kDos = "Setup\\DOS";
constexpr std::string_view kWindows = "Setup\\Windows";

constexpr auto kStoredSettings = std::to_array<StoredSetting>({
    {kSetup, "Mode", SettingType::kText, kTextMode},
    {kSetup, "Printer", SettingType::kText, "Epson LX-800"},
    {kSetup, "Port", SettingType::kText, "LPT1:"},
    {kSetup, "DateTime", SettingType::kFlag, "True"},
    {kSetup, "ColumnDivider", SettingType::kFlag, "False"},
    {kDos, "Font", SettingType::kText, "10 cpi"},
    {kDos, "TopMargin", SettingType::kInteger, "5"},
    {kDos, "BottomMargin", SettingType::kInteger, "1"},
    {kDos, "LeftMargin", SettingType::kInteger, "0"},
    {kDos, "RightMargin", SettingType::kInteger, "0"},
    {kDos, "PageHeight", SettingType::kNumber, "12"},
    {kDos, "PageWidth", SettingType::kNumber, "8.5"},
    {kDos, "Lines", SettingType::kInteger, "60"},
    {kDos, "Cols", SettingType::kInteger, "80"},
    {kWindows, "Font", SettingType::kText, "Courier New"},
    {kWindows, "FontBold", SettingType::kFlag, "False"},
    {kWindows, "FontItalic", SettingType::kFlag, "False"},
    {kWindows, "FontUnderline", SettingType::kFlag, "False"},
    {kWindows, "FontStrikethru", SettingType::kFlag, "False"},
    {kWindows, "ForeColor", SettingType::kLong, "0"},
    {kWindows, "FontSize", SettingType::kNumber, "10"},
    {kWindows, "TopMargin", SettingType::kInteger, "5"},
    {kWindows, "BottomMargin", SettingType::kInteger, "1"},
    {kWindows, "LeftMargin", SettingType::kInteger, "0"},
    {kWindows, "RightMargin", SettingType::kInteger, "0"},
    {kWindows, "PageHeight", SettingType::kNumber, "12"},
    {kWindows, "PageWidth", SettingType::kNumber, "8.5"},
    {kWindows, "Lines", SettingType::kInteger, "65"},
    {kWindows, "Cols", SettingType::kInteger, "96"},
    {kWindows, "Portrait", SettingType::kFlag, "True"},
});

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

std::optional<bool> AsFlag(std::string_view text) {
  text = Trimmed(text);
  if (EqualsIgnoringCase(text, "true")) return true;
  if (EqualsIgnoringCase(text, "false")) return false;
  return std::nullopt;
}

template <typename Number>
std::optional<Number> AsNumber(std::string_view text) {
  text = Trimmed(text);
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  if (failure != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::optional<float> AsSize(std::string_view text) {
  const std::optional<float> size = AsNumber<float>(text);
  return size && std::isfinite(*size) ? size : std::nullopt;
}

// Reads typed settings; the first text that does not fit its type is remembered.
class SettingsReader {
 public:
  explicit SettingsReader(SettingsStore& store) : store_(store) {}

  std::string Text(std::string_view section, std::string_view key) {
    return store_.Read(section, key, FindStoredSetting(section, key)->fallback);
  }
  bool Flag(std::string_view section, std::string_view key) {
    return Converted<bool>(section, key, AsFlag);
  }
  std::int32_t Integer(std::string_view section, std::string_view key) {
    return Converted<std::int16_t>(section, key, AsNumber<std::int16_t>);
  }
  std::int32_t Long(std::string_view section, std::string_view key) {
    return Converted<std::int32_t>(section, key, AsNumber<std::int32_t>);
  }
  float Size(std::string_view section, std::string_view key) {
    return Converted<float>(section, key, AsSize);
  }

  const std::optional<Error>& Failure() const { return failure_; }

 private:
  template <typename Result>
  Result Converted(std::string_view section, std::string_view key,
                   std::optional<Result> (*convert)(std::string_view)) {
    const std::string text = Text(section, key);
    const std::optional<Result> result = convert(text);
    if (result) return *result;
    const std::string_view fallback = FindStoredSetting(section, key)->fallback;
    if (!failure_) {
      failure_ = Error(error_number::kTypeMismatch, "Type mismatch: the stored setting " +
                                                        std::string(section) + "/" +
                                                        std::string(key) + " is \"" + text + "\"");
    }
    return *convert(fallback);
  }

  SettingsStore& store_;
  std::optional<Error> failure_;
};

void LoadGeometry(SettingsReader& reader, std::string_view section, PrintSettings& settings) {
  settings.top_margin = reader.Integer(section, "TopMargin");
  settings.bottom_margin = reader.Integer(section, "BottomMargin");
  settings.left_margin = reader.Integer(section, "LeftMargin");
  settings.right_margin = reader.Integer(section, "RightMargin");
  settings.page_height = reader.Size(section, "PageHeight");
  settings.page_width = reader.Size(section, "PageWidth");
  settings.lines = reader.Integer(section, "Lines");
  settings.cols = reader.Integer(section, "Cols");
}

}  // namespace

std::span<const StoredSetting> StoredPrintSettings() { return kStoredSettings; }

const StoredSetting* FindStoredSetting(std::string_view section, std::string_view key) {
  const auto* found =
      std::find_if(kStoredSettings.begin(), kStoredSettings.end(),
                   [&](const StoredSetting& s) { return s.section == section && s.key == key; });
  return found == kStoredSettings.end() ? nullptr : found;
}

bool FitsType(std::string_view text, SettingType type) {
  switch (type) {
    case SettingType::kText:
      return true;
    case SettingType::kFlag:
      return AsFlag(text).has_value();
    case SettingType::kInteger:
      return AsNumber<std::int16_t>(text).has_value();
    case SettingType::kLong:
      return AsNumber<std::int32_t>(text).has_value();
    case SettingType::kNumber:
      return AsSize(text).has_value();
  }
  return false;
}

std::optional<Error> LoadPrintSettings(SettingsStore& store, PrintSettings& settings) {
  SettingsReader reader(store);
  settings.mode = reader.Text(kSetup, "Mode");
  settings.printer_device = reader.Text(kSetup, "Printer");
  settings.port = reader.Text(kSetup, "Port");
  settings.print_date_time = reader.Flag(kSetup, "DateTime");
  settings.print_column_divider = reader.Flag(kSetup, "ColumnDivider");

  const std::string_view section = settings.mode == kTextMode ? kDos : kWindows;
  settings.font = reader.Text(section, "Font");
  if (section == kWindows) {
    settings.font_flags = {reader.Flag(section, "FontBold"), reader.Flag(section, "FontItalic"),
                           reader.Flag(section, "FontUnderline"),
                           reader.Flag(section, "FontStrikethru")};
    settings.fore_color = reader.Long(section, "ForeColor");
    settings.font_size = reader.Size(section, "FontSize");
  }
  LoadGeometry(reader, section, settings);
  // The orientation is the Windows printer's in both modes.
  settings.portrait = reader.Flag(kWindows, "Portrait");
  return reader.Failure();
}

}  // namespace kel
