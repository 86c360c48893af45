#include "listview/frmListviewTable.h"

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

namespace kel {
namespace {

constexpr int kRowMargin = 3;  // above and below a row's text, in pixels
constexpr int kLeastColumn = 24;

}  // namespace

ListTable::ListTable(ListRows& rows, QWidget* parent)
    : QTableView(parent),
      rows_(rows),
      cells_(new ListCells(rows, selection_, this)),
      headings_(new ListHeader(Qt::Horizontal, this)),
      marks_(new RowMarks(rows, this)) {
  setObjectName(QStringLiteral("Grid"));
  setAccessibleName(QStringLiteral("Records"));
  setModel(&rows_);
  setItemDelegate(cells_);
  MakeHeaders();
  setShowGrid(false);
  setWordWrap(false);
  setFrameShape(QFrame::NoFrame);
  setSelectionMode(QAbstractItemView::NoSelection);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  setContextMenuPolicy(Qt::PreventContextMenu);  // Released and MenuAsked tell when
  // Rows are scrolled by changing the model's, so the view itself never moves up or down.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  setAutoScroll(false);
  setCornerButtonEnabled(false);
  SizeRows();
}

void ListTable::MakeHeaders() {
  setHorizontalHeader(headings_);
  setVerticalHeader(marks_);
  headings_->setMinimumSectionSize(kLeastColumn);
  headings_->setSortIndicatorShown(true);
  connect(headings_, &QHeaderView::sectionPressed, this, &ListTable::PressHeading);
  connect(headings_, &QHeaderView::sectionEntered, this, &ListTable::ExtendSelection);
  connect(headings_, &QHeaderView::sectionClicked, this, &ListTable::HeadingClicked);
  connect(headings_, &ListHeader::Released, this, [this](Qt::MouseButton button, QPoint place) {
    emit Released(button, columnAt(place.x()), headings_->viewport()->mapToGlobal(place));
  });
  connect(marks_, &QHeaderView::sectionPressed, this,
          [this](int row) { emit RowAsked(rows_.Top() + row); });
  connect(marks_, &ListHeader::Released, this, [this](Qt::MouseButton button, QPoint place) {
    emit Released(button, -1, marks_->viewport()->mapToGlobal(place));
  });
}

void ListTable::SizeRows() {
  const int height = fontMetrics().height() + 2 * kRowMargin;
  marks_->setMinimumSectionSize(height);
  marks_->setDefaultSectionSize(height);
}

int ListTable::WholeRows() const {
  return std::max(viewport()->height() / marks_->defaultSectionSize(), 1);
}

void ListTable::ShowCurrent() {
  const std::int64_t row = rows_.CurrentRow() - rows_.Top();
  const bool in_view = row >= 0 && row < rows_.rowCount() && current_column_ >= 0;
  const QModelIndex cell =
      in_view ? rows_.index(static_cast<int>(row), current_column_) : QModelIndex();
  if (cell != currentIndex()) setCurrentIndex(cell);
  verticalScrollBar()->setValue(0);
  marks_->viewport()->update();
  viewport()->update();
}

QRect ListTable::CurrentCell() const {
  if (currentIndex().isValid()) return visualRect(currentIndex());
  return {columnViewportPosition(std::max(current_column_, 0)), 0, kLeastColumn,
          marks_->defaultSectionSize()};
}

// The keyboard.

void ListTable::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeypadModifier;
  const bool control = held.testFlag(Qt::ControlModifier);
  bool taken = false;
  if (event->matches(QKeySequence::Copy)) {
    CopyCell();
    taken = true;
  } else if (control) {
    taken = SelectByKey(*event) || (held == Qt::ControlModifier && PressWithControl(*event));
  } else if (event->key() == Qt::Key_F10 && held == Qt::ShiftModifier) {
    emit MenuAsked();
    taken = true;
  } else {
    taken = PressPlain(*event) || BeginEdit(*event);
  }
  event->setAccepted(taken);
}

bool ListTable::PressPlain(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Up:
      return MoveRows(-1), true;
    case Qt::Key_Down:
      return MoveRows(1), true;
    case Qt::Key_PageUp:
      return MoveRows(-WholeRows()), true;
    case Qt::Key_PageDown:
      return MoveRows(WholeRows()), true;
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const bool right = (key.key() == Qt::Key_Right) == (layoutDirection() == Qt::LeftToRight);
      return MoveToColumn(ColumnBeside(current_column_, right ? 1 : -1)), true;
    }
    case Qt::Key_Home:
      return MoveToColumn(ColumnBeside(-1, 1)), true;
    case Qt::Key_End:
      return MoveToColumn(ColumnBeside(rows_.columnCount(), -1)), true;
    case Qt::Key_Tab:
      return MoveCell(1);
    case Qt::Key_Backtab:
      return MoveCell(-1);
    case Qt::Key_Escape:
      emit CloseAsked();
      return true;
    case Qt::Key_Menu:
      emit MenuAsked();
      return true;
    default:
      return false;
  }
}

bool ListTable::PressWithControl(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Home:
      ClearSelection();
      emit FirstAsked();
      return true;
    case Qt::Key_End:
      ClearSelection();
      emit LastAsked();
      return true;
    case Qt::Key_Tab:  // out of the grid, in which Tab goes from cell to cell
      return QAbstractScrollArea::focusNextPrevChild(true);
    case Qt::Key_Backtab:
      return QAbstractScrollArea::focusNextPrevChild(false);
    default:
      return false;
  }
}

bool ListTable::SelectByKey(const QKeyEvent& key) {
  const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
  if (key.key() == Qt::Key_Space && !shift) {
    Select({current_column_, current_column_});
    return true;
  }
  if (key.key() == Qt::Key_Backtab) return QAbstractScrollArea::focusNextPrevChild(false);
  if (!shift || (key.key() != Qt::Key_Left && key.key() != Qt::Key_Right)) return false;
  const bool right = (key.key() == Qt::Key_Right) == (layoutDirection() == Qt::LeftToRight);
  const int from = selection_.IsEmpty() ? current_column_ : selection_.end;
  const int to = ColumnBeside(from, right ? 1 : -1);
  ExtendSelection(to < 0 ? from : to);
  return true;
}

bool ListTable::BeginEdit(QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_F2:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return edit(currentIndex(), EditKeyPressed, nullptr);
    default:
      break;
  }
  const QString typed = key.text();
  if (typed.isEmpty() || !typed.at(0).isPrint()) return false;
  return edit(currentIndex(), AnyKeyPressed, &key);
}

void ListTable::MoveRows(std::int64_t rows) {
  ClearSelection();
  const std::int64_t last = rows_.Rows() - 1;
  if (last < 0) return;
  emit RowAsked(std::clamp<std::int64_t>(rows_.CurrentRow() + rows, 0, last));
}

void ListTable::MoveToColumn(int column) {
  ClearSelection();
  if (column >= 0) CurrentColumn(column);
}

// From the last cell of all, and from the first one back, the key leaves the grid.
bool ListTable::MoveCell(int direction) {
  int column = ColumnBeside(current_column_, direction);
  if (column >= 0) return MoveToColumn(column), true;
  const std::int64_t row = rows_.CurrentRow() + direction;
  column = ColumnBeside(direction > 0 ? -1 : rows_.columnCount(), direction);
  if (row < 0 || row >= rows_.Rows() || column < 0) return false;
  MoveToColumn(column);
  emit RowAsked(row);
  return true;
}

void ListTable::CopyCell() const {
  if (!currentIndex().isValid()) return;
  QApplication::clipboard()->setText(rows_.FullText(currentIndex().row(), currentIndex().column()));
}

// Tab behind an edit goes on to the next cell without editing that.
void ListTable::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
  if (hint == QAbstractItemDelegate::EditNextItem) MoveCell(1);
  if (hint == QAbstractItemDelegate::EditPreviousItem) MoveCell(-1);
}

// The mouse.

void ListTable::mousePressEvent(QMouseEvent* event) {
  const QModelIndex cell = indexAt(event->position().toPoint());
  if (event->button() != Qt::LeftButton || !cell.isValid()) return;
  ClearSelection();
  const std::int64_t row = rows_.Top() + cell.row();
  CurrentColumn(cell.column());
  emit RowAsked(row);
}

void ListTable::mouseMoveEvent(QMouseEvent* event) { event->accept(); }

void ListTable::mouseReleaseEvent(QMouseEvent* event) {
  const QPoint place = event->position().toPoint();
  emit Released(event->button(), columnAt(place.x()), viewport()->mapToGlobal(place));
}

void ListTable::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex cell = indexAt(event->position().toPoint());
  if (event->button() != Qt::LeftButton || !cell.isValid()) return;
  if (cell == currentIndex()) edit(cell, DoubleClicked, event);
}

void ListTable::wheelEvent(QWheelEvent* event) {
  const QPoint turned = event->angleDelta();
  if (std::abs(turned.x()) > std::abs(turned.y())) return QTableView::wheelEvent(event);
  const int lines = std::clamp(QApplication::wheelScrollLines(), 1, WholeRows());
  wheel_ += turned.y() * lines;
  const int rows = wheel_ / QWheelEvent::DefaultDeltasPerStep;
  wheel_ -= rows * QWheelEvent::DefaultDeltasPerStep;
  if (rows != 0) emit Wheeled(-rows);
  event->accept();
}

void ListTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  emit Resized();
}

void ListTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  SizeRows();
  emit Resized();
}

// Columns.

int ListTable::ColumnBeside(int column, int direction) const {
  for (int i = column + direction; i >= 0 && i < rows_.columnCount(); i += direction) {
    if (!isColumnHidden(i)) return i;
  }
  return -1;
}

void ListTable::CurrentColumn(int column) {
  cells_->Finish();
  current_column_ = column;
  ShowCurrent();
  RevealColumn(column);
}

// Pressing alone makes a column the current one; Shift goes on with what is selected.
void ListTable::PressHeading(int column) {
  setFocus(Qt::MouseFocusReason);
  if (QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)) {
    return ExtendSelection(column);
  }
  CurrentColumn(column);
  Select({column, column});
}

void ListTable::ExtendSelection(int column) {
  Select({selection_.IsEmpty() ? current_column_ : selection_.anchor, column});
  RevealColumn(column);
}

void ListTable::ClearSelection() { Select({}); }

void ListTable::Select(const ColumnSelection& selection) {
  cells_->Finish();
  selection_ = selection;
  viewport()->update();
}

void ListTable::scrollTo(const QModelIndex& index, ScrollHint /*hint*/) {
  if (index.isValid()) RevealColumn(index.column());
}

void ListTable::RevealColumn(int column) {
  if (column < 0 || column >= rows_.columnCount()) return;
  QScrollBar& bar = *horizontalScrollBar();
  const int left = headings_->sectionPosition(column);
  const int right = left + headings_->sectionSize(column);
  if (left < bar.value() || right - left > viewport()->width()) {
    bar.setValue(left);
  } else if (right > bar.value() + viewport()->width()) {
    bar.setValue(right - viewport()->width());
  }
}

}  // namespace kel
