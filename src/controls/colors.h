// Published colours on a Qt screen.
#pragma once

#include <QColor>
#include <QPalette>

#include "common/ole_color.h"
#include "common/value.h"

namespace kel {

/// A system colour is taken from the palette, so that it follows the user's theme.
QColor ToQColor(OleColor color, const QPalette& palette);
OleColor ToOleColor(const QColor& color);

/// Colours cross boundaries as signed 32-bit numbers; the unsigned ones are read, too.
/// Throws Error 13 for what is no number, 6 for one of more than 32 bits.
OleColor ColorOf(const Value& value);
Value ColorValue(OleColor color);

}  // namespace kel
