// What the classes of widgets are to an automation client.
#pragma once

#include <QString>
#include <QWidget>
#include <string>

#include "common/ole_color.h"
#include "controls/widget_members.h"

namespace kel {

enum class ColorRole { kBack, kFore };

/// The published kind ("TextBox", "Label", "Form", ...), else the widget's own class name.
std::string TypeNameOf(const QWidget& widget);

/// The members that a widget has as what it is.
MemberTables<Control> MembersOf(const QWidget& widget);

/// True for what holds a date or, where that is allowed, none: it implements kDatePickerInterface.
bool IsDatePicker(const QWidget& widget);

OleColor WidgetColor(const QWidget& widget, ColorRole role);
void SetWidgetColor(QWidget& widget, ColorRole role, OleColor color);

}  // namespace kel
