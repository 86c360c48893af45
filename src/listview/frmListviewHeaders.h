// The headings above the list window's grid, and the marks before its rows.
#pragma once

#include <QHeaderView>

#include "listview/frmListviewRows.h"

namespace kel {

/// Tells of every mouse button that is released on it.
class ListHeader : public QHeaderView {
  Q_OBJECT

 public:
  ListHeader(Qt::Orientation orientation, QWidget* parent);

  /// The width at which a heading is whole, also in bold and with the arrow of a sort.
  int WholeWidth(int column) const;

 signals:
  void Released(Qt::MouseButton button, QPoint place);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
};

/// A narrow column with a triangle before the current record.
class RowMarks : public ListHeader {
 public:
  RowMarks(const ListRows& rows, QWidget* parent);

  QSize sizeHint() const override;

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int row) const override;

 private:
  const ListRows& rows_;
};

}  // namespace kel
