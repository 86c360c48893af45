// Drawing the lines of a page.
#pragma once

#include <cairo.h>

#include <string>
#include <string_view>
#include <vector>

#include "engine/page_line.h"
#include "export/pdf_cell_font.h"

namespace kel {

/// Where a line stands: its top left corner and the size of its font, in points.
struct LinePlace {
  double left = 0;
  double top = 0;
  double size = 0;
};

/// What holds for a whole line, beside what its runs tell.
struct LineLook {
  bool bold = false;
  bool underline = false;
  bool strikethrough = false;
};

/// Draws lines, every run in its cells. Text from right to left stands so in the cells that its
/// words take together; a blank or two signs between words belong to it, but never the wider gap or
/// the divider between two columns.
class LinePainter {
 public:
  LinePainter(cairo_t* context, PdfCellFonts& fonts) : context_(context), fonts_(fonts) {}

  void Draw(const PageText& page, const PageLine& line, LinePlace place, LineLook look);

 private:
  // Glyphs that go out together: neighbours of one font, squeezed alike.
  struct Batch {
    cairo_font_face_t* font = nullptr;
    cairo_matrix_t matrix{};
    std::string text;
    std::vector<cairo_glyph_t> glyphs;
    std::vector<cairo_text_cluster_t> clusters;
  };

  void DrawPlain(PdfCellFont& font, std::string_view text, Cells column);
  void DrawShaped(PdfCellFont& font, std::string_view text, Cells column, Cells cells,
                  Direction direction);
  void DrawStroke(const PdfCellFont& font, double place, Cells column, Cells cells);
  void Begin(cairo_font_face_t* font, const cairo_matrix_t& matrix);
  void BeginPlain(const PdfCellFont& font);
  void Append(std::string_view text, std::uint32_t glyph, double x, double y);
  void Flush();

  cairo_t* context_;
  PdfCellFonts& fonts_;
  LinePlace place_;
  Batch batch_;
};

}  // namespace kel
