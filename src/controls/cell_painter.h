// Fixed-pitch text on a painter, every character in its own cells.
#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QList>
#include <QPainter>
#include <QPointF>
#include <QRawFont>
#include <QSizeF>
#include <array>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/text_cells.h"

namespace kel {

/// Draws report text on a grid of cells of one size, whatever fonts its characters come from.
///
/// ASCII goes out as ready glyphs at computed places, a whole run at once. Any other grapheme is
/// shaped by itself, stands in the cells it takes, and is drawn narrower where its font makes it
/// wider than these, and lower where it makes it higher. Text takes the painter's pen colour.
/// One object draws with one font; it is cheap to keep and costly to make.
class CellPainter {
 public:
  /// `points` is the font's size; the cell is the width and height of "A".
  CellPainter(const QString& family, double points, bool italic = false);

  /// In pixels at 100 %; fractions are kept, so that columns do not drift with the zoom.
  QSizeF Cell() const { return cell_; }

  /// Draws plain text (one cell a byte) with its first cell at `column` of line `line`.
  void DrawPlain(QPainter& painter, std::string_view text, Cells column, int line, bool bold,
                 bool underline) const;
  /// Draws one grapheme in the `cells` cells from `column` on.
  void DrawGrapheme(QPainter& painter, std::string_view grapheme, Cells column, Cells cells,
                    int line, bool bold, bool underline) const;

  /// The fixed-pitch family that is there: the user's, else the system's.
  static QString DefaultFamily();

 private:
  // A grapheme ready to be drawn: where its origin stands in its cells, and how much it is
  // squeezed.
  struct Shaped {
    QList<QGlyphRun> runs;
    QPointF origin;
    double narrowing = 1;
    double lowering = 1;
  };
  struct Face {
    QFont font;
    QRawFont raw;
    std::array<quint32, 256> glyphs{};  // 0 where nothing is drawn
    // The scratch of DrawPlain, kept because making one costs more than drawing a short run.
    QGlyphRun run;
    std::unordered_map<std::string, Shaped> shaped;
  };

  Face MakeFace(QFont font) const;
  Face& FaceOf(bool bold) const { return bold ? bold_ : normal_; }
  const Shaped& ShapedOf(Face& face, std::string_view grapheme, Cells cells) const;
  Shaped Shape(const Face& face, std::string_view grapheme, Cells cells) const;
  void DrawUnderline(QPainter& painter, Cells column, Cells cells, double baseline) const;

  QSizeF cell_;
  double ascent_ = 0;
  double underline_place_ = 0;  // from the baseline down
  double underline_thickness_ = 1;
  // Their caches fill while drawing, which changes nothing that is seen.
  mutable Face normal_;
  mutable Face bold_;
};

}  // namespace kel
