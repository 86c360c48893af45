// Glyphs that are made of the glyphs of other fonts.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "export/pdf_fonts.h"

namespace kel {

/// Glyphs of one font, squeezed about their common origin. Lengths are ems.
struct SqueezedGlyphs {
  const FontFace* face = nullptr;
  std::vector<cairo_glyph_t> glyphs;  // places as they are before the squeeze
  double x = 0;
  double y = 0;
  double narrowing = 1;
  double lowering = 1;
};

/// What is drawn for one glyph.
struct GlyphDrawing {
  std::vector<SqueezedGlyphs> parts;
  double advance = 0;
};

/// A font of drawings (a Type 3 font in the PDF). Where a font gives several glyphs to a grapheme,
/// in another order than it is written, or leaves its cells half empty, the readers of a PDF
/// find words cut, letters swapped or nothing; of a drawing they know its whole text and width.
class DrawnFont {
 public:
  DrawnFont();
  DrawnFont(const DrawnFont&) = delete;
  DrawnFont& operator=(const DrawnFont&) = delete;

  /// The glyph of a drawing that stands for `text`; the same one for the same.
  std::uint32_t GlyphOf(const std::string& text, GlyphDrawing drawing);
  /// Draws as long as this object lives.
  cairo_font_face_t* Drawn() const { return face_.get(); }

 private:
  static cairo_status_t Measure(cairo_scaled_font_t* font, cairo_t* context,
                                cairo_font_extents_t* extents) noexcept;
  static cairo_status_t Render(cairo_scaled_font_t* font, unsigned long glyph, cairo_t* context,
                               cairo_text_extents_t* extents) noexcept;

  std::unique_ptr<cairo_font_face_t, Releaser<cairo_font_face_destroy>> face_;
  std::vector<GlyphDrawing> drawings_;
  std::unordered_map<std::string, std::uint32_t> known_;
};

/// The matrix of a font that is drawn squeezed, at a size of 1.
cairo_matrix_t FontMatrix(double narrowing, double lowering, double slant);

}  // namespace kel
