// The page surface of the preview.
#pragma once

#include <QWidget>
#include <memory>

#include "common/ole_color.h"
#include "controls/cell_painter.h"
#include "engine/page_line.h"
#include "preview/preview_colors.h"
#include "preview/zoom.h"

namespace kel {

/// The page as a widget (`Pic`). It keeps the text of its page, not a picture of it: what comes
/// into view is drawn anew, so that a page of any size costs no more than the screen shows of it.
class PageSurface : public QWidget {
 public:
  explicit PageSurface(QWidget* parent);

  /// The text on show. Call Redraw when it has changed.
  PageText& Page() { return page_; }
  void Redraw() { update(); }

  /// Points.
  double FontSize() const { return font_size_; }
  void FontSize(double points);
  /// Width and height of "A", in pixels.
  QSizeF Cell() const { return painter_->Cell(); }

  /// Columns and lines of a page; a gutter of one cell is added on both sides.
  void Extent(Cells columns, int lines);
  /// Of the whole page, in pixels.
  QSize PageSize() const { return PageSizeOf(Cell()); }
  /// The page's size in a font of that many points.
  QSize PageSizeAt(double points) const;

  const PreviewColors& Colors() const { return colors_; }
  void Colors(const PreviewColors& colors);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Columns {
    Cells first = 0;
    Cells end = 0;
  };

  QSize PageSizeOf(const QSizeF& cell) const;
  Columns ColumnsIn(const QRect& exposed) const;
  void PritToPic(QPainter& painter, int line, const Columns& columns) const;
  void DrawRun(QPainter& painter, const TextRun& run, int line, const Columns& columns) const;
  void DrawMatch(QPainter& painter, const Columns& columns) const;

  PageText page_;
  QString family_ = CellPainter::DefaultFamily();
  double font_size_ = kFirstZoom;
  std::unique_ptr<CellPainter> painter_;
  Cells columns_ = 0;
  int lines_ = 0;
  PreviewColors colors_;
};

}  // namespace kel
