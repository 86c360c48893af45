// The colours that a preview's page can have.
#pragma once

#include <array>
#include <cstddef>

#include "common/ole_color.h"

namespace kel {

struct PaletteColor {
  OleColor color;
  const char* name;
};

inline constexpr std::size_t kPaletteColumns = 8;

/// The colour of "RRGGBB" as it is read on screen.
constexpr OleColor FromRgb(OleColor rgb) { return (rgb & 0xff) << 16 | (rgb & 0xff00) | rgb >> 16; }

/// Row by row: system colours and greys, papers, strong colours, inks, dark papers with bright
/// inks.
inline constexpr std::array<PaletteColor, 48> kPaletteColors = {{
    {system_color::kWindowBackground, "Window Background"},
    {system_color::kWindowText, "Window Text"},
    {FromRgb(0xffffff), "White"},
    {FromRgb(0xe6e6e6), "Pale Gray"},
    {FromRgb(0xc0c0c0), "Light Gray"},
    {FromRgb(0x808080), "Gray"},
    {FromRgb(0x404040), "Dark Gray"},
    {FromRgb(0x000000), "Black"},

    {FromRgb(0xfffff0), "Ivory"},
    {FromRgb(0xfff8dc), "Cream"},
    {FromRgb(0xf7efd8), "Parchment"},
    {FromRgb(0xfaf0e6), "Linen"},
    {FromRgb(0xffeadd), "Peach"},
    {FromRgb(0xffedf0), "Rose"},
    {FromRgb(0xf2eeff), "Lavender"},
    {FromRgb(0xeaf4ff), "Sky"},

    {FromRgb(0xe8f7ed), "Mint"},
    {FromRgb(0xe2f3d8), "Pale Green"},
    {FromRgb(0xe0f5f4), "Pale Aqua"},
    {FromRgb(0xdde9f8), "Pale Blue"},
    {FromRgb(0xeef1f3), "Mist"},
    {FromRgb(0xefe4cb), "Sand"},
    {FromRgb(0xf4e2b8), "Buff"},
    {FromRgb(0xfff6c4), "Pale Yellow"},

    {FromRgb(0xc62828), "Red"},
    {FromRgb(0xd9600a), "Orange"},
    {FromRgb(0xb07d00), "Ochre"},
    {FromRgb(0x2e7d32), "Green"},
    {FromRgb(0x00796b), "Teal"},
    {FromRgb(0x1565c0), "Blue"},
    {FromRgb(0x5e35b1), "Violet"},
    {FromRgb(0xad1457), "Magenta"},

    {FromRgb(0x7a0c0c), "Dark Red"},
    {FromRgb(0x4e2a14), "Brown"},
    {FromRgb(0x4b4a00), "Olive"},
    {FromRgb(0x0b3d17), "Dark Green"},
    {FromRgb(0x003b3f), "Dark Teal"},
    {FromRgb(0x001a57), "Navy"},
    {FromRgb(0x37106b), "Dark Violet"},
    {FromRgb(0x5b0f3c), "Plum"},

    {FromRgb(0x1e1e1e), "Charcoal"},
    {FromRgb(0x263238), "Slate"},
    {FromRgb(0x0b1b2b), "Midnight"},
    {FromRgb(0x0e1f14), "Night Green"},
    {FromRgb(0x2b1d14), "Espresso"},
    {FromRgb(0x8df59a), "Phosphor Green"},
    {FromRgb(0xffc857), "Amber"},
    {FromRgb(0x9ad8ff), "Ice Blue"},
}};

/// Where a colour stands in kPaletteColors; their count when it is none of them.
constexpr std::size_t PaletteIndex(OleColor color) {
  std::size_t index = 0;
  while (index < kPaletteColors.size() && kPaletteColors[index].color != color) ++index;
  return index;
}

}  // namespace kel
