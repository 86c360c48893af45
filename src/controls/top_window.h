// What the library's top-level windows have in common.
#pragma once

#include <QWidget>

namespace kel {

/// The window that a new one belongs above: the topmost modal window, else the active one; null
/// when the program shows none.
QWidget* OwnerForNewWindow();

/// Keeps `window` above `owner`, and usable while that is modal. It does not become a child: who
/// destroys the owner leaves `window`, which may be waiting for an answer, alone. REQUIRES that
/// `window` is not shown.
void SetOwner(QWidget& window, QWidget* owner);

/// The size that the screen of `window` has for a window within its frame, in pixels.
QSize RoomOnScreen(const QWidget& window);

/// Where a new window of the present size stands in the middle of `owner`, as far as the screen has
/// the room there.
QPoint PlaceOver(const QWidget& window, const QWidget& owner);

/// The width in pixels at which a window's frame shows the whole title beside its buttons.
int WidthForTitle(const QWidget& window);

/// Shows a window and returns when it is painted, without letting the user's input through. Waits
/// no longer than a blink for a window system that does not answer. The program's own timers run
/// meanwhile, and may destroy the window.
void ShowPainted(QWidget& window);

}  // namespace kel
