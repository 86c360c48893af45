#include "export/pdf_cell_font.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kel {
namespace {

constexpr char kFirstPlain = ' ';
constexpr char kLastPlain = '~';
// A report in one script has a few hundred different graphemes.
constexpr std::size_t kMostShaped = 4096;
constexpr double kUsualWidth = 0.6;  // of a letter, in ems, for a font without letters

double Fitting(double length, double room) { return length > room ? room / length : 1; }

// Text in few widths, so that the PDF holds few of them.
double InSteps(double narrowing) {
  constexpr double kSteps = 64;
  return std::max(std::floor(narrowing * kSteps), 1.0) / kSteps;
}

// The characters of valid UTF-8, each as its bytes.
std::vector<std::string> CharactersOf(const std::string& text) {
  std::vector<std::string> characters;
  for (const char c : text) {
    const bool continues = (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
    if (!continues) characters.emplace_back();
    characters.back().push_back(c);
  }
  return characters;
}

// Whether a glyph of the font itself says all of a cluster.
bool IsOneLetter(const GlyphCluster& cluster) {
  return cluster.glyphs.size() == 1 && cluster.glyphs.front().index != 0 &&
         CharactersOf(cluster.text).size() == 1;
}

// The last word first. Within a word the glyphs stay from left to right, as readers expect them of
// any script; the words they take in the order in which they come.
std::vector<CellGlyph> InOrderOfWords(std::vector<CellGlyph> cells) {
  const auto is_blank = [](const CellGlyph& cell) { return cell.text == " "; };
  std::reverse(cells.begin(), cells.end());
  for (auto word = cells.begin(); word != cells.end();) {
    const auto end = std::find_if(word, cells.end(), is_blank);
    std::reverse(word, end);
    word = std::find_if_not(end, cells.end(), is_blank);
  }
  return cells;
}

}  // namespace

PdfCellFont::PdfCellFont(const FontLook& look, std::optional<EmCell> cell) : fonts_(look) {
  TakePlainGlyphs();
  if (cell) {
    cell_ = *cell;
  } else {
    const double letter = Face().AdvanceOf(PlainGlyph('A'));
    cell_ = {letter > 0 ? letter : kUsualWidth, Face().LineHeight()};
  }
  TakePitch(cell_.width / WidestPlain());
}

PdfCellFont::PdfCellFont(const FontLook& look, const PdfCellFont& like)
    : fonts_(look), cell_(like.cell_) {
  TakePlainGlyphs();
  TakePitch(Fitting(WidestPlain() * like.stretch_, cell_.width) * like.stretch_);
}

void PdfCellFont::TakePlainGlyphs() {
  for (char c = kFirstPlain; c <= kLastPlain; ++c) {
    plain_.at(static_cast<unsigned char>(c)) = Face().GlyphOf(static_cast<char32_t>(c));
  }
}

DrawnFont& PdfCellFont::Drawn() {
  if (!drawn_) drawn_.emplace(cell_.width);
  return *drawn_;
}

// Each letter of a proportional font is fitted by itself.
void PdfCellFont::TakePitch(double stretch) {
  constexpr double kNearly = 0.001;
  const double widest = WidestPlain();
  fixed_pitch_ = std::all_of(plain_.begin(), plain_.end(), [&](std::uint32_t glyph) {
    return glyph == 0 || widest - Face().AdvanceOf(glyph) < kNearly;
  });
  stretch_ = fixed_pitch_ ? stretch : 1;
}

double PdfCellFont::WidestPlain() const {
  double widest = 0;
  for (const std::uint32_t glyph : plain_) {
    if (glyph != 0) widest = std::max(widest, Face().AdvanceOf(glyph));
  }
  return widest > 0 ? widest : kUsualWidth;
}

double PdfCellFont::Baseline() const {
  const FontFace& face = Face();
  return (cell_.height - face.Ascent() - face.Descent()) / 2 + face.Ascent();
}

const std::vector<CellGlyph>& PdfCellFont::Shaped(std::string_view text, Cells cells,
                                                  Direction direction) {
  std::string key(text);
  const auto found = shaped_.find(key);
  if (found != shaped_.end()) return found->second;
  if (shaped_.size() >= kMostShaped) shaped_.clear();
  return shaped_.emplace(std::move(key), Shape(text, cells, direction)).first->second;
}

std::vector<CellGlyph> PdfCellFont::Shape(std::string_view text, Cells cells, Direction direction) {
  const std::string valid = TextForPdf(text);
  const ShapedText shaped = ShapeText(fonts_, valid, direction);
  if (shaped.clusters.empty()) return {};
  const Squeeze squeeze = Fit(shaped, cells, direction);
  const bool own = shaped.clusters.size() == 1 && shaped.clusters.front().face == &Face();
  const bool letter = own && fixed_pitch_ && IsOneLetter(shaped.clusters.front());
  if (direction == Direction::kRightToLeft || letter) {
    return InClusters(shaped, squeeze);
  }
  return {Whole(valid, shaped, squeeze, cells)};
}

PdfCellFont::Squeeze PdfCellFont::Fit(const ShapedText& shaped, Cells cells,
                                      Direction direction) const {
  const double room = cells * cell_.width;
  const bool own =
      std::all_of(shaped.clusters.begin(), shaped.clusters.end(),
                  [this](const GlyphCluster& cluster) { return cluster.face == &Face(); });
  if (own && shaped.advance * stretch_ <= room) {
    // Made for these cells; frames join beyond their edges.
    return {(room - shaped.advance * stretch_) / 2, 0, stretch_, 1};
  }
  double top = shaped.ink.top;
  double bottom = shaped.ink.bottom;
  // The letters of one font must agree on the height of the line that joins them, whatever marks
  // they carry, so they are fitted by the font's height. Wide characters stand alone.
  if (FirstGrapheme(shaped.clusters.front().text).cells == 1) {
    top = std::min(top, -shaped.ascent);
    bottom = std::max(bottom, shaped.descent);
  }
  Squeeze squeeze;
  squeeze.narrowing = InSteps(Fitting(shaped.ink.right - shaped.ink.left, room));
  squeeze.lowering = Fitting(bottom - top, cell_.height);
  const double least_shift = -top * squeeze.lowering - Baseline();
  const double most_shift = cell_.height - Baseline() - bottom * squeeze.lowering;
  squeeze.y = std::min(std::max(0.0, least_shift), most_shift);
  const double spare = room - (shaped.ink.right - shaped.ink.left) * squeeze.narrowing;
  const double before = direction == Direction::kRightToLeft ? spare : spare / 2;
  squeeze.x = before - shaped.ink.left * squeeze.narrowing;
  return squeeze;
}

// The text as one glyph as wide as its cells.
CellGlyph PdfCellFont::Whole(const std::string& text, const ShapedText& shaped,
                             const Squeeze& squeeze, Cells cells) {
  GlyphDrawing drawing;
  drawing.advance = cells * cell_.width;
  for (const GlyphCluster& cluster : shaped.clusters) {
    drawing.parts.push_back(
        {cluster.face, cluster.glyphs, squeeze.x, squeeze.y, squeeze.narrowing, squeeze.lowering});
  }
  const DrawnGlyph glyph = Drawn().GlyphOf(text, std::move(drawing));
  return {glyph.face, glyph.index, 0, 0, text, FontMatrix(1, 1, 0)};
}

// Each cluster for itself, in the font's own glyphs where these say all.
std::vector<CellGlyph> PdfCellFont::InClusters(const ShapedText& shaped, const Squeeze& squeeze) {
  const bool letters = std::all_of(shaped.clusters.begin(), shaped.clusters.end(), IsOneLetter);
  std::vector<CellGlyph> cells;
  for (const GlyphCluster& cluster : shaped.clusters) {
    if (letters) {
      const cairo_glyph_t& glyph = cluster.glyphs.front();
      cells.push_back({cluster.face->Drawn(), static_cast<std::uint32_t>(glyph.index),
                       squeeze.x + glyph.x * squeeze.narrowing,
                       squeeze.y + glyph.y * squeeze.lowering, cluster.text,
                       FontMatrix(squeeze.narrowing, squeeze.lowering, cluster.face->Slant())});
    } else {
      AppendDrawn(cells, cluster, squeeze);
    }
  }
  return InOrderOfWords(std::move(cells));
}

// What several characters make is a glyph for its first one and an empty glyph for each of the
// others, because readers turn text from right to left round glyph by glyph.
void PdfCellFont::AppendDrawn(std::vector<CellGlyph>& cells, const GlyphCluster& cluster,
                              const Squeeze& squeeze) {
  const std::vector<std::string> characters = CharactersOf(cluster.text);
  const double left = squeeze.x + cluster.left * squeeze.narrowing;
  const double step = cluster.advance * squeeze.narrowing / static_cast<double>(characters.size());
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const std::string& character = characters[characters.size() - 1 - i];
    const double x = left + static_cast<double>(i) * step;
    GlyphDrawing drawing;
    drawing.advance = step;
    if (i + 1 == characters.size()) {
      drawing.parts.push_back({cluster.face, cluster.glyphs, squeeze.x - x, squeeze.y,
                               squeeze.narrowing, squeeze.lowering});
    }
    const DrawnGlyph glyph = Drawn().GlyphOf(character, std::move(drawing));
    cells.push_back({glyph.face, glyph.index, x, 0, character, FontMatrix(1, 1, 0)});
  }
}

PdfCellFont& PdfCellFonts::Of(bool bold) {
  if (!bold) return plain_;
  if (!bold_) bold_.emplace(FontLook{look_.family, true, look_.italic}, plain_);
  return *bold_;
}

}  // namespace kel
