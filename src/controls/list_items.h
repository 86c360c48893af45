// The rows and the columns of a list view as collections of objects.
#pragma once

#include <QModelIndex>
#include <QTreeView>
#include <memory>

#include "common/object.h"

namespace kel {

/// ListItems: Count, Clear, Add([Index], [Key], [Text]), Item(index from 1 or key), Remove(index or
/// key). Errors are 35600 for an index and 35601 for a key that there is none of, 35602 for a key
/// that another item has.
std::shared_ptr<Object> ListItemsOf(QTreeView& view);

/// One row: Text, SubItems(1 and on), Key, Tag, Selected, Checked, Bold, ForeColor, Index. It stays
/// with its row when others come and go; once the row is gone every use is Error 91.
std::shared_ptr<Object> ListItemOf(QTreeView& view, const QModelIndex& row);

/// The row behind a list item of that view. Throws Error 13 for other objects.
QModelIndex RowOf(const Object& item, const QTreeView& view);

/// ColumnHeaders: Count, Add([Index], [Key], [Text], [Width]), Item(index from 1) with Text, Width
/// (twips) and Index.
std::shared_ptr<Object> ColumnHeadersOf(QTreeView& view);

/// Throws Error 91 when the view has no model.
QAbstractItemModel& ModelOf(const QTreeView& view);
/// Throws Error 5 when the model takes no more columns.
void EnsureColumns(QTreeView& view, int count);

}  // namespace kel
