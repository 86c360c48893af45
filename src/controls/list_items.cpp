#include "controls/list_items.h"

#include <QHash>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QStandardItemModel>
#include <QTreeWidget>
#include <array>
#include <optional>

#include "controls/item_list.h"
#include "controls/list_item_roles.h"
#include "controls/member_table.h"

namespace kel {
namespace {

// The rows at the top of a view, and those among them that have been found by their keys.
struct ListItems {
  QPointer<QTreeView> view;
  std::optional<QHash<QString, QPersistentModelIndex>> rows_by_key;

  QAbstractItemModel& Model() const { return ModelOf(*view); }
  int Count() const { return FetchedRows(Model(), view->rootIndex()); }
  QModelIndex At(int row) const { return Model().index(row, 0, view->rootIndex()); }
};

using ItemsMember = MemberOf<ListItems>;

QString KeyOf(const QModelIndex& row) { return row.data(kListKeyRole).toString(); }

void ReadKeys(ListItems& items) {
  items.rows_by_key.emplace();
  for (int row = items.Count() - 1; row >= 0; --row) {
    const QModelIndex item = items.At(row);
    const QString key = KeyOf(item);
    if (!key.isEmpty()) items.rows_by_key->insert(key, item);
  }
}

// An item's key may have been changed, and items added, by others; then the keys are read again.
QModelIndex FindKey(ListItems& items, const QString& key) {
  for (const bool again : {false, true}) {
    if (again || !items.rows_by_key) ReadKeys(items);
    const QModelIndex item = items.rows_by_key->value(key);
    if (item.isValid() && KeyOf(item) == key) return item;
  }
  throw Error(control_error::kElementNotFound, "Element not found: " + key.toStdString());
}

QModelIndex Find(ListItems& items, const Value& index_or_key) {
  if (index_or_key.Kind() == ValueKind::kString) return FindKey(items, QTextOf(index_or_key));
  const int index = index_or_key.ToInt32();
  if (index < 1 || index > items.Count()) {
    throw Error(control_error::kIndexOutOfBounds, "Index out of bounds");
  }
  return items.At(index - 1);
}

void RequireNewKey(ListItems& items, const QString& key) {
  if (!items.rows_by_key) ReadKeys(items);
  const QModelIndex item = items.rows_by_key->value(key);
  if (item.isValid() && KeyOf(item) == key) {
    throw Error(control_error::kKeyNotUnique, "Key is not unique in collection");
  }
}

Value Add(ListItems& items, Arguments& arguments) {
  const Value& index = ArgumentAt(arguments, 0, "Index");
  const Value& key = ArgumentAt(arguments, 1, "Key");
  const Value& text = ArgumentAt(arguments, 2, "Text");
  const int count = items.Count();
  const int place = index.IsMissing() ? count + 1 : index.ToInt32();
  if (place < 1 || place > count + 1) {
    throw Error(control_error::kIndexOutOfBounds, "Index out of bounds");
  }
  const QString name = key.IsMissing() ? QString() : QTextOf(key);
  if (!name.isEmpty()) RequireNewKey(items, name);
  const QString shown = text.IsMissing() ? QString() : QTextOf(text);

  EnsureColumns(*items.view, 1);
  const QPersistentModelIndex row = InsertRow(items.Model(), place - 1, items.view->rootIndex());
  SetItem(items.Model(), row, shown, Qt::EditRole);
  if (!name.isEmpty()) {
    SetItem(items.Model(), row, name, kListKeyRole);
    items.rows_by_key->insert(name, row);
  }
  return ListItemOf(*items.view, row);
}

Value Remove(ListItems& items, Arguments& arguments) {
  const QModelIndex item = Find(items, ArgumentAt(arguments, 0, "Index"));
  RemoveRows(items.Model(), item.row(), 1, item.parent());
  return {};
}

Value Clear(ListItems& items, Arguments& /*arguments*/) {
  items.rows_by_key.reset();
  RemoveRows(items.Model(), 0, items.Count(), items.view->rootIndex());
  return {};
}

Value Item(ListItems& items, Indexes indexes) {
  if (indexes.empty()) IndexAt(indexes, 0);
  return ListItemOf(*items.view, Find(items, indexes[0]));
}

constexpr std::array kListItems = {
    ItemsMember{"Item", Item},
    ItemsMember{"Count", [](ListItems& items, Indexes) -> Value { return items.Count(); }},
    ItemsMember{"Add", nullptr, nullptr, Add},
    ItemsMember{"Remove", nullptr, nullptr, Remove},
    ItemsMember{"Clear", nullptr, nullptr, Clear},
};

class ListItemsObject : public MemberObject<ListItems> {
 public:
  explicit ListItemsObject(QTreeView& view)
      : MemberObject({{kListItems}, "Item"}), items_{&view, {}} {}

  std::string TypeName() const override { return "ListItems"; }

 protected:
  ListItems& Live() override {
    if (items_.view == nullptr) throw Error(error_number::kObjectNotSet, "the list is gone");
    return items_;
  }
  std::string Called() const override { return TypeName(); }

 private:
  ListItems items_;
};

}  // namespace

std::shared_ptr<Object> ListItemsOf(QTreeView& view) {
  return std::make_shared<ListItemsObject>(view);
}

QAbstractItemModel& ModelOf(const QTreeView& view) {
  if (view.model() == nullptr) throw Error(error_number::kObjectNotSet, "the list has no model");
  return *view.model();
}

// The model of a tree widget gets its columns from the widget only.
void EnsureColumns(QTreeView& view, int count) {
  QAbstractItemModel& model = ModelOf(view);
  const int present = model.columnCount(view.rootIndex());
  if (present >= count) return;
  if (auto* tree = qobject_cast<QTreeWidget*>(&view)) {
    tree->setColumnCount(count);
  } else if (!model.insertColumns(present, count - present, view.rootIndex())) {
    ThrowRefused("the model takes no more columns");
  }
}

}  // namespace kel
