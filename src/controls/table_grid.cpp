#include "controls/table_grid.h"

#include <QHeaderView>
#include <QTableWidget>

#include "common/error.h"
#include "controls/item_list.h"
#include "controls/member_arguments.h"

namespace kel {
namespace {

// Properties of a view: the place in it while no cell of its model is current, and the alignments
// that were given to columns.
constexpr const char* kInHeaderProperty = "kelInHeader";
constexpr const char* kColProperty = "kelCol";
constexpr const char* kAlignmentsProperty = "kelColAlignments";

// The header of a table widget has items only where somebody has made them.
bool SetHeader(QTableView& view, int col, const QVariant& data, int role) {
  if (view.model()->setHeaderData(col, Qt::Horizontal, data, role)) return true;
  auto* const table = qobject_cast<QTableWidget*>(&view);
  if (table == nullptr) return false;
  const QString shown = view.model()->headerData(col, Qt::Horizontal).toString();
  table->setHorizontalHeaderItem(col, new QTableWidgetItem(shown));
  return view.model()->setHeaderData(col, Qt::Horizontal, data, role);
}

}  // namespace

TableGrid::TableGrid(QTableView& view)
    : view_(&view), model_(view.model()), root_(view.rootIndex()) {
  if (model_ == nullptr) throw Error(error_number::kObjectNotSet, "the grid has no model");
}

int TableGrid::FixedRows() const { return view_->horizontalHeader()->isHidden() ? 0 : 1; }

int TableGrid::Rows() const { return FetchedRows(*model_, root_) + FixedRows(); }

void TableGrid::Rows(int rows) const {
  const int present = FetchedRows(*model_, root_);
  const int wanted = rows - FixedRows();
  if (wanted < present) {
    RemoveRows(*model_, wanted, present - wanted, root_);
  } else if (wanted > present) {
    if (!model_->insertRows(present, wanted - present, root_)) {
      ThrowRefused("the model takes no new rows");
    }
    for (int row = present; row < wanted; ++row) AlignRow(row);
  }
}

int TableGrid::Cols() const { return model_->columnCount(root_); }

void TableGrid::Cols(int cols) const {
  const int present = Cols();
  const bool done =
      cols == present || (cols < present ? model_->removeColumns(cols, present - cols, root_)
                                         : model_->insertColumns(present, cols - present, root_));
  if (!done) ThrowRefused("the model keeps its columns");
}

int TableGrid::Row() const {
  const QModelIndex current = view_->currentIndex();
  if (current.isValid()) return current.row() + FixedRows();
  return FixedRows() == 1 && view_->property(kInHeaderProperty).toBool() ? 0 : -1;
}

// The header cannot hold the current cell of the view: there is none then.
void TableGrid::Row(int row) const {
  if (row < -1 || (row >= 0 && !HasRow(row))) ThrowOutOfRange();
  if (row >= FixedRows()) {
    MakeCurrent(Cell(row, Col()));
    return;
  }
  view_->setProperty(kColProperty, Col());
  view_->setProperty(kInHeaderProperty, row == 0);
  view_->setCurrentIndex({});
}

// The view itself leaves out disabled cells.
void TableGrid::MakeCurrent(const QModelIndex& cell) const {
  view_->setCurrentIndex(cell);
  if (view_->currentIndex() == cell) return;
  view_->selectionModel()->setCurrentIndex(cell, QItemSelectionModel::Clear);
}

int TableGrid::Col() const {
  const QModelIndex current = view_->currentIndex();
  return current.isValid() ? current.column() : view_->property(kColProperty).toInt();
}

void TableGrid::Col(int col) const {
  if (col < 0 || col >= Cols()) ThrowOutOfRange();
  const QModelIndex current = view_->currentIndex();
  if (current.isValid()) {
    MakeCurrent(current.siblingAtColumn(col));
  } else {
    view_->setProperty(kColProperty, col);
  }
}

QModelIndex TableGrid::Cell(int row, int col) const {
  RequireCell(row, col);
  return row < FixedRows() ? QModelIndex() : model_->index(row - FixedRows(), col, root_);
}

QVariant TableGrid::Data(int row, int col, int role) const {
  RequireCell(row, col);
  if (row < FixedRows()) return model_->headerData(col, Qt::Horizontal, role);
  return Cell(row, col).data(role);
}

void TableGrid::Data(int row, int col, int role, const QVariant& data) const {
  if (!TryData(row, col, role, data)) ThrowReadOnly("a cell of the model");
}

bool TableGrid::TryData(int row, int col, int role, const QVariant& data) const {
  const QModelIndex cell = Cell(row, col);
  return cell.isValid() ? model_->setData(cell, data, role) : SetHeader(*view_, col, data, role);
}

void TableGrid::RequireCell(int row, int col) const {
  if (col < 0 || col >= Cols() || row < 0 || !HasRow(row)) ThrowOutOfRange();
}

bool TableGrid::HasRow(int row) const {
  const int place = row - FixedRows();  // in the model
  return place < FetchedRows(*model_, root_, place + 1);
}

void TableGrid::ColAlignment(int col, const QVariant& alignment) const {
  RequireCell(0, col);
  QVariantMap alignments = view_->property(kAlignmentsProperty).toMap();
  alignments[QString::number(col)] = alignment;
  view_->setProperty(kAlignmentsProperty, alignments);
  for (int row = 0; row < model_->rowCount(root_); ++row) {
    SetItem(*model_, model_->index(row, col, root_), alignment, Qt::TextAlignmentRole);
  }
}

// `row` is the model's.
void TableGrid::AlignRow(int row) const {
  const QVariant held = view_->property(kAlignmentsProperty);
  if (!held.isValid()) return;
  const QVariantMap alignments = held.toMap();
  for (auto column = alignments.begin(); column != alignments.end(); ++column) {
    const QModelIndex cell = model_->index(row, column.key().toInt(), root_);
    if (cell.isValid()) SetItem(*model_, cell, *column, Qt::TextAlignmentRole);
  }
}

void TableGrid::AddRow(const QStringList& texts, int row) const {
  const int place = row == -1 ? model_->rowCount(root_) : row - FixedRows();
  if (place < 0 || place > model_->rowCount(root_) || texts.size() > Cols()) ThrowOutOfRange();
  const QPersistentModelIndex added = InsertRow(*model_, place, root_);
  for (int col = 0; col < texts.size(); ++col) {
    SetItem(*model_, added.sibling(added.row(), col), texts[col], Qt::EditRole);
  }
  AlignRow(added.row());
}

void TableGrid::RemoveRow(int row) const {
  if (row < FixedRows() || !HasRow(row)) ThrowOutOfRange();
  RemoveRows(*model_, row - FixedRows(), 1, root_);
}

void TableGrid::Clear() const {
  for (int row = 0; row < model_->rowCount(root_); ++row) {
    for (int col = 0; col < Cols(); ++col) {
      const QModelIndex cell = model_->index(row, col, root_);
      if (model_->clearItemData(cell) || !cell.data().isValid()) continue;
      SetItem(*model_, cell, {}, Qt::EditRole);
    }
  }
}

void ThrowOutOfRange() {
  throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range");
}

}  // namespace kel
