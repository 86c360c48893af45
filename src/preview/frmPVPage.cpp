#include "preview/frmPVPage.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <span>

#include "controls/colors.h"

namespace kel {
namespace {

constexpr Cells kGutters = 2;

// Glyphs may reach a little over the edges of their cells.
constexpr Cells kOverhang = 1;

// Between the colours of page and text, nearer to the page's.
QColor EdgeColor(const QColor& back, const QColor& fore) {
  constexpr int kParts = 4;
  const auto mix = [](int of_back, int of_fore) {
    return (of_back * (kParts - 1) + of_fore) / kParts;
  };
  return {mix(back.red(), fore.red()), mix(back.green(), fore.green()),
          mix(back.blue(), fore.blue())};
}

int Pixels(double length) {
  return static_cast<int>(std::ceil(std::clamp<double>(length, 1, QWIDGETSIZE_MAX)));
}

}  // namespace

PageSurface::PageSurface(QWidget* parent)
    : QWidget(parent), painter_(std::make_unique<CellPainter>(family_, font_size_)) {
  setObjectName(QStringLiteral("Pic"));
  setAccessibleName(QStringLiteral("Page"));
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PageSurface::FontSize(double points) {
  if (points == font_size_) return;
  painter_ = std::make_unique<CellPainter>(family_, points);
  font_size_ = points;
  update();
}

void PageSurface::Extent(Cells columns, int lines) {
  columns_ = columns;
  lines_ = lines;
}

QSize PageSurface::PageSizeAt(double points) const {
  return PageSizeOf(CellPainter(family_, points).Cell());
}

QSize PageSurface::PageSizeOf(const QSizeF& cell) const {
  return {Pixels((1.0 * columns_ + kGutters) * cell.width()), Pixels(lines_ * cell.height())};
}

void PageSurface::Colors(const PreviewColors& colors) {
  colors_ = colors;
  update();
}

void PageSurface::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect exposed = event->rect();
  const QColor back = ToQColor(colors_.back, palette());
  const QColor fore = ToQColor(colors_.fore, palette());
  painter.fillRect(exposed, back);
  painter.setPen(EdgeColor(back, fore));  // a dark page may lie on a ground just as dark
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  painter.setPen(fore);

  const double cell_height = Cell().height();
  const int first = std::max(0, static_cast<int>(exposed.top() / cell_height) - kOverhang);
  const int end = std::min(static_cast<int>(page_.lines.size()),
                           static_cast<int>(exposed.bottom() / cell_height) + 1 + kOverhang);
  const Columns columns = ColumnsIn(exposed);
  for (int line = first; line < end; ++line) PritToPic(painter, line, columns);
  if (page_.match.cells > 0) DrawMatch(painter, columns);
}

PageSurface::Columns PageSurface::ColumnsIn(const QRect& exposed) const {
  const double cell_width = Cell().width();
  return {static_cast<Cells>(exposed.left() / cell_width) - kOverhang,
          static_cast<Cells>(exposed.right() / cell_width) + 1 + kOverhang};
}

void PageSurface::PritToPic(QPainter& painter, int line, const Columns& columns) const {
  const PageLine& of_page = page_.lines[static_cast<std::size_t>(line)];
  const std::span<const TextRun> runs(page_.runs.data() + of_page.first_run, of_page.runs);
  // Runs stand in the order of their columns.
  auto run = std::partition_point(runs.begin(), runs.end(), [&](const TextRun& candidate) {
    return candidate.column + candidate.cells < columns.first;
  });
  for (; run != runs.end() && run->column < columns.end; ++run) {
    DrawRun(painter, *run, line, columns);
  }
}

void PageSurface::DrawRun(QPainter& painter, const TextRun& run, int line,
                          const Columns& columns) const {
  const std::string_view text = page_.TextOf(run);
  if (!run.plain) {
    painter_->DrawGrapheme(painter, text, run.column, run.cells, line, run.bold, run.underline);
    return;
  }
  const Cells skipped = std::max(0, columns.first - run.column);
  const Cells drawn = std::min(run.cells, columns.end - run.column) - skipped;
  if (drawn <= 0) return;
  painter_->DrawPlain(
      painter, text.substr(static_cast<std::size_t>(skipped), static_cast<std::size_t>(drawn)),
      run.column + skipped, line, run.bold, run.underline);
}

// The highlight colour covers the page's, and the text on it is the highlight's: readable whatever
// colours the page has. The frame shows the mark on a page of just that colour.
void PageSurface::DrawMatch(QPainter& painter, const Columns& columns) const {
  const MarkedCells& match = page_.match;
  if (match.line < 0 || static_cast<std::size_t>(match.line) >= page_.lines.size()) return;
  const QSizeF cell = Cell();
  const QRectF marked(match.column * cell.width(), match.line * cell.height(),
                      match.cells * cell.width(), cell.height());
  painter.save();
  painter.setClipRect(marked);
  painter.fillRect(marked, palette().color(QPalette::Active, QPalette::Highlight));
  painter.setPen(palette().color(QPalette::Active, QPalette::HighlightedText));
  PritToPic(painter, match.line, columns);
  painter.setClipping(false);
  painter.setPen(ToQColor(colors_.fore, palette()));
  painter.drawRect(marked.adjusted(-1, 0, 0, -1));
  painter.restore();
}

}  // namespace kel
