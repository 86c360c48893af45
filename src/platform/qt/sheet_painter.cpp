#include "platform/qt/sheet_painter.h"

#include <QImage>
#include <QPalette>
#include <QRectF>
#include <algorithm>
#include <cstddef>
#include <string_view>

#include "controls/colors.h"

namespace kel {
namespace {

// Through the middle of small letters: parts of a cell's height.
constexpr double kStrikePlace = 0.55;
constexpr double kStrikeThickness = 0.05;

// Paper is white whatever the theme; a system colour means that of a light one.
QColor PaperColor(std::int32_t ole_color) {
  return ToQColor(static_cast<OleColor>(ole_color), QPalette(Qt::white));
}

// Sizes in points are turned into pixels with it, whatever is drawn on.
double ScreenDotsPerInch() { return QImage(1, 1, QImage::Format_Mono).logicalDpiY(); }

std::string_view WithoutTrailingBlanks(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

SheetPainter::SheetPainter(const DocumentSettings& settings, double dots_per_inch)
    : family_(QString::fromStdString(settings.font)),
      flags_(settings.font_flags),
      color_(PaperColor(settings.fore_color)),
      enlarging_(dots_per_inch / ScreenDotsPerInch()) {}

const CellPainter& SheetPainter::FaceOf(float points) {
  return faces_.try_emplace(points, family_, points * enlarging_, flags_.italic).first->second;
}

void SheetPainter::Draw(QPainter& painter, const QSizeF& sheet,
                        std::span<const PrintedLine> lines) {
  if (lines.empty()) return;
  const QSizeF size = Arrange(lines);
  const double scale =
      std::min({1.0, sheet.width() / size.width(), sheet.height() / size.height()});
  painter.save();
  painter.setPen(color_);
  painter.scale(scale, scale);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const CellPainter& face = FaceOf(lines[i].points);
    DrawLine(painter, face, page_.lines[i], lines[i].bold);
    painter.translate(0, face.Cell().height());
  }
  painter.restore();
}

// The size that the lines take unscaled.
QSizeF SheetPainter::Arrange(std::span<const PrintedLine> lines) {
  page_.Clear();
  QSizeF size(1, 1);
  for (const PrintedLine& line : lines) {
    AppendRawLine(page_, WithoutTrailingBlanks(line.text));
    const QSizeF cell = FaceOf(line.points).Cell();
    const Cells cells = PaperWidth(page_, page_.lines.back());
    size.setWidth(std::max(size.width(), cells * cell.width()));
    size.setHeight(size.height() + cell.height());
  }
  return size;
}

void SheetPainter::DrawLine(QPainter& painter, const CellPainter& face, const PageLine& line,
                            bool bold) const {
  const QSizeF cell = face.Cell();
  painter.translate(-kGutter * cell.width(), 0);
  for (const TextRun& run : std::span(page_.runs).subspan(line.first_run, line.runs)) {
    DrawRun(painter, face, run, bold);
  }
  painter.translate(kGutter * cell.width(), 0);
  if (!flags_.strikethrough) return;
  painter.fillRect(QRectF(0, kStrikePlace * cell.height(), PaperWidth(page_, line) * cell.width(),
                          kStrikeThickness * cell.height()),
                   color_);
}

void SheetPainter::DrawRun(QPainter& painter, const CellPainter& face, const TextRun& run,
                           bool bold) const {
  const std::string_view text = page_.TextOf(run);
  if (!run.plain) {
    face.DrawGrapheme(painter, text, run.column, run.cells, 0, bold, flags_.underline);
    return;
  }
  const Cells skipped = std::max(0, kGutter - run.column);
  face.DrawPlain(painter, text.substr(static_cast<std::size_t>(skipped)), run.column + skipped, 0,
                 bold, flags_.underline);
}

}  // namespace kel
