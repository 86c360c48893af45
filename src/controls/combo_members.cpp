#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <array>

#include "common/twips.h"
#include "controls/item_list.h"
#include "controls/item_members.h"
#include "controls/line_members.h"
#include "controls/line_text.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// Published styles.
constexpr int kDropDownCombo = 0;
constexpr int kDropDownList = 2;

QComboBox& Combo(Control& control) { return control.As<QComboBox>(); }

// Where a list can only be chosen from there is nothing to type into.
QLineEdit& Line(Control& control) {
  QLineEdit* const line = Combo(control).lineEdit();
  if (line == nullptr) ThrowReadOnly("the text of a drop-down list");
  return *line;
}

// While something else is typed, no item is current.
Value ListIndex(Control& control, Indexes /*indexes*/) {
  const QComboBox& combo = Combo(control);
  const int current = combo.currentIndex();
  const bool other = combo.isEditable() && combo.currentText() != combo.itemText(current);
  return other ? -1 : current;
}

void Choose(QComboBox& combo, int item) {
  QLineEdit* const line = combo.lineEdit();
  if (line != nullptr && item >= 0) MakeRoom(*line, combo.itemText(item));
  combo.setCurrentIndex(item);
}

void SetListIndex(Control& control, const Value& value, Indexes /*indexes*/) {
  const int last = ItemList(Combo(control)).Count() - 1;
  Choose(Combo(control), NumberWithin(value, -1, last, "ListIndex"));
}

// A blank chooses nothing in a list that has no blank to choose.
void SetComboText(Control& control, const Value& value, Indexes /*indexes*/) {
  QComboBox& combo = Combo(control);
  const std::string text = value.ToText();
  const int item = ItemList(combo).Find(text);
  if (item >= 0) {
    Choose(combo, item);
  } else if (combo.isEditable()) {
    SetText(*combo.lineEdit(), QString::fromStdString(text));
  } else if (text.empty()) {
    combo.setCurrentIndex(-1);
  } else {
    ThrowReadOnly("Text");
  }
}

// Qt chooses the first item that comes into an empty list, which nobody has asked for.
Value AddToCombo(Control& control, Arguments& arguments) {
  QComboBox& combo = Combo(control);
  if (combo.count() > 0) {
    AddItem(control, arguments);
    return {};
  }
  const QString typed = combo.currentText();
  const QSignalBlocker quiet(combo);
  AddItem(control, arguments);
  combo.setCurrentIndex(-1);
  if (combo.isEditable()) combo.setEditText(typed);
  return {};
}

// Qt would go on to the next item when the current one is removed.
Value RemoveFromCombo(Control& control, Arguments& arguments) {
  QComboBox& combo = Combo(control);
  const bool is_typed = combo.isEditable() && ListIndex(control, {}) == Value(-1);
  const QString typed = combo.currentText();
  if (ArgumentAt(arguments, 0, "Index").ToInt32() == combo.currentIndex()) {
    combo.setCurrentIndex(-1);
  }
  RemoveItem(control, arguments);
  if (is_typed) combo.setEditText(typed);
  return {};
}

Value ClearCombo(Control& control, Arguments& /*arguments*/) {
  ClearItems(control);
  if (Combo(control).isEditable()) Combo(control).clearEditText();
  return {};
}

int RowHeight(const QComboBox& combo) {
  const int height = combo.view()->sizeHintForRow(0);
  return height > 0 ? height : combo.fontMetrics().height();
}

Value DropDownWidth(Control& control, Indexes /*indexes*/) {
  const QComboBox& combo = Combo(control);
  return TwipsOf(std::max(combo.view()->minimumWidth(), combo.width()));
}

void SetDropDownWidth(Control& control, const Value& value, Indexes /*indexes*/) {
  const int width = PixelsOf(value.ToInt32());
  if (width < 0 || width > QWIDGETSIZE_MAX) ThrowInvalidValue("DropDownWidth");
  Combo(control).view()->setMinimumWidth(width);
}

// Whole items are shown.
void SetDropDownHeight(Control& control, const Value& value, Indexes /*indexes*/) {
  QComboBox& combo = Combo(control);
  combo.setMaxVisibleItems(std::max(PixelsOf(value.ToInt32()) / RowHeight(combo), 1));
}

constexpr std::array kCombo = Joined(
    kLineMembers<Line>,
    std::array{
        ControlMember{"Text", [](Control& c, Indexes) { return ValueOf(Combo(c).currentText()); },
                      SetComboText},
        ControlMember{"AddItem", nullptr, nullptr, AddToCombo},
        ControlMember{"RemoveItem", nullptr, nullptr, RemoveFromCombo},
        ControlMember{"Clear", nullptr, nullptr, ClearCombo},
        ControlMember{"ListIndex", ListIndex, SetListIndex},
        ControlMember{"Style",
                      [](Control& c, Indexes) -> Value {
                        return Combo(c).isEditable() ? kDropDownCombo : kDropDownList;
                      }},
        ControlMember{"DropDownWidth", DropDownWidth, SetDropDownWidth},
        ControlMember{"DropDownHeight",
                      [](Control& c, Indexes) -> Value {
                        return TwipsOf(Combo(c).maxVisibleItems() * RowHeight(Combo(c)));
                      },
                      SetDropDownHeight},
    });

}  // namespace

ControlMembers ComboMembers() { return kCombo; }

}  // namespace kel
