#include "listview/frmListviewHeaders.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <QStyle>

namespace kel {

ListHeader::ListHeader(Qt::Orientation orientation, QWidget* parent)
    : QHeaderView(orientation, parent) {
  setSectionsClickable(true);
  setSectionsMovable(false);
  setHighlightSections(false);
}

int ListHeader::WholeWidth(int column) const {
  QFont bold = font();
  bold.setBold(true);
  const QString caption = model()->headerData(column, orientation(), Qt::DisplayRole).toString();
  const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this);
  const int arrow = style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, this);
  const int grip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
  return QFontMetrics(bold).horizontalAdvance(caption) + arrow + 3 * margin + grip;
}

void ListHeader::mouseReleaseEvent(QMouseEvent* event) {
  QHeaderView::mouseReleaseEvent(event);
  emit Released(event->button(), event->position().toPoint());
}

// The second of two quick clicks is a click as the first was, but on the line between two columns.
void ListHeader::mouseDoubleClickEvent(QMouseEvent* event) {
  bool on_column = false;
  const auto told =
      connect(this, &QHeaderView::sectionDoubleClicked, this, [&on_column] { on_column = true; });
  QHeaderView::mouseDoubleClickEvent(event);
  disconnect(told);
  if (on_column) mousePressEvent(event);
}

RowMarks::RowMarks(const ListRows& rows, QWidget* parent)
    : ListHeader(Qt::Vertical, parent), rows_(rows) {
  setSectionResizeMode(QHeaderView::Fixed);
}

QSize RowMarks::sizeHint() const { return {fontMetrics().height(), 0}; }

void RowMarks::paintSection(QPainter* painter, const QRect& rect, int row) const {
  painter->save();
  QHeaderView::paintSection(painter, rect, row);
  painter->restore();
  if (rows_.Top() + row != rows_.CurrentRow()) return;
  const double side = fontMetrics().height() * 0.5;
  const double left = rect.center().x() - side / 3;
  const double middle = rect.center().y() + 0.5;
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  const double tip = mirrored ? left - side * 0.1 : left + side * 0.7;
  const double base = mirrored ? left + side * 0.6 : left;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(palette().color(QPalette::ButtonText));
  painter->drawPolygon(
      QPolygonF({{base, middle - side / 2}, {tip, middle}, {base, middle + side / 2}}));
  painter->restore();
}

}  // namespace kel
