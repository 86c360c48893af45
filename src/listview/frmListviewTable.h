// The list window's `Grid`.
#pragma once

#include <QTableView>
#include <cstdint>

#include "listview/frmListviewCells.h"
#include "listview/frmListviewHeaders.h"
#include "listview/frmListviewRows.h"

namespace kel {

/// A table of the rows in view. Moving asks for another current record and leaves it to the owner
/// to go there; columns are selected here.
class ListTable : public QTableView {
  Q_OBJECT

 public:
  /// The rows outlive it.
  ListTable(ListRows& rows, QWidget* parent);

  ListHeader& Headings() const { return *headings_; }
  ListCells& Cells() const { return *cells_; }
  const ColumnSelection& Selection() const { return selection_; }
  void ClearSelection();
  /// -1 without a column on show.
  int CurrentColumn() const { return current_column_; }
  void CurrentColumn(int column);
  /// The next column on show, to the right (1) or left (-1); -1 when there is none.
  int ColumnBeside(int column, int direction) const;

  /// Whole rows that there is room for, at least one.
  int WholeRows() const;
  /// Marks the current record. REQUIRES that no cell is edited elsewhere than in it.
  void ShowCurrent();
  /// The place of the current cell in the viewport.
  QRect CurrentCell() const;

  void scrollTo(const QModelIndex& index, ScrollHint hint) override;

 signals:
  void RowAsked(std::int64_t row);
  void FirstAsked();
  void LastAsked();
  void CloseAsked();
  /// By the keyboard, for the current column.
  void MenuAsked();
  void HeadingClicked();
  /// Over a column, or over none: -1. `place` is on the screen.
  void Released(Qt::MouseButton button, int column, QPoint place);
  /// Down when positive.
  void Wheeled(int rows);
  void Resized();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  void MakeHeaders();
  void SizeRows();
  bool PressPlain(const QKeyEvent& key);
  bool PressWithControl(const QKeyEvent& key);
  bool SelectByKey(const QKeyEvent& key);
  bool BeginEdit(QKeyEvent& key);
  void MoveRows(std::int64_t rows);
  void MoveToColumn(int column);
  bool MoveCell(int direction);
  void PressHeading(int column);
  void ExtendSelection(int column);
  void Select(const ColumnSelection& selection);
  void RevealColumn(int column);
  void CopyCell() const;

  ListRows& rows_;
  ColumnSelection selection_;
  ListCells* cells_;  // children
  ListHeader* headings_;
  RowMarks* marks_;
  int current_column_ = 0;
  int wheel_ = 0;  // rows times DefaultDeltasPerStep that have not made a whole row yet
};

}  // namespace kel
