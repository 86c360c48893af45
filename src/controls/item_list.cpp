#include "controls/item_list.h"

#include <QComboBox>
#include <QListView>
#include <QListWidget>
#include <QSortFilterProxyModel>

#include "common/error.h"
#include "controls/member_arguments.h"

namespace kel {

QPersistentModelIndex InsertRow(QAbstractItemModel& model, int row, const QModelIndex& parent) {
  if (!model.insertRows(row, 1, parent)) ThrowRefused("the model takes no new rows");
  return model.index(row, 0, parent);
}

void RemoveRows(QAbstractItemModel& model, int row, int count, const QModelIndex& parent) {
  if (count > 0 && !model.removeRows(row, count, parent)) {
    ThrowRefused("the model gives up no rows");
  }
}

int FetchedRows(QAbstractItemModel& model, const QModelIndex& parent, int wanted) {
  int known = model.rowCount(parent);
  while (known < wanted && model.canFetchMore(parent)) {
    model.fetchMore(parent);
    if (model.rowCount(parent) == known) break;
    known = model.rowCount(parent);
  }
  return known;
}

void SetItem(QAbstractItemModel& model, const QModelIndex& item, const QVariant& value, int role) {
  if (!model.setData(item, value, role)) ThrowReadOnly("an item of the model");
}

bool IsSorted(const QAbstractItemModel& model) {
  if (const auto* list = qobject_cast<const QListWidget*>(model.parent())) {
    return list->isSortingEnabled();
  }
  const auto* proxy = qobject_cast<const QSortFilterProxyModel*>(&model);
  return proxy != nullptr && proxy->dynamicSortFilter() && proxy->sortColumn() >= 0;
}

ItemList::ItemList(const QWidget& widget) {
  if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
    model_ = combo->model();
    root_ = combo->rootModelIndex();
    column_ = combo->modelColumn();
  } else {
    const auto& view = static_cast<const QListView&>(widget);
    model_ = view.model();
    root_ = view.rootIndex();
    column_ = view.modelColumn();
  }
  if (model_ == nullptr) throw Error(error_number::kObjectNotSet, "the list has no model");
}

int ItemList::Count() const { return FetchedRows(*model_, root_); }

QModelIndex ItemList::At(int item) const {
  if (item < 0 || item >= Count()) {
    throw Error(control_error::kInvalidArrayIndex, "Invalid property array index");
  }
  return model_->index(item, column_, root_);
}

std::string ItemList::Text(int item) const { return ShownText(At(item).data()); }

int ItemList::Find(const std::string& text) const {
  const int count = Count();
  for (int i = 0; i < count; ++i) {
    if (ShownText(model_->index(i, column_, root_).data()) == text) return i;
  }
  return -1;
}

int ItemList::Add(const QString& text, int item) const {
  const int count = Count();
  if (item < -1 || item > count) ThrowRefused("there is no place for an item at that index");
  const int columns = model_->columnCount(root_);  // a new QStandardItemModel has none
  if (columns <= column_) model_->insertColumns(columns, column_ + 1 - columns, root_);
  const QPersistentModelIndex row = InsertRow(*model_, item == -1 ? count : item, root_);
  const QPersistentModelIndex added = row.sibling(row.row(), column_);
  SetItem(*model_, added, text, Qt::EditRole);
  return added.row();
}

void ItemList::Remove(int item) const {
  if (item < 0 || item >= Count()) ThrowRefused("there is no item of that index");
  RemoveRows(*model_, item, 1, root_);
}

void ItemList::Clear() const { RemoveRows(*model_, 0, Count(), root_); }

}  // namespace kel
