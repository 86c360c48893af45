#include "controls/cell_painter.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainterPath>
#include <QTextLayout>
#include <QTransform>
#include <QVarLengthArray>
#include <algorithm>
#include <cmath>

namespace kel {
namespace {

constexpr char kFirstVisible = '!';
constexpr char kLastVisible = '~';
// A report in one script has a few hundred different graphemes.
constexpr std::size_t kMostShaped = 4096;

bool IsVisible(char c) { return c >= kFirstVisible && c <= kLastVisible; }

QString VisibleAscii() {
  QString text;
  for (char c = kFirstVisible; c <= kLastVisible; ++c) text += QLatin1Char(c);
  return text;
}

double WidestAscii(const QFont& font) {
  const QFontMetricsF metrics(font);
  double widest = 0;
  for (const QChar c : VisibleAscii()) widest = std::max(widest, metrics.horizontalAdvance(c));
  return widest;
}

bool HasPixels(const QTransform& screen) {
  return screen.type() <= QTransform::TxScale && screen.m11() > 0 && screen.m22() > 0;
}

// The baseline moved to the nearest whole pixel of the screen, where text comes out sharp.
double OnPixel(const QPainter& painter, double baseline) {
  const QTransform& screen = painter.deviceTransform();
  if (!HasPixels(screen)) return baseline;
  return (std::round(baseline * screen.m22() + screen.dy()) - screen.dy()) / screen.m22();
}

// What a glyph covers, from its origin on. A glyph that is a picture has no outline.
QRectF InkOf(const QRawFont& font, quint32 glyph) {
  const QRectF outline = font.pathForGlyph(glyph).boundingRect();
  return outline.isEmpty() ? font.boundingRect(glyph) : outline;
}

// What a grapheme takes, around an origin on the baseline.
struct Extent {
  QRectF box;  // of all ink and advances
  double advance = 0;
  double ascent = 0;
  double descent = 0;
};

Extent ExtentOf(const QList<QGlyphRun>& runs, double baseline) {
  Extent extent;
  for (const QGlyphRun& run : runs) {
    const QRawFont font = run.rawFont();
    const QList<quint32> glyphs = run.glyphIndexes();
    const QList<QPointF> advances = font.advancesForGlyphIndexes(glyphs);
    const QList<QPointF> places = run.positions();
    for (qsizetype i = 0; i < glyphs.size(); ++i) {
      const QPointF place = places.at(i) - QPointF(0, baseline);
      const double advance = advances.at(i).x();
      extent.box |= InkOf(font, glyphs.at(i)).translated(place);
      extent.box |= QRectF(place.x(), 0, advance, 0);
      extent.advance += advance;
    }
    extent.ascent = std::max(extent.ascent, font.ascent());
    extent.descent = std::max(extent.descent, font.descent());
  }
  return extent;
}

double Fitting(double length, double room) { return length > room ? room / length : 1; }

// The engine keeps the drawn glyphs of about ten scales of a font; with one for every letter it
// would draw each anew. A step is a fraction of a pixel in a cell of a usual size.
double InSteps(double narrowing) {
  constexpr double kSteps = 20;
  return std::max(std::round(narrowing * kSteps), 1.0) / kSteps;
}

}  // namespace

CellPainter::CellPainter(const QString& family, double points, bool italic) {
  QFont font(family);
  font.setPointSizeF(points);
  font.setItalic(italic);
  font.setKerning(false);
  font.setStyleHint(QFont::Monospace);
  // Full hinting would round the advance to whole pixels, and with it the columns.
  font.setHintingPreference(QFont::PreferVerticalHinting);

  const QFontMetricsF metrics(font);
  cell_ = QSizeF(metrics.horizontalAdvance(QLatin1Char('A')), metrics.height());
  ascent_ = metrics.ascent();
  underline_thickness_ = metrics.lineWidth();
  underline_place_ = std::min(metrics.underlinePos(), metrics.descent() - underline_thickness_);
  normal_ = MakeFace(font);
  font.setBold(true);
  bold_ = MakeFace(font);
}

CellPainter::Face CellPainter::MakeFace(QFont font) const {
  constexpr double kFullStretch = 100;
  // A bold face wider than the plain one, or a family without fixed pitch, is made as narrow as
  // the cell, so that no column runs into the next.
  const double narrowing = Fitting(WidestAscii(font), cell_.width());
  if (narrowing < 1) font.setStretch(static_cast<int>(std::lround(kFullStretch * narrowing)));

  Face face;
  face.font = font;
  face.raw = QRawFont::fromFont(font);
  const QString visible = VisibleAscii();
  const QList<quint32> glyphs = face.raw.glyphIndexesForString(visible);
  for (qsizetype i = 0; i < std::min(visible.size(), glyphs.size()); ++i) {
    face.glyphs.at(visible.at(i).unicode()) = glyphs.at(i);
  }
  face.run.setRawFont(face.raw);
  return face;
}

void CellPainter::DrawPlain(QPainter& painter, std::string_view text, Cells column, int line,
                            bool bold, bool underline) const {
  Face& face = FaceOf(bold);
  const double baseline = OnPixel(painter, line * cell_.height() + ascent_);
  QVarLengthArray<quint32, 256> glyphs;
  QVarLengthArray<QPointF, 256> places;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const quint32 glyph = face.glyphs[static_cast<unsigned char>(text[i])];
    const Cells at = column + static_cast<Cells>(i);
    if (glyph != 0) {
      glyphs.append(glyph);
      places.append(QPointF(at * cell_.width(), baseline));
    } else if (IsVisible(text[i])) {  // the family lacks it, another has it
      DrawGrapheme(painter, text.substr(i, 1), at, 1, line, bold, false);
    }
  }
  if (!glyphs.isEmpty()) {
    face.run.setRawData(glyphs.constData(), places.constData(), static_cast<int>(glyphs.size()));
    painter.drawGlyphRun(QPointF(), face.run);
  }
  if (underline) DrawUnderline(painter, column, static_cast<Cells>(text.size()), baseline);
}

void CellPainter::DrawGrapheme(QPainter& painter, std::string_view grapheme, Cells column,
                               Cells cells, int line, bool bold, bool underline) const {
  if (cells <= 0) return;
  const double baseline = OnPixel(painter, line * cell_.height() + ascent_);
  const Shaped& shaped = ShapedOf(FaceOf(bold), grapheme, cells);
  const QPointF place = QPointF(column * cell_.width(), baseline) + shaped.origin;
  if (shaped.narrowing < 1 || shaped.lowering < 1) {
    const QTransform before = painter.transform();
    painter.translate(place);
    painter.scale(shaped.narrowing, shaped.lowering);
    for (const QGlyphRun& run : shaped.runs) painter.drawGlyphRun(QPointF(), run);
    painter.setTransform(before);
  } else {
    for (const QGlyphRun& run : shaped.runs) painter.drawGlyphRun(place, run);
  }
  if (underline) DrawUnderline(painter, column, cells, baseline);
}

const CellPainter::Shaped& CellPainter::ShapedOf(Face& face, std::string_view grapheme,
                                                 Cells cells) const {
  // One grapheme always takes the same cells, so its text alone is the key.
  std::string key(grapheme);
  const auto found = face.shaped.find(key);
  if (found != face.shaped.end()) return found->second;
  if (face.shaped.size() >= kMostShaped) face.shaped.clear();
  return face.shaped.emplace(std::move(key), Shape(face, grapheme, cells)).first->second;
}

CellPainter::Shaped CellPainter::Shape(const Face& face, std::string_view grapheme,
                                       Cells cells) const {
  QTextLayout layout(QString::fromUtf8(grapheme.data(), static_cast<qsizetype>(grapheme.size())),
                     face.font);
  layout.beginLayout();
  const QTextLine text_line = layout.createLine();
  layout.endLayout();

  Shaped shaped;
  shaped.runs = layout.glyphRuns();
  const double baseline = text_line.isValid() ? text_line.ascent() : 0;
  const double room = cells * cell_.width();
  const Extent extent = ExtentOf(shaped.runs, baseline);
  const bool own = shaped.runs.size() == 1 && shaped.runs.front().rawFont() == face.raw;
  if (own && extent.advance <= room) {  // made for these cells; frames join beyond their edges
    shaped.origin = QPointF((room - extent.advance) / 2, -baseline);
    return shaped;
  }

  QRectF box = extent.box;
  // The letters of one font must agree on the height of the line that joins them, whatever marks
  // they carry, so they are fitted by the font's height. Wide characters stand alone.
  if (FirstGrapheme(grapheme).cells == 1) {
    box.setTop(std::min(box.top(), -extent.ascent));
    box.setBottom(std::max(box.bottom(), extent.descent));
  }
  shaped.narrowing = InSteps(Fitting(box.width(), room));
  shaped.lowering = Fitting(box.height(), cell_.height());
  const double least_shift = -box.top() * shaped.lowering - ascent_;
  const double most_shift = cell_.height() - ascent_ - box.bottom() * shaped.lowering;
  const double shift = std::min(std::max(0.0, least_shift), most_shift);
  const double middle = (room - box.width() * shaped.narrowing) / 2;
  shaped.origin =
      QPointF(middle - box.left() * shaped.narrowing, shift - baseline * shaped.lowering);
  return shaped;
}

void CellPainter::DrawUnderline(QPainter& painter, Cells column, Cells cells,
                                double baseline) const {
  const QRectF stroke(column * cell_.width(), baseline + underline_place_, cells * cell_.width(),
                      underline_thickness_);
  const QTransform& screen = painter.deviceTransform();
  if (!HasPixels(screen)) {
    painter.fillRect(stroke, painter.pen().color());
    return;
  }
  QRectF pixels = screen.mapRect(stroke);
  const double thickness = std::max(1.0, std::round(pixels.height()));
  const double cell_bottom = (baseline - ascent_ + cell_.height()) * screen.m22() + screen.dy();
  pixels.setLeft(std::round(pixels.left()));
  pixels.setRight(std::round(pixels.right()));
  pixels.setTop(std::min(std::round(pixels.top()), std::floor(cell_bottom) - thickness));
  pixels.setHeight(thickness);
  painter.fillRect(screen.inverted().mapRect(pixels), painter.pen().color());
}

QString CellPainter::DefaultFamily() {
  QStringList candidates{QFontDatabase::systemFont(QFontDatabase::FixedFont).family()};
  candidates << "DejaVu Sans Mono"
             << "Liberation Mono"
             << "Noto Sans Mono"
             << "Consolas"
             << "Menlo"
             << "Courier New"
             << "Nimbus Mono PS";
  for (const QString& candidate : candidates) {
    // An alias such as "monospace" is turned into the family that stands behind it.
    const QFontInfo info{QFont(candidate)};
    if (info.fixedPitch()) return info.family();
  }
  const QStringList families = QFontDatabase::families();
  const auto fixed = std::find_if(families.begin(), families.end(), [](const QString& family) {
    return QFontDatabase::isFixedPitch(family);
  });
  return fixed == families.end() ? candidates.front() : *fixed;
}

}  // namespace kel
