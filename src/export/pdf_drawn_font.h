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

/// A glyph of a face.
struct DrawnGlyph {
  cairo_font_face_t* face = nullptr;
  std::uint32_t index = 0;
};

/// Fonts of drawings (Type 3 fonts in the PDF). Where a font gives several glyphs to a grapheme,
/// in another order than it is written, or leaves its cells half empty, the readers of a PDF
/// find words cut, letters swapped or nothing; of a drawing they know its whole text and width.
class DrawnFont {
 public:
  /// `blank` is the advance of a blank, in ems.
  explicit DrawnFont(double blank) : blank_(blank) {}
  DrawnFont(const DrawnFont&) = delete;
  DrawnFont& operator=(const DrawnFont&) = delete;

  /// The glyph of a drawing that stands for `text`; the same one for the same. It draws as long as
  /// this object lives.
  DrawnGlyph GlyphOf(const std::string& text, GlyphDrawing drawing);

  /// Whether a face is one of drawings.
  static bool IsDrawn(cairo_font_face_t* face);
  /// True once for each face of drawings: its glyph kLetterSize is to be shown before all others.
  /// Readers that take a Type 3 font's size from the width of its first glyph take the right one
  /// then, and see the lines where they are (poppler takes twice that width).
  static bool TakeFirstUse(cairo_font_face_t* face);
  static constexpr std::uint32_t kLetterSize = 0;
  static constexpr std::uint32_t kBlank = 1;

 private:
  // As many drawings as one font of a PDF holds.
  struct Face {
    std::unique_ptr<cairo_font_face_t, Releaser<cairo_font_face_destroy>> font;
    std::vector<GlyphDrawing> drawings;
    bool used = false;
  };

  void AddFace();
  static cairo_status_t Measure(cairo_scaled_font_t* font, cairo_t* context,
                                cairo_font_extents_t* extents) noexcept;
  static cairo_status_t Render(cairo_scaled_font_t* font, unsigned long glyph, cairo_t* context,
                               cairo_text_extents_t* extents) noexcept;

  double blank_;
  std::vector<std::unique_ptr<Face>> faces_;
  std::unordered_map<std::string, DrawnGlyph> known_;
};

/// The matrix of a font that is drawn squeezed, at a size of 1.
cairo_matrix_t FontMatrix(double narrowing, double lowering, double slant);

}  // namespace kel
