// The grid of the list window with the bar that scrolls it.
#pragma once

#include <QScrollBar>
#include <QWidget>
#include <cstdint>

#include "listview/frmListviewEvents.h"
#include "listview/frmListviewRows.h"
#include "listview/frmListviewTable.h"

namespace kel {

/// Shows so many rows of the list as there is room for, and which of them is up to a bar that
/// counts rows: what it costs does not depend on how many there are.
class ListGrid : public QWidget {
  Q_OBJECT

 public:
  /// The list outlives it.
  ListGrid(ListModel& list, QWidget* parent);

  ListTable& Table() { return *table_; }
  const ListRows& Rows() const { return rows_; }

  /// The list was bound: takes its columns, with widths for what is to be seen first.
  void Rebuild();
  /// Shows what has happened to the recordset.
  void Follow(const RecordsetNews& news);
  /// The list's columns were prepared anew.
  void ColumnsPrepared();

  /// Takes the grid off the window, or puts it back.
  void ShowRecords(bool shown);
  /// Hides the current column; the one beside it becomes the current one.
  void HideColumn();
  /// Makes every column as wide as its heading and the texts in view need it.
  void AlignColumns();

 private:
  void Connect();
  void Update();
  void ScrollTo(std::int64_t top);
  void RevealRow();
  void ShowSort();
  void SetInitialWidths();
  int WidthFor(int column, int rows, qsizetype most_characters) const;
  void StoreColumns();

  ListRows rows_;
  ListTable* table_;  // children
  QScrollBar* bar_;
  std::int64_t rows_per_step_ = 1;  // of the bar, which counts no further than an int
};

}  // namespace kel
