// The controls of a form, found by their names.
#pragma once

#include <QWidget>
#include <memory>

#include "common/object.h"

namespace kel {

/// Controls: Count, Item(index from 0 or name, in any case of letters). They are the widgets with
/// an objectName in the form, depth first in the order of their making: through layouts, frames,
/// tab pages, splitters, scroll areas and nested forms, but not windows of their own, and nothing
/// inside of combo boxes, spin boxes, date pickers, lists and grids. Of two with one name the first
/// is found. A name that there is none of is Error 730, an index Error 9.
std::shared_ptr<Object> ControlsOf(QWidget& form);

/// Whether a widget is one of them.
bool IsControlOf(const QWidget& form, const QWidget& widget);

}  // namespace kel
