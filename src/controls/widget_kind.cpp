#include "controls/widget_kind.h"

#include <QAbstractSpinBox>
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
#include <QTextEdit>
#include <array>

#include "common/error.h"
#include "controls/Button.h"
#include "controls/ProgressBar.h"
#include "controls/colors.h"

namespace kel {
namespace {

constexpr int kPropertyIsReadOnly = 383;

// What a class of widgets is to an automation client.
struct Kind {
  const QMetaObject* widget_class;
  const char* type_name;
  bool is_text_field;
  const char* text_property;  // of its text or caption; null when there is none
  QPalette::ColorRole background = QPalette::Window;
  QPalette::ColorRole foreground = QPalette::WindowText;
};

// The first class that a widget inherits counts.
const std::array kKinds = {
    Kind{&QLineEdit::staticMetaObject, "TextBox", true, "text", QPalette::Base, QPalette::Text},
    Kind{&QPlainTextEdit::staticMetaObject, "TextBox", true, "plainText", QPalette::Base,
         QPalette::Text},
    Kind{&QTextEdit::staticMetaObject, "TextBox", true, "plainText", QPalette::Base,
         QPalette::Text},
    Kind{&QComboBox::staticMetaObject, "ComboBox", true, "currentText", QPalette::Base,
         QPalette::Text},
    Kind{&QDateTimeEdit::staticMetaObject, "DTPicker", true, "text", QPalette::Base,
         QPalette::Text},
    Kind{&QAbstractSpinBox::staticMetaObject, "TextBox", true, "text", QPalette::Base,
         QPalette::Text},
    Kind{&QListView::staticMetaObject, "ListBox", true, nullptr, QPalette::Base, QPalette::Text},
    Kind{&QCheckBox::staticMetaObject, "CheckBox", false, "text"},
    Kind{&QRadioButton::staticMetaObject, "OptionButton", false, "text"},
    Kind{&QAbstractButton::staticMetaObject, "CommandButton", false, "text", QPalette::Button,
         QPalette::ButtonText},
    Kind{&QLabel::staticMetaObject, "Label", false, "text"},
    Kind{&QGroupBox::staticMetaObject, "Frame", false, "title"},
    Kind{&QProgressBar::staticMetaObject, "ProgressBar", false, nullptr},
    Kind{&ProgressBar::staticMetaObject, "ProgressBar", false, nullptr},
};
const Kind kForm{&QWidget::staticMetaObject, "Form", false, "windowTitle"};
const Kind kOther{&QWidget::staticMetaObject, nullptr, false, nullptr};

const Kind& KindOf(const QWidget& widget) {
  for (const Kind& kind : kKinds) {
    if (widget.metaObject()->inherits(kind.widget_class)) return kind;
  }
  return widget.isWindow() ? kForm : kOther;
}

void ChooseText(QComboBox& combo, const QString& text) {
  if (combo.isEditable()) {
    combo.setEditText(text);
    return;
  }
  const int index = combo.findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive);
  if (index < 0) ThrowReadOnly("Text");
  combo.setCurrentIndex(index);
}

void EnterText(QAbstractSpinBox& box, const QString& text) {
  auto* edit = box.findChild<QLineEdit*>();
  const QString before = box.text();
  edit->setText(text);
  if (!box.hasAcceptableInput()) {
    edit->setText(before);
    throw Error(error_number::kTypeMismatch, "not a value of the field: " + text.toStdString());
  }
  box.interpretText();
}

}  // namespace

std::string TypeNameOf(const QWidget& widget) {
  const char* name = KindOf(widget).type_name;
  return name != nullptr ? name : widget.metaObject()->className();
}

bool IsTextField(const QWidget& widget) { return KindOf(widget).is_text_field; }

bool HasWidgetText(const QWidget& widget) { return KindOf(widget).text_property != nullptr; }

QString WidgetText(const QWidget& widget) {
  return widget.property(KindOf(widget).text_property).toString();
}

void SetWidgetText(QWidget& widget, const QString& text) {
  if (auto* combo = qobject_cast<QComboBox*>(&widget)) {
    ChooseText(*combo, text);
  } else if (auto* box = qobject_cast<QAbstractSpinBox*>(&widget)) {
    EnterText(*box, text);
  } else {
    widget.setProperty(KindOf(widget).text_property, text);
  }
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

void ThrowReadOnly(std::string_view member) {
  throw Error(kPropertyIsReadOnly, std::string(member) + " is read-only");
}

}  // namespace kel
