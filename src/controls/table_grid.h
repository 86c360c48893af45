// A table view as the published grid.
#pragma once

#include <QAbstractItemModel>
#include <QTableView>
#include <QVariant>
#include <string>

#include "common/value.h"

namespace kel {

/// The rows of a grid are those of the view's model, below the horizontal header, which is the
/// fixed row 0 unless it is hidden; the vertical header does not count. So with a header row n is
/// row n - 1 of the model, and without one row n. A model that fetches its rows bit by bit is asked
/// for more when a later row is used, and for all by Rows. Rows and columns that there are not are
/// Error 9.
class TableGrid {
 public:
  /// Throws Error 91 when the view has no model.
  explicit TableGrid(QTableView& view);

  QTableView& View() const { return *view_; }
  QAbstractItemModel& Model() const { return *model_; }

  int FixedRows() const;
  int Rows() const;
  void Rows(int rows) const;
  int Cols() const;
  void Cols(int cols) const;

  /// The current cell. Row is -1 when there is none; 0 with a header only after Row(0).
  int Row() const;
  void Row(int row) const;
  int Col() const;
  void Col(int col) const;

  /// The model's cell; not valid for cells of the header.
  QModelIndex Cell(int row, int col) const;
  QVariant Data(int row, int col, int role) const;
  /// Throws Error 383 when the model keeps its cell.
  void Data(int row, int col, int role, const QVariant& data) const;
  /// False when the model keeps its cell.
  bool TryData(int row, int col, int role, const QVariant& data) const;

  /// The alignment of a column, which cells that are added take over.
  void ColAlignment(int col, const QVariant& alignment) const;

  /// Adds a row with these texts; `row` is -1 for the end.
  void AddRow(const QStringList& texts, int row) const;
  void RemoveRow(int row) const;
  /// Empties all cells; the headings stay.
  void Clear() const;

 private:
  void RequireCell(int row, int col) const;
  bool HasRow(int row) const;
  void AlignRow(int row) const;
  void MakeCurrent(const QModelIndex& cell) const;

  QTableView* view_;
  QAbstractItemModel* model_;
  QModelIndex root_;
};

/// Throws Error 9.
[[noreturn]] void ThrowOutOfRange();

}  // namespace kel
