#include "preview/preview_colors.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "common/numeric_value.h"

namespace kel {
namespace {

constexpr OleColor kKindOfColor = 0xff000000;
constexpr OleColor kSystemColor = 0x80000000;
constexpr OleColor kLastSystemColor = 0x80000018;

bool IsColor(OleColor color) {
  const OleColor kind = color & kKindOfColor;
  return kind == 0 || (kind == kSystemColor && color <= kLastSystemColor);
}

OleColor LoadColor(SettingsStore& store, std::string_view key, OleColor fallback) {
  const std::optional<std::string> text = store.Read(kPreviewSection, key);
  if (!text) return fallback;
  const std::optional<double> number = ReadNumber(*text);
  if (!number || std::trunc(*number) != *number ||
      *number < std::numeric_limits<std::int32_t>::min() ||
      *number > std::numeric_limits<OleColor>::max()) {
    return fallback;
  }
  // Written as a signed number; other programs may have written it unsigned.
  const auto color = static_cast<OleColor>(static_cast<std::int64_t>(*number));
  return IsColor(color) ? color : fallback;
}

void StoreColor(SettingsStore& store, std::string_view key, OleColor color) {
  store.Write(kPreviewSection, key, std::to_string(static_cast<std::int32_t>(color)));
}

}  // namespace

PreviewColors LoadPreviewColors(SettingsStore& store) {
  const PreviewColors defaults;
  return {LoadColor(store, kBackColorKey, defaults.back),
          LoadColor(store, kForeColorKey, defaults.fore)};
}

void StorePreviewColors(SettingsStore& store, const PreviewColors& colors) {
  StoreColor(store, kBackColorKey, colors.back);
  StoreColor(store, kForeColorKey, colors.fore);
}

}  // namespace kel
