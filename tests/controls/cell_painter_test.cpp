#include "controls/cell_painter.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QTransform>
#include <cmath>
#include <string>
#include <vector>

namespace kel {
namespace {

constexpr Cells kColumns = 12;
constexpr int kLines = 3;
constexpr double kPoints = 9.75;

/// A white page of cells, painted on in black.
class Page {
 public:
  Page(const CellPainter& cells, double scale)
      : cells_(cells),
        scale_(scale),
        image_(static_cast<int>(std::ceil(cells.Cell().width() * kColumns * scale)),
               static_cast<int>(std::ceil(cells.Cell().height() * kLines * scale)),
               QImage::Format_RGB32) {
    image_.setDevicePixelRatio(scale);
    image_.fill(Qt::white);
  }

  template <typename Draw>
  Page& Paint(Draw draw) {
    QPainter painter(&image_);
    draw(painter);
    return *this;
  }

  /// The rectangle of everything painted, in pixels.
  QRect Ink() const {
    QRect ink;
    for (int y = 0; y < image_.height(); ++y) {
      for (int x = 0; x < image_.width(); ++x) {
        if (IsInk(x, y)) ink |= QRect(x, y, 1, 1);
      }
    }
    return ink;
  }
  bool IsInk(int x, int y) const { return qGray(image_.pixel(x, y)) < 0xE0; }

  /// The pixels that the cells touch; half covered ones belong to both neighbours.
  QRect CellPixels(Cells column, Cells count, int line) const {
    const QSizeF cell = cells_.Cell() * scale_;
    return QRectF(column * cell.width(), line * cell.height(), count * cell.width(), cell.height())
        .toAlignedRect();
  }
  const QImage& Image() const { return image_; }

 private:
  const CellPainter& cells_;
  double scale_;
  QImage image_;
};

TEST(CellPainter, EveryGraphemeStaysInItsCells) {
  for (const char* const text :
       {"W", "g", "_", "é", "₹", "क", "कि", "र्की", "हूँ", "હૂં", "漢", "😀", "﷽", "\xff"}) {
    const Cells count = CellWidth(text);
    for (const char* family : {"DejaVu Sans Mono", "DejaVu Sans"}) {
      const CellPainter cells(family, kPoints);
      for (const double scale : {1.0, 1.5, 2.0}) {
        for (const bool bold : {false, true}) {
          SCOPED_TRACE(std::string(text) + family + std::to_string(scale) + (bold ? "bold" : ""));
          Page page(cells, scale);
          page.Paint([&](QPainter& painter) {
            cells.DrawGrapheme(painter, text, 4, count, 1, bold, false);
          });
          ASSERT_FALSE(page.Ink().isEmpty());
          // Smoothing spreads an edge into the pixel beside it.
          EXPECT_TRUE(page.CellPixels(4, count, 1).adjusted(-1, -1, 1, 1).contains(page.Ink()));
        }
      }
    }
  }
}

TEST(CellPainter, LettersOfAScriptMeetAtTheEdgeOfTheirCells) {
  const CellPainter cells("DejaVu Sans Mono", 40);
  Page page(cells, 1);
  page.Paint([&](QPainter& painter) {
    for (const Cells column : {1, 2, 3, 4}) {
      cells.DrawGrapheme(painter, column % 2 == 0 ? "की" : "क", column, 1, 1, false, false);
    }
  });
  // The line over the letters runs through all four without a gap.
  const QRect row = page.CellPixels(1, 4, 1).adjusted(2, 0, -2, 0);
  bool runs_through = false;
  for (int y = row.top(); y < row.bottom(); ++y) {
    int length = 0;
    for (int x = row.left(); x <= row.right(); ++x) length += page.IsInk(x, y) ? 1 : 0;
    runs_through |= length == row.width();
  }
  EXPECT_TRUE(runs_through);
}

TEST(CellPainter, AColumnStandsAtItsPlaceWhateverStandsBeforeIt) {
  const CellPainter cells(CellPainter::DefaultFamily(), kPoints);
  for (const bool bold : {false, true}) {
    Page alone(cells, 1.5);
    alone.Paint([&](QPainter& painter) { cells.DrawPlain(painter, "A", 11, 1, bold, false); });
    Page behind(cells, 1.5);
    behind.Paint(
        [&](QPainter& painter) { cells.DrawPlain(painter, "WiW.   W_| A", 0, 1, bold, false); });
    const QRect last = alone.CellPixels(11, 1, 1);
    EXPECT_EQ(behind.Image().copy(last), alone.Image().copy(last));
  }
}

TEST(CellPainter, AnUnderlineRunsThroughBlanksAcrossExactlyItsCells) {
  const CellPainter cells(CellPainter::DefaultFamily(), kPoints);
  for (const double scale : {1.0, 1.5, 2.0}) {
    Page page(cells, scale);
    page.Paint([&](QPainter& painter) {
      cells.DrawPlain(painter, "   ", 2, 1, false, true);
      cells.DrawPlain(painter, "  ", 5, 1, true, true);
      cells.DrawGrapheme(painter, "\u3000", 7, 2, 1, false, true);  // a blank two cells wide
    });
    const QRect ink = page.Ink();
    const double width = cells.Cell().width() * scale;
    EXPECT_EQ(ink.left(), std::lround(2 * width));
    EXPECT_EQ(ink.right() + 1, std::lround(9 * width));
    EXPECT_LE(ink.height(), 2);
    EXPECT_TRUE(page.CellPixels(2, 7, 1).contains(ink));
    QImage line(ink.size(), page.Image().format());
    line.fill(Qt::black);
    line.setDevicePixelRatio(scale);
    EXPECT_EQ(page.Image().copy(ink), line);
  }
}

TEST(CellPainter, TextIsDrawnInThePensColourAndLeavesThePainterAsItWas) {
  const CellPainter cells(CellPainter::DefaultFamily(), kPoints);
  Page page(cells, 1);
  page.Paint([&](QPainter& painter) {
    painter.translate(5, 5);
    painter.setPen(Qt::white);
    const QTransform before = painter.transform();
    cells.DrawGrapheme(painter, "कि", 1, 1, 1, true, true);
    cells.DrawPlain(painter, "xyz", 2, 1, false, true);
    EXPECT_EQ(painter.transform(), before);
    EXPECT_EQ(painter.pen().color(), QColor(Qt::white));
  });
  page.Paint([&](QPainter& painter) {  // nothing that has ink
    cells.DrawGrapheme(painter, "\u0941", 1, 0, 1, false, true);
    cells.DrawPlain(painter, "  \x1b ", 2, 1, false, false);
  });
  EXPECT_TRUE(page.Ink().isEmpty());
}

TEST(CellPainter, CharactersThatTheFamilyLacksComeFromAnother) {
  const CellPainter cells("Standard Symbols PS", kPoints);  // has no Latin letters
  Page page(cells, 2);
  page.Paint([&](QPainter& painter) { cells.DrawPlain(painter, "Qj", 3, 1, false, false); });
  for (const Cells column : {3, 4}) {
    EXPECT_TRUE(page.Ink().intersects(page.CellPixels(column, 1, 1).adjusted(2, 0, -2, 0)));
  }
}

}  // namespace
}  // namespace kel
