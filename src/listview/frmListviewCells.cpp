#include "listview/frmListviewCells.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <algorithm>

#include "controls/line_text.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

constexpr qsizetype kLongText = 200;  // characters that a line is too short for
constexpr int kBoxLines = 5;
constexpr int kBoxWidth = 320;     // at least, in pixels
constexpr int kDividerRoom = 5;    // the line and a little air
constexpr double kDivider = 0.18;  // of the text's colour in that of the lines between cells

QString TextIn(const QWidget& editor) {
  if (const auto* const box = qobject_cast<const QPlainTextEdit*>(&editor)) {
    return box->toPlainText();
  }
  return static_cast<const QLineEdit&>(editor).text();
}

QString LineBreakOf(const QString& text) {
  if (text.contains(QLatin1String("\r\n"))) return QStringLiteral("\r\n");
  return text.contains('\r') ? QStringLiteral("\r") : QStringLiteral("\n");
}

QColor Between(const QColor& back, const QColor& fore, double part) {
  const auto mixed = [part](int from, int to) {
    return static_cast<int>(from + (to - from) * part);
  };
  return {mixed(back.red(), fore.red()), mixed(back.green(), fore.green()),
          mixed(back.blue(), fore.blue())};
}

void DrawDividers(QPainter& painter, const QStyleOptionViewItem& cell) {
  const QPalette& colors = cell.palette;
  painter.setPen(Between(colors.color(QPalette::Base), colors.color(QPalette::Text), kDivider));
  painter.drawLine(cell.rect.bottomLeft(), cell.rect.bottomRight());
  const bool mirrored = cell.direction == Qt::RightToLeft;
  if (mirrored) return painter.drawLine(cell.rect.topLeft(), cell.rect.bottomLeft());
  painter.drawLine(cell.rect.topRight(), cell.rect.bottomRight());
}

}  // namespace

ListCells::ListCells(const ListRows& rows, const ColumnSelection& selection, QObject* parent)
    : QStyledItemDelegate(parent), rows_(rows), selection_(selection) {}

int ListCells::CellWidth(const QWidget& grid, const QString& text) {
  const int margin = grid.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &grid) + 1;
  return grid.fontMetrics().horizontalAdvance(text) + 2 * margin + kDividerRoom;
}

// A text that runs from right to left is drawn so, yet stands where its column has it.
void ListCells::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->textElideMode = Qt::ElideRight;
  if (selection_.Has(index.column())) option->state |= QStyle::State_Selected;
  if (!option->text.isRightToLeft()) return;
  option->displayAlignment =
      QStyle::visualAlignment(option->direction, option->displayAlignment) | Qt::AlignAbsolute;
  option->direction = Qt::RightToLeft;
}

void ListCells::paint(QPainter* painter, const QStyleOptionViewItem& option,
                      const QModelIndex& index) const {
  QStyleOptionViewItem plain = option;
  plain.state &= ~QStyle::State_HasFocus;
  QStyledItemDelegate::paint(painter, plain, index);
  painter->save();
  DrawDividers(*painter, option);
  const auto* const grid = qobject_cast<const QAbstractItemView*>(option.widget);
  if (grid != nullptr && grid->currentIndex() == index) {
    const bool has_focus = option.state.testFlag(QStyle::State_HasFocus);
    const auto role = selection_.Has(index.column()) ? QPalette::HighlightedText
                      : has_focus                    ? QPalette::Highlight
                                                     : QPalette::Mid;
    painter->setPen(option.palette.color(role));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option.rect.adjusted(0, 0, -2, -2));
    if (has_focus) painter->drawRect(option.rect.adjusted(1, 1, -3, -3));
  }
  painter->restore();
}

QWidget* ListCells::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& index) const {
  try {
    editor_ = MakeEditor(*parent, index.column());
  } catch (...) {
    emit Failed(CaughtFailure());
    return nullptr;
  }
  editor_->setAutoFillBackground(true);
  editor_->setAccessibleName(
      rows_.headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
  text_before_ = TextIn(*editor_);
  return editor_;
}

QWidget* ListCells::MakeEditor(QWidget& parent, int column) const {
  const QString text = QString::fromStdString(rows_.List().EntryText(column));
  line_break_ = LineBreakOf(text);
  if (text.contains('\n') || text.contains('\r') || text.size() > kLongText) {
    auto* const box = new QPlainTextEdit(text, &parent);
    box->selectAll();
    return box;
  }
  auto* const line = new QLineEdit(&parent);
  line->setFrame(false);
  line->setAlignment(rows_.Alignment(column));
  SetText(*line, text);
  line->selectAll();
  return line;
}

void ListCells::destroyEditor(QWidget* editor, const QModelIndex& index) const {
  if (editor == editor_) editor_.clear();
  QStyledItemDelegate::destroyEditor(editor, index);
}

// What is edited was put in when the editor was made, and is the user's since.
void ListCells::setEditorData(QWidget* /*editor*/, const QModelIndex& /*index*/) const {}

void ListCells::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                             const QModelIndex& index) const {
  QString typed = TextIn(*editor);
  if (typed == text_before_) return;
  text_before_ = typed;
  if (qobject_cast<QPlainTextEdit*>(editor) != nullptr) typed.replace('\n', line_break_);
  emit Entered(index.column(), typed);
}

void ListCells::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                     const QModelIndex& /*index*/) const {
  QRect place = option.rect.adjusted(0, 0, -1, -1);
  if (qobject_cast<QPlainTextEdit*>(editor) != nullptr) {
    const QRect room = editor->parentWidget()->rect();
    const int height = (kBoxLines + 1) * editor->fontMetrics().lineSpacing();
    place.setSize({std::min(std::max(place.width(), kBoxWidth), room.width()),
                   std::min(height, room.height())});
    place.moveRight(std::min(place.right(), room.right()));
    place.moveBottom(std::min(place.bottom(), room.bottom()));
    place.moveTopLeft({std::max(place.left(), 0), std::max(place.top(), 0)});
  }
  editor->setGeometry(place);
}

bool ListCells::eventFilter(QObject* watched, QEvent* event) {
  auto* const editor = qobject_cast<QWidget*>(watched);
  if (editor != nullptr && event->type() == QEvent::KeyPress &&
      TakesKey(*editor, static_cast<const QKeyEvent&>(*event))) {
    return true;
  }
  return QStyledItemDelegate::eventFilter(watched, event);
}

// A box of several lines would keep these keys for itself.
bool ListCells::TakesKey(QWidget& editor, const QKeyEvent& key) {
  auto* const box = qobject_cast<QPlainTextEdit*>(&editor);
  if (box == nullptr) return false;
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (key.modifiers().testFlag(Qt::ShiftModifier)) {
        box->insertPlainText(QStringLiteral("\n"));
      } else {
        Finish();
      }
      return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      emit commitData(&editor);
      emit closeEditor(&editor, key.key() == Qt::Key_Tab ? EditNextItem : EditPreviousItem);
      return true;
    default:
      return false;
  }
}

void ListCells::Finish() {
  if (editor_) emit commitData(editor_);
  if (editor_) emit closeEditor(editor_, SubmitModelCache);
}

void ListCells::Cancel() {
  if (editor_) emit closeEditor(editor_, RevertModelCache);
}

}  // namespace kel
