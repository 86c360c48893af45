// Sheets of a printed document on a painter.
#pragma once

#include <QColor>
#include <QPainter>
#include <QSizeF>
#include <QString>
#include <map>
#include <span>

#include "controls/cell_painter.h"
#include "engine/page_line.h"
#include "engine/system_printer.h"

namespace kel {

/// Draws lines below each other, every character in its own cells, whatever fonts they come from.
/// Lengths are in the dots of a paper device.
class SheetPainter {
 public:
  /// Family, italic, underline, strikethrough and colour are those of `settings`; size and bold
  /// come with each line.
  SheetPainter(const DocumentSettings& settings, double dots_per_inch);

  double LineHeight(float points) { return FaceOf(points).Cell().height(); }

  /// Draws a sheet of that size with its corner at the painter's origin, smaller where the lines
  /// would not fit.
  void Draw(QPainter& painter, const QSizeF& sheet, std::span<const PrintedLine> lines);

 private:
  const CellPainter& FaceOf(float points);
  QSizeF Arrange(std::span<const PrintedLine> lines);
  void DrawLine(QPainter& painter, const CellPainter& face, const PageLine& line, bool bold) const;
  void DrawRun(QPainter& painter, const CellPainter& face, const TextRun& run, bool bold) const;

  QString family_;
  FontFlags flags_;
  QColor color_;
  double enlarging_;  // the fonts of a paper device, in those of the screen
  std::map<float, CellPainter> faces_;
  PageText page_;  // the sheet that is being drawn
};

}  // namespace kel
