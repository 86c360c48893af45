// Where the list window stands on the screen.
#pragma once

#include <QWidget>

namespace kel {

/// Puts the window where it was closed last; onto a screen, when that one is gone. Throws Error
/// when the settings cannot be read.
void LoadPlacement(QWidget& window);
/// Keeps the place of a window that is not maximised. Throws Error when it cannot be written.
void StorePlacement(const QWidget& window);

}  // namespace kel
