// Colours as automation clients write them.
#pragma once

#include <cstdint>

namespace kel {

/// 0x00BBGGRR, or 0x80000000 and the index of a system colour, which follows the user's theme.
/// As a decimal integer in the settings store it is signed.
using OleColor = std::uint32_t;

/// The library's names for the system colours it uses, by their published indexes.
namespace system_color {
inline constexpr OleColor kWindowBackground = 0x80000005;
inline constexpr OleColor kWindowFrame = 0x80000006;
inline constexpr OleColor kWindowText = 0x80000008;
inline constexpr OleColor kHighlight = 0x8000000D;
inline constexpr OleColor kButtonFace = 0x8000000F;
inline constexpr OleColor kButtonShadow = 0x80000010;
inline constexpr OleColor kButtonText = 0x80000012;
inline constexpr OleColor kHighlight3d = 0x80000014;
}  // namespace system_color

}  // namespace kel
