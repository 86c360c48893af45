// The items of a combo box or list box, whatever model they stand in.
#pragma once

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QString>
#include <QVariant>
#include <QWidget>
#include <limits>

namespace kel {

/// Inserts rows below a parent and tells the first of them, which a sorting model may have put
/// elsewhere. Throws Error 5 when the model takes none.
QPersistentModelIndex InsertRow(QAbstractItemModel& model, int row, const QModelIndex& parent);

/// Throws Error 5 when the model keeps any of them.
void RemoveRows(QAbstractItemModel& model, int row, int count, const QModelIndex& parent);

/// The rows below a parent. A model that fetches them bit by bit is asked for more, until `wanted`
/// are there.
int FetchedRows(QAbstractItemModel& model, const QModelIndex& parent,
                int wanted = std::numeric_limits<int>::max());

/// Throws Error 383 when the item cannot be written.
void SetItem(QAbstractItemModel& model, const QModelIndex& item, const QVariant& value, int role);

/// True for models that keep their rows in order by themselves.
bool IsSorted(const QAbstractItemModel& model);

/// The column of a model that a combo box or list view shows. Indexes out of range are Error 381.
class ItemList {
 public:
  /// REQUIRES a QComboBox or a QListView. Throws Error 91 when it has no model.
  explicit ItemList(const QWidget& widget);

  QAbstractItemModel& Model() const { return *model_; }
  int Count() const;
  QModelIndex At(int item) const;
  std::string Text(int item) const;
  /// The first item with exactly this text, -1 when there is none.
  int Find(const std::string& text) const;

  /// The row that the item came to stand in. `item` is -1 for the end.
  int Add(const QString& text, int item) const;
  void Remove(int item) const;
  void Clear() const;

 private:
  QAbstractItemModel* model_ = nullptr;
  QModelIndex root_;
  int column_ = 0;
};

}  // namespace kel
