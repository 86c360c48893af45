#include "controls/colors.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "common/error.h"

namespace kel {
namespace {

constexpr OleColor kSystemColor = 0x80000000;
constexpr OleColor kIndex = 0xFF;
constexpr OleColor kChannel = 0xFF;
constexpr int kGreenShift = 8;
constexpr int kBlueShift = 16;

struct PaletteEntry {
  QPalette::ColorRole role;
  QPalette::ColorGroup group = QPalette::Current;
};

// By the index of the system colour.
constexpr std::array kSystemColors = {
    PaletteEntry{QPalette::Mid},                       // scroll bar
    PaletteEntry{QPalette::Window},                    // desktop
    PaletteEntry{QPalette::Highlight},                 // active title bar
    PaletteEntry{QPalette::Mid},                       // inactive title bar
    PaletteEntry{QPalette::Window},                    // menu bar
    PaletteEntry{QPalette::Base},                      // window background
    PaletteEntry{QPalette::WindowText},                // window frame
    PaletteEntry{QPalette::WindowText},                // menu text
    PaletteEntry{QPalette::Text},                      // window text
    PaletteEntry{QPalette::HighlightedText},           // active title bar text
    PaletteEntry{QPalette::Mid},                       // active border
    PaletteEntry{QPalette::Mid},                       // inactive border
    PaletteEntry{QPalette::Dark},                      // application workspace
    PaletteEntry{QPalette::Highlight},                 // highlight
    PaletteEntry{QPalette::HighlightedText},           // highlight text
    PaletteEntry{QPalette::Button},                    // button face
    PaletteEntry{QPalette::Dark},                      // button shadow
    PaletteEntry{QPalette::Text, QPalette::Disabled},  // greyed text
    PaletteEntry{QPalette::ButtonText},                // button text
    PaletteEntry{QPalette::WindowText},                // inactive title bar text
    PaletteEntry{QPalette::Light},                     // three-dimensional highlight
    PaletteEntry{QPalette::Shadow},                    // three-dimensional dark shadow
    PaletteEntry{QPalette::Midlight},                  // three-dimensional light
    PaletteEntry{QPalette::ToolTipText},               // tool tip text
    PaletteEntry{QPalette::ToolTipBase},               // tool tip
};

int Channel(OleColor color, int shift) { return static_cast<int>((color >> shift) & kChannel); }

}  // namespace

QColor ToQColor(OleColor color, const QPalette& palette) {
  if ((color & kSystemColor) == 0) {
    return {Channel(color, 0), Channel(color, kGreenShift), Channel(color, kBlueShift)};
  }
  const std::size_t index = color & kIndex;
  if (index >= kSystemColors.size()) return palette.color(QPalette::WindowText);
  return palette.color(kSystemColors.at(index).group, kSystemColors.at(index).role);
}

OleColor ToOleColor(const QColor& color) {
  const QColor rgb = color.toRgb();
  return static_cast<OleColor>(rgb.red()) | static_cast<OleColor>(rgb.green()) << kGreenShift |
         static_cast<OleColor>(rgb.blue()) << kBlueShift;
}

OleColor ColorOf(const Value& value) {
  const double number = value.ToDouble();
  if (!(number >= std::numeric_limits<std::int32_t>::min() &&
        number <= std::numeric_limits<std::uint32_t>::max())) {
    throw Error(error_number::kOverflow, "not a colour: " + value.ToText());
  }
  return static_cast<OleColor>(std::llround(number));
}

Value ColorValue(OleColor color) { return static_cast<std::int32_t>(color); }

}  // namespace kel
