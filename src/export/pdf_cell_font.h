// Text shaped into cells of one size, whatever fonts its characters come from.
#pragma once

#include <cairo.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/text_cells.h"
#include "export/pdf_drawn_font.h"
#include "export/pdf_fonts.h"
#include "export/pdf_shaping.h"

namespace kel {

/// The cell of a character, in ems.
struct EmCell {
  double width = 0;
  double height = 0;
};

/// One glyph and the text that it stands for.
struct CellGlyph {
  cairo_font_face_t* font = nullptr;
  std::uint32_t index = 0;
  double x = 0;  // ems, from the left end of the text's cells
  double y = 0;  // ems, from the baseline downwards
  std::string text;
  cairo_matrix_t matrix{};  // of the font at a size of 1
};

/// One look of a font in cells. The size is the caller's: all lengths are ems.
class PdfCellFont {
 public:
  /// Without a cell the font's own is taken: its advance by its line height. Letters wider than the
  /// cell are drawn narrower; in a cell of the caller's they fill it.
  explicit PdfCellFont(const FontLook& look, std::optional<EmCell> cell = std::nullopt);
  /// A second look in the cells of the first.
  PdfCellFont(const FontLook& look, const PdfCellFont& like);

  EmCell Cell() const { return cell_; }
  /// Of the line, from the top of the cell.
  double Baseline() const;
  const FontFace& Face() const { return fonts_.Nearest(); }

  /// The glyph of printable ASCII; 0 when the font lacks it.
  std::uint32_t PlainGlyph(char c) const { return plain_[static_cast<unsigned char>(c)]; }
  /// Whether its letters fill their cells. Those of another font are drawn as shaped text is, or
  /// readers would take the rest of each cell for a blank.
  bool HasFixedPitch() const { return fixed_pitch_; }
  /// How wide the font's own letters are drawn.
  double PlainStretch() const { return stretch_; }

  /// `text` shaped as one piece for `cells` cells; good until the next call.
  /// REQUIRES that one text always comes with the same cells and direction.
  const std::vector<CellGlyph>& Shaped(std::string_view text, Cells cells, Direction direction);

 private:
  // Where a text stands in its cells and how it is squeezed about its origin.
  struct Squeeze {
    double x = 0;
    double y = 0;
    double narrowing = 1;
    double lowering = 1;
  };

  void TakePlainGlyphs();
  void TakePitch(double stretch);
  double WidestPlain() const;
  std::vector<CellGlyph> Shape(std::string_view text, Cells cells, Direction direction);
  Squeeze Fit(const ShapedText& shaped, Cells cells, Direction direction) const;
  CellGlyph Whole(const std::string& text, const ShapedText& shaped, const Squeeze& squeeze,
                  Cells cells);
  std::vector<CellGlyph> InClusters(const ShapedText& shaped, const Squeeze& squeeze);
  void AppendDrawn(std::vector<CellGlyph>& cells, const GlyphCluster& cluster,
                   const Squeeze& squeeze);

  FontChain fonts_;
  EmCell cell_;
  bool fixed_pitch_ = true;
  double stretch_ = 1;
  std::array<std::uint32_t, 256> plain_{};
  DrawnFont& Drawn();

  std::optional<DrawnFont> drawn_;  // once a glyph is drawn
  std::unordered_map<std::string, std::vector<CellGlyph>> shaped_;
};

/// The plain and the bold look of one font, in cells of one size.
class PdfCellFonts {
 public:
  explicit PdfCellFonts(FontLook look, std::optional<EmCell> cell = std::nullopt)
      : look_(std::move(look)), plain_(look_, cell) {}

  PdfCellFont& Of(bool bold);
  EmCell Cell() const { return plain_.Cell(); }

 private:
  FontLook look_;
  PdfCellFont plain_;
  std::optional<PdfCellFont> bold_;  // once asked for
};

}  // namespace kel
