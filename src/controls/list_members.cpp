// ListBox.

#include <QItemSelection>
#include <QListView>
#include <array>

#include "controls/item_list.h"
#include "controls/item_members.h"
#include "controls/selection_mode.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

QListView& List(Control& control) { return control.As<QListView>(); }

// A list without a model has no selection either.
QItemSelectionModel& Selection(Control& control) {
  static_cast<void>(ItemList(List(control)));
  return *List(control).selectionModel();
}

Value ListIndex(Control& control, Indexes /*indexes*/) {
  return List(control).currentIndex().row();
}

// Where several items may be selected, the current one need not be.
void MakeCurrent(Control& control, const QModelIndex& item) {
  const bool single = MultiSelectOf(List(control)) == kSingleSelect;
  const auto select = single ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
  Selection(control).setCurrentIndex(item, select);
}

void SetListIndex(Control& control, const Value& value, Indexes /*indexes*/) {
  const ItemList items(List(control));
  const int item = NumberWithin(value, -1, items.Count() - 1, "ListIndex");
  MakeCurrent(control, item < 0 ? QModelIndex() : items.At(item));
}

Value Text(Control& control, Indexes /*indexes*/) {
  const QModelIndex current = List(control).currentIndex();
  return current.isValid() ? ItemList(List(control)).Text(current.row()) : std::string();
}

// A blank selects nothing in a list that has no blank.
void SetText(Control& control, const Value& value, Indexes /*indexes*/) {
  const ItemList items(List(control));
  const std::string text = value.ToText();
  const int item = items.Find(text);
  if (item < 0 && !text.empty()) ThrowReadOnly("Text");
  MakeCurrent(control, item < 0 ? QModelIndex() : items.At(item));
}

Value Selected(Control& control, Indexes indexes) {
  return Selection(control).isSelected(ItemList(List(control)).At(IndexAt(indexes, 0)));
}

// Qt keeps every selected range that it is given. One that goes on where the last one ended is made
// part of it, or selecting a long list item by item would take ever longer.
QItemSelection Extended(QItemSelection selection, const QModelIndex& item) {
  if (!selection.isEmpty()) {
    const QItemSelectionRange& last = selection.last();
    if (last.bottom() + 1 == item.row() && last.left() == item.column() &&
        last.right() == item.column() && last.parent() == item.parent()) {
      selection.last() = QItemSelectionRange(last.topLeft(), item);
      return selection;
    }
  }
  selection.select(item, item);
  return selection;
}

void SetSelected(Control& control, const Value& value, Indexes indexes) {
  const QModelIndex item = ItemList(List(control)).At(IndexAt(indexes, 0));
  QItemSelectionModel& selection = Selection(control);
  const bool on = value.ToBoolean();
  if (on == selection.isSelected(item)) return;
  if (!on) {
    selection.select(item, QItemSelectionModel::Deselect);
  } else if (MultiSelectOf(List(control)) == kSingleSelect) {
    MakeCurrent(control, item);
  } else {
    selection.select(Extended(selection.selection(), item), QItemSelectionModel::ClearAndSelect);
  }
}

Value SelCount(Control& control, Indexes /*indexes*/) {
  int count = 0;
  for (const QItemSelectionRange& range : Selection(control).selection()) count += range.height();
  return count;
}

Value TopIndex(Control& control, Indexes /*indexes*/) {
  const QModelIndex top = List(control).indexAt(QPoint(1, 1));
  return top.isValid() ? top.row() : 0;
}

void SetTopIndex(Control& control, const Value& value, Indexes /*indexes*/) {
  const ItemList items(List(control));
  const int item = NumberWithin(value, 0, items.Count() - 1, "TopIndex");
  List(control).scrollTo(items.At(item), QAbstractItemView::PositionAtTop);
}

constexpr std::array kListBox = {
    ControlMember{"Text", Text, SetText},
    ControlMember{"AddItem", nullptr, nullptr,
                  [](Control& c, Arguments& arguments) -> Value {
                    AddItem(c, arguments);
                    return {};
                  }},
    ControlMember{"RemoveItem", nullptr, nullptr,
                  [](Control& c, Arguments& arguments) -> Value {
                    RemoveItem(c, arguments);
                    return {};
                  }},
    ControlMember{"Clear", nullptr, nullptr,
                  [](Control& c, Arguments&) -> Value {
                    ClearItems(c);
                    return {};
                  }},
    ControlMember{"ListIndex", ListIndex, SetListIndex},
    ControlMember{"Selected", Selected, SetSelected},
    ControlMember{"SelCount", SelCount},
    ControlMember{"MultiSelect",
                  [](Control& c, Indexes) -> Value { return MultiSelectOf(List(c)); },
                  [](Control& c, const Value& v, Indexes) { SetMultiSelect(List(c), v); }},
    ControlMember{"TopIndex", TopIndex, SetTopIndex},
};

}  // namespace

ControlMembers ListBoxMembers() { return kListBox; }

}  // namespace kel
