// What holds a number between two others: spin boxes, sliders, scroll and progress bars.

#include <QAbstractSpinBox>
#include <algorithm>
#include <array>

#include "controls/ProgressBar.h"
#include "controls/line_text.h"
#include "controls/text_alignment.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// The classes have no base in common, but properties of the same names.
constexpr const char* kValueProperty = "value";
constexpr const char* kMinProperty = "minimum";
constexpr const char* kMaxProperty = "maximum";

QVariant Number(Control& control, const char* property) {
  QWidget& widget = control.Widget();
  QVariant number = widget.property(property);
  if (!number.isValid()) ThrowNoMember(widget.objectName().toStdString(), property);
  return number;
}

void SetNumber(Control& control, const char* property, const Value& value) {
  const bool is_double = Number(control, property).typeId() == QMetaType::Double;
  control.Widget().setProperty(property,
                               is_double ? QVariant(value.ToDouble()) : QVariant(value.ToInt32()));
}

Value RangeValue(Control& control, Indexes /*indexes*/) {
  if (auto* bar = qobject_cast<ProgressBar*>(&control.Widget())) return bar->Value();
  return ValueOf(Number(control, kValueProperty));
}

// Qt would take the nearer end of the range, or nothing.
void SetRangeValue(Control& control, const Value& value, Indexes /*indexes*/) {
  if (auto* bar = qobject_cast<ProgressBar*>(&control.Widget())) {
    bar->Value(value.ToInt32());
    return;
  }
  const double number = value.ToDouble();
  if (!(number >= Number(control, kMinProperty).toDouble() &&
        number <= Number(control, kMaxProperty).toDouble())) {
    ThrowInvalidValue("Value");
  }
  SetNumber(control, kValueProperty, value);
}

Value Min(Control& control, Indexes /*indexes*/) {
  if (auto* bar = qobject_cast<ProgressBar*>(&control.Widget())) return bar->Min();
  return ValueOf(Number(control, kMinProperty));
}

void SetMin(Control& control, const Value& value, Indexes /*indexes*/) {
  if (auto* bar = qobject_cast<ProgressBar*>(&control.Widget())) {
    bar->Min(value.ToInt32());
  } else {
    SetNumber(control, kMinProperty, value);
  }
}

Value Max(Control& control, Indexes /*indexes*/) {
  if (auto* bar = qobject_cast<ProgressBar*>(&control.Widget())) return bar->Max();
  return ValueOf(Number(control, kMaxProperty));
}

void SetMax(Control& control, const Value& value, Indexes /*indexes*/) {
  if (auto* bar = qobject_cast<ProgressBar*>(&control.Widget())) {
    bar->Max(value.ToInt32());
  } else {
    SetNumber(control, kMaxProperty, value);
  }
}

QAbstractSpinBox& Box(Control& control) { return control.As<QAbstractSpinBox>(); }

/// A spin box always holds a number, so an emptied one holds 0, or the number next to it.
void SetBoxText(Control& control, const Value& value, Indexes indexes) {
  const QString text = QTextOf(value);
  if (text.isEmpty() && control.Widget().property(kValueProperty).isValid()) {
    SetRangeValue(
        control,
        std::clamp(0.0, Min(control, indexes).ToDouble(), Max(control, indexes).ToDouble()),
        indexes);
    return;
  }
  if (EnterText(Box(control), text)) return;
  throw Error(error_number::kTypeMismatch, "not a value of the field: " + text.toStdString());
}

constexpr std::array kRange = {
    ControlMember{"Value", RangeValue, SetRangeValue},
    ControlMember{"Min", Min, SetMin},
    ControlMember{"Max", Max, SetMax},
};

constexpr std::array kSpinBox = {
    ControlMember{"Text", [](Control& c, Indexes) { return ValueOf(Box(c).text()); }, SetBoxText},
    ControlMember{"Locked", [](Control& c, Indexes) -> Value { return Box(c).isReadOnly(); },
                  [](Control& c, const Value& v, Indexes) { Box(c).setReadOnly(v.ToBoolean()); }},
    ControlMember{"Alignment",
                  [](Control& c, Indexes) { return AlignmentValue(Box(c).alignment()); },
                  [](Control& c, const Value& v, Indexes) { Box(c).setAlignment(AlignmentOf(v)); }},
};

}  // namespace

ControlMembers RangeMembers() { return kRange; }

ControlMembers SpinBoxMembers() { return kSpinBox; }

}  // namespace kel
