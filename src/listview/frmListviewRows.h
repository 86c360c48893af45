// The rows of a list that are in view.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <cstdint>

#include "listview/list_model.h"

namespace kel {

/// A model of a few rows out of a list of any length: those from Top on.
class ListRows : public QAbstractTableModel {
 public:
  /// The list outlives it.
  ListRows(ListModel& list, QObject* parent);

  /// All rows of the list that are there by now; none once the recordset is closed.
  std::int64_t Rows() const;
  /// The row of the current record, from 0; -1 at BOF, Rows() at EOF.
  std::int64_t CurrentRow() const;
  /// Whether the list's columns are those of the recordset, which its owner may have opened anew.
  bool Fits() const;

  std::int64_t Top() const noexcept { return top_; }
  /// Has the rows from `top` on, at most `most` of them.
  void ShowRows(std::int64_t top, int most);
  /// The list was bound to other columns.
  void Rebuild();
  /// Headings and alignments have changed.
  void TellHeadings();

  ListModel& List() const noexcept { return list_; }
  /// A cell on one line, and no more of it than anybody reads in a grid; also of rows further down
  /// than those in view, "" where there is none.
  QString CellText(int row, int column) const;
  /// The whole text.
  QString FullText(int row, int column) const;
  Qt::Alignment Alignment(int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  std::string Text(int row, int column) const;
  bool IsOpen() const;

  ListModel& list_;
  std::int64_t top_ = 0;
  int rows_ = 0;
  int columns_ = 0;
};

}  // namespace kel
