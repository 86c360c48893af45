// A frame that runs over the screen.
#pragma once

#include <chrono>

#include "common/enumerations.h"

namespace kel {

/// Shows the outlines of the rectangles from `from` to `to`, one after the other and `pause` each,
/// in a window of their own that lets everything else through and is gone afterwards. Draws nothing
/// where the window system does not say where windows are (Wayland). REQUIRES EnsureApplication().
void DrawWireFrame(const RECT& from, const RECT& to, int steps, std::chrono::milliseconds pause);

}  // namespace kel
