// What combo boxes and list boxes have in common: their items.

#include "controls/item_members.h"

#include <array>

#include "controls/item_list.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// The property of a list that keeps its NewIndex.
constexpr const char* kNewIndexProperty = "kelNewIndex";

Value ItemText(Control& control, Indexes indexes) {
  const int item = IndexAt(indexes, 0);
  // List(ListIndex) is read whether or not there is a current item.
  if (item == -1) return "";
  return ItemList(control.Widget()).Text(item);
}

void SetItemText(Control& control, const Value& value, Indexes indexes) {
  const ItemList items(control.Widget());
  SetItem(items.Model(), items.At(IndexAt(indexes, 0)), QTextOf(value), Qt::EditRole);
}

Value ItemData(Control& control, Indexes indexes) {
  const QVariant data = ItemList(control.Widget()).At(IndexAt(indexes, 0)).data(Qt::UserRole);
  return data.isValid() ? ValueOf(data) : Value(0);
}

void SetItemData(Control& control, const Value& value, Indexes indexes) {
  const ItemList items(control.Widget());
  SetItem(items.Model(), items.At(IndexAt(indexes, 0)), value.ToInt32(), Qt::UserRole);
}

Value NewIndex(Control& control, Indexes /*indexes*/) {
  const QVariant index = control.Widget().property(kNewIndexProperty);
  return index.isValid() ? index.toInt() : -1;
}

constexpr std::array kItems = {
    ControlMember{"ListCount",
                  [](Control& c, Indexes) -> Value { return ItemList(c.Widget()).Count(); }},
    ControlMember{"List", ItemText, SetItemText},
    ControlMember{"ItemData", ItemData, SetItemData},
    ControlMember{"NewIndex", NewIndex},
    ControlMember{
        "Sorted",
        [](Control& c, Indexes) -> Value { return IsSorted(ItemList(c.Widget()).Model()); }},
};

}  // namespace

void AddItem(Control& control, Arguments& arguments) {
  const Value& text = ArgumentAt(arguments, 0, "Item");
  const Value& index = ArgumentAt(arguments, 1, "Index");
  const int place = index.IsMissing() ? -1 : index.ToInt32();
  if (place < 0 && !index.IsMissing()) ThrowRefused("there is no place for an item at that index");
  QWidget& widget = control.Widget();
  widget.setProperty(kNewIndexProperty, ItemList(widget).Add(QTextOf(text), place));
}

void RemoveItem(Control& control, Arguments& arguments) {
  ItemList(control.Widget()).Remove(ArgumentAt(arguments, 0, "Index").ToInt32());
  control.Widget().setProperty(kNewIndexProperty, -1);
}

void ClearItems(Control& control) {
  ItemList(control.Widget()).Clear();
  control.Widget().setProperty(kNewIndexProperty, -1);
}

ControlMembers ItemMembers() { return kItems; }

}  // namespace kel
