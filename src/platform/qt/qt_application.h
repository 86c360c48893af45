// The application object that windows need.
#pragma once

namespace kel {

/// True when this thread can make widgets. A program without any application object gets one, on
/// its main thread: it is never destroyed, leaves the program's locale and environment as they
/// are, and ends the program neither at its birth nor when the last window closes. Where no display
/// answers it works offscreen.
///
/// False beside an application object without widgets, on another thread than the application's,
/// and once the program has destroyed its own.
bool EnsureApplication();

/// EnsureApplication, and a window would be on a screen: not so on the platforms offscreen and
/// minimal.
bool HasScreen();

/// EnsureApplication, and a window could be answered. Not so where the library itself made the
/// application and found no display: nobody asked for offscreen windows there, and a modal one
/// would wait for ever.
bool CanShowWindows();
/// Throws Error 5 where no window can be shown.
void RequireWindows();

}  // namespace kel
