// What the classes of widgets are to an automation client.
#pragma once

#include <QString>
#include <QWidget>
#include <string>
#include <string_view>

#include "common/ole_color.h"

namespace kel {

enum class ColorRole { kBack, kFore };

/// The published kind ("TextBox", "Label", "Form", ...), else the widget's own class name.
std::string TypeNameOf(const QWidget& widget);

/// True for what people enter text into, false for what has a caption.
bool IsTextField(const QWidget& widget);
/// False for widgets that show no text of their own.
bool HasWidgetText(const QWidget& widget);
/// The text of a field, the caption of anything else. REQUIRES HasWidgetText.
QString WidgetText(const QWidget& widget);
/// Throws Error 13 for what the field cannot hold, 383 for a text that its list does not have.
/// REQUIRES HasWidgetText.
void SetWidgetText(QWidget& widget, const QString& text);

OleColor WidgetColor(const QWidget& widget, ColorRole role);
void SetWidgetColor(QWidget& widget, ColorRole role, OleColor color);

/// Throws Error 383, which clients know as the answer to writing what can only be read.
[[noreturn]] void ThrowReadOnly(std::string_view member);

}  // namespace kel
