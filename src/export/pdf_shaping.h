// Text made into glyphs.
#pragma once

#include <cairo.h>

#include <string>
#include <string_view>
#include <vector>

#include "export/pdf_fonts.h"

namespace kel {

enum class Direction { kLeftToRight, kRightToLeft };

/// Glyphs that stand together for a piece of a text. Places are ems from the origin of the text.
struct GlyphCluster {
  std::string text;
  const FontFace* face = nullptr;
  std::vector<cairo_glyph_t> glyphs;
  double left = 0;
  double advance = 0;
};

/// A text as it is seen: its clusters from left to right, in ems.
struct ShapedText {
  std::vector<GlyphCluster> clusters;
  double advance = 0;
  InkBox ink;         // and the way from the first glyph to behind the last
  double ascent = 0;  // of the highest of its fonts
  double descent = 0;
};

/// The text as a PDF can hold it: what is no UTF-8, and what Unicode keeps for internal use, is
/// U+FFFD.
std::string TextForPdf(std::string_view text);

/// Shapes a text as one piece, with one font where one has all of its characters.
/// REQUIRES text from TextForPdf.
ShapedText ShapeText(FontChain& fonts, std::string_view text, Direction direction);

}  // namespace kel
