// Qt widgets as the Objects that toolkit operations take.
#pragma once

#include <QWidget>
#include <memory>

#include "common/object.h"

namespace kel {

/// The property of a widget that keeps its Tag.
inline constexpr const char* kTagProperty = "kelTag";

/// A widget seen by the published member names of forms and controls: Name, Tag, Caption, Text,
/// Parent, SetFocus, hWnd, Left, Top, Width, Height (twips), Visible, Enabled, BackColor,
/// ForeColor. Text is the default member of what has a text, Caption of the others. Tag is kept
/// with the widget. Parent is the window that the widget is in; two adapters of one widget are the
/// same. The adapter does not own the widget: once that is gone every use throws Error 91.
std::shared_ptr<Object> WidgetObject(QWidget& widget);

/// The widget behind an Object; null when it is none, or gone.
QWidget* WidgetOf(const Object& object);

}  // namespace kel
