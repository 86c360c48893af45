#include "controls/widget_kind.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QTextEdit>
#include <QTreeView>
#include <array>

#include "controls/Button.h"
#include "controls/ProgressBar.h"
#include "controls/colors.h"

namespace kel {
namespace {

using Own = ControlMembers (*)();

// What a class of widgets is to an automation client.
struct Kind {
  const QMetaObject* widget_class;
  const char* type_name;
  const char* default_member;
  Own own;               // what is special to the kind
  Own shared = nullptr;  // what it has with others of its family
  QPalette::ColorRole background = QPalette::Window;
  QPalette::ColorRole foreground = QPalette::WindowText;
};

Kind Field(const QMetaObject& widget_class, const char* type_name, const char* default_member,
           Own own, Own shared = nullptr) {
  return {&widget_class, type_name, default_member, own, shared, QPalette::Base, QPalette::Text};
}

// The first class that a widget inherits counts.
const std::array kKinds = {
    Field(QLineEdit::staticMetaObject, "TextBox", "Text", LineEditMembers),
    Field(QPlainTextEdit::staticMetaObject, "TextBox", "Text", TextEditMembers),
    Field(QTextEdit::staticMetaObject, "TextBox", "Text", TextEditMembers),
    Field(QComboBox::staticMetaObject, "ComboBox", "Text", ComboMembers, ItemMembers),
    Field(QDateTimeEdit::staticMetaObject, "DTPicker", "Value", DatePickerMembers),
    Field(QAbstractSpinBox::staticMetaObject, "TextBox", "Text", SpinBoxMembers, RangeMembers),
    Field(QListView::staticMetaObject, "ListBox", "Text", ListBoxMembers, ItemMembers),
    Field(QTreeView::staticMetaObject, "ListView", "", ListViewMembers),
    Field(QTableView::staticMetaObject, "MSFlexGrid", "Text", GridMembers, GridCellMembers),
    Kind{&QCheckBox::staticMetaObject, "CheckBox", "Value", CheckBoxMembers, ButtonMembers},
    Kind{&QRadioButton::staticMetaObject, "OptionButton", "Value", OptionMembers, ButtonMembers},
    Kind{&QAbstractButton::staticMetaObject, "CommandButton", "Caption", ButtonMembers, nullptr,
         QPalette::Button, QPalette::ButtonText},
    Kind{&QLabel::staticMetaObject, "Label", "Caption", LabelMembers},
    Kind{&QGroupBox::staticMetaObject, "Frame", "Caption", FrameMembers, ContainerMembers},
    Kind{&QTabWidget::staticMetaObject, "TabStrip", "Caption", TabMembers, ContainerMembers},
    Kind{&QProgressBar::staticMetaObject, "ProgressBar", "Value", RangeMembers},
    Kind{&ProgressBar::staticMetaObject, "ProgressBar", "Value", RangeMembers},
    Kind{&QScrollBar::staticMetaObject, "ScrollBar", "Value", RangeMembers},
    Kind{&QAbstractSlider::staticMetaObject, "Slider", "Value", RangeMembers},
};
const Kind kForm{&QWidget::staticMetaObject, "Form", "Caption", FormMembers, ContainerMembers};
const Kind kOther{&QWidget::staticMetaObject, nullptr, "Caption", FormMembers, ContainerMembers};

const Kind& KindOf(const QWidget& widget) {
  for (const Kind& kind : kKinds) {
    if (widget.metaObject()->inherits(kind.widget_class)) return kind;
  }
  return widget.isWindow() ? kForm : kOther;
}

}  // namespace

std::string TypeNameOf(const QWidget& widget) {
  const char* name = KindOf(widget).type_name;
  return name != nullptr ? name : widget.metaObject()->className();
}

MemberTables<Control> MembersOf(const QWidget& widget) {
  const Kind& kind = KindOf(widget);
  return {{kind.own(), kind.shared != nullptr ? kind.shared() : ControlMembers(), CommonMembers()},
          kind.default_member};
}

bool IsDatePicker(const QWidget& widget) {
  return qobject_cast<const QDateTimeEdit*>(&widget) != nullptr;
}

OleColor WidgetColor(const QWidget& widget, ColorRole role) {
  const bool back = role == ColorRole::kBack;
  if (const auto* button = qobject_cast<const Button*>(&widget)) {
    return back ? button->BackColor() : button->ForeColor();
  }
  if (const auto* bar = qobject_cast<const ProgressBar*>(&widget)) {
    return back ? bar->BackColor() : bar->ForeColor();
  }
  const Kind& kind = KindOf(widget);
  return ToOleColor(widget.palette().color(back ? kind.background : kind.foreground));
}

void SetWidgetColor(QWidget& widget, ColorRole role, OleColor color) {
  const bool back = role == ColorRole::kBack;
  if (auto* button = qobject_cast<Button*>(&widget)) {
    back ? button->BackColor(color) : button->ForeColor(color);
    return;
  }
  if (auto* bar = qobject_cast<ProgressBar*>(&widget)) {
    back ? bar->BackColor(color) : bar->ForeColor(color);
    return;
  }
  const Kind& kind = KindOf(widget);
  QPalette palette = widget.palette();
  palette.setColor(back ? kind.background : kind.foreground,
                   ToQColor(color, QApplication::palette()));
  widget.setPalette(palette);
  if (back) widget.setAutoFillBackground(true);  // labels show what is behind them otherwise
}

}  // namespace kel
