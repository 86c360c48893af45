// The colours in which pages are shown, kept between previews.
#pragma once

#include <string_view>

#include "common/ole_color.h"
#include "common/settings_store.h"

namespace kel {

inline constexpr std::string_view kPreviewSection = "Preview";
inline constexpr std::string_view kBackColorKey = "BackColor";
inline constexpr std::string_view kForeColorKey = "ForeColor";

struct PreviewColors {
  OleColor back = system_color::kWindowBackground;
  OleColor fore = system_color::kWindowText;
};

/// A stored text that is no colour gives the default. Throws Error when the store cannot be read.
PreviewColors LoadPreviewColors(SettingsStore& store);
/// Throws Error when the store cannot be written.
void StorePreviewColors(SettingsStore& store, const PreviewColors& colors);

}  // namespace kel
