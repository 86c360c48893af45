// Where windows go on the screen, and how the wire frame gets there.
#pragma once

#include <cstdint>

#include "common/enumerations.h"

namespace kel {

/// The rectangle of a window of that size that stands in `area` as `align` says, flush with the
/// edges it names. A window larger than the area keeps its top left corner inside it.
RECT AlignedRect(const RECT& area, std::int32_t width, std::int32_t height, AlignObject align);

/// The number of steps of a wire-frame animation: the largest distance of two edges divided by
/// `fraction`, each quotient rounded to the nearest integer, halves to the even one.
/// Throws Error 11 for a fraction of 0 and 6 for more steps than 16 bits hold.
std::int16_t WireSteps(const RECT& from, const RECT& to, double fraction);

/// The rectangle of step `step` of `steps` on the way; step `steps` is `to`.
RECT WireRect(const RECT& from, const RECT& to, int step, int steps);

}  // namespace kel
