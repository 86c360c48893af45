// ListView.

#include <QTreeView>
#include <array>

#include "controls/list_items.h"
#include "controls/selection_mode.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

QTreeView& View(Control& control) { return control.As<QTreeView>(); }

// With an index the collection's item, as ListItems(1) is written.
Value ItemOr(const std::shared_ptr<Object>& collection, Indexes indexes) {
  return indexes.empty() ? Value(collection) : collection->Get(Object::kDefaultMember, indexes);
}

Value ListItems(Control& control, Indexes indexes) {
  if (control.collection == nullptr) control.collection = ListItemsOf(View(control));
  return ItemOr(control.collection, indexes);
}

Value ColumnHeaders(Control& control, Indexes indexes) {
  return ItemOr(ColumnHeadersOf(View(control)), indexes);
}

Value SelectedItem(Control& control, Indexes /*indexes*/) {
  QTreeView& view = View(control);
  const QModelIndex current = view.currentIndex().siblingAtColumn(0);
  if (!current.isValid() || !view.selectionModel()->isSelected(current)) {
    return Value::ObjectPtr();
  }
  return ListItemOf(view, current);
}

void SetSelectedItem(Control& control, const Value& value, Indexes /*indexes*/) {
  QTreeView& view = View(control);
  if (value.IsObject() && value.Pointer() == nullptr) {
    view.clearSelection();
    return;
  }
  const QModelIndex row = RowOf(value.ToObject(), view);
  view.selectionModel()->setCurrentIndex(
      row, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

constexpr std::array kListView = {
    ControlMember{"ListItems", ListItems},
    ControlMember{"ColumnHeaders", ColumnHeaders},
    ControlMember{"SelectedItem", SelectedItem, SetSelectedItem},
    ControlMember{
        "MultiSelect",
        [](Control& c, Indexes) -> Value { return MultiSelectOf(View(c)) != kSingleSelect; },
        [](Control& c, const Value& v, Indexes) {
          SetMultiSelect(View(c), v.ToBoolean() ? kExtendedSelect : kSingleSelect);
        }},
};

}  // namespace

ControlMembers ListViewMembers() { return kListView; }

}  // namespace kel
