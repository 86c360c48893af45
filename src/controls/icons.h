// The library's own icons.
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QStringList>

namespace kel {

/// The icon of that name: drawn from its SVG at whatever size and screen scale is asked for, its
/// strokes in the palette's text colour (so it is right on light and dark), disabled ones faded.
/// A null icon for an unknown name.
///
/// Tool bar: print, previous, next, zoom-in, zoom-out, best-fit, export, find, back-color,
/// fore-color, about, close. Messages, in the order of IconStyles: save, update, delete,
/// message-print, close-all, information, question, critical, exclamation. Preview: busy, ready.
/// List window: first, last, filter, refresh, sort-ascending, sort-descending, align, preview.
QIcon Icon(const QString& name);

QStringList IconNames();

}  // namespace kel
