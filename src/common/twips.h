// The published unit of window places and sizes.
#pragma once

#include <cmath>
#include <cstdint>

namespace kel {

/// 1/1440 inch.
using Twips = std::int32_t;

/// At 96 pixels per inch, which is 100 % on every desktop; window systems scale these pixels.
inline constexpr double kTwipsPerPixel = 15;

inline int PixelsOf(Twips twips) { return static_cast<int>(std::lround(twips / kTwipsPerPixel)); }
inline Twips TwipsOf(int pixels) {
  return static_cast<Twips>(std::lround(pixels * kTwipsPerPixel));
}

}  // namespace kel
