#include "export/pdf_line.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdint>

#include "common/code_point.h"

namespace kel {
namespace {

constexpr Cells kMostCellsBetweenWords = 3;

bool BeginsRightToLeft(std::string_view text) {
  const CodePoint first = FirstCodePoint(text);
  return first.IsValid() && IsRightToLeft(first);
}

bool IsBetweenWords(const utf8proc_property_t& character) {
  return !character.bidi_mirrored && (character.bidi_class == UTF8PROC_BIDI_CLASS_ON ||
                                      character.bidi_class == UTF8PROC_BIDI_CLASS_WS ||
                                      character.bidi_class == UTF8PROC_BIDI_CLASS_CS ||
                                      character.bidi_class == UTF8PROC_BIDI_CLASS_ES);
}

// Whether a run may stand between two words of one text. Brackets may have their other one outside.
bool IsBetweenWords(std::string_view text) {
  if (text.find("  ") != std::string_view::npos || text.find('|') != std::string_view::npos) {
    return false;
  }
  while (!text.empty()) {
    const CodePoint character = FirstCodePoint(text);
    if (!character.IsValid() || !IsBetweenWords(*utf8proc_get_property(character.value))) {
      return false;
    }
    text.remove_prefix(character.bytes);
  }
  return true;
}

struct RunGroup {
  std::uint32_t end = 0;  // the run behind the last one
  Direction direction = Direction::kLeftToRight;
};

// The runs from `first` on that are drawn as one text.
RunGroup GroupFrom(const PageText& page, std::uint32_t first, std::uint32_t line_end) {
  const TextRun& begin = page.runs[first];
  RunGroup group{first + 1, Direction::kLeftToRight};
  if (begin.plain || !BeginsRightToLeft(page.TextOf(begin))) return group;
  group.direction = Direction::kRightToLeft;
  Cells between = 0;
  for (std::uint32_t i = first + 1; i < line_end; ++i) {
    const TextRun& run = page.runs[i];
    if (run.bold != begin.bold || run.underline != begin.underline) break;
    if (!run.plain && BeginsRightToLeft(page.TextOf(run))) {
      group.end = i + 1;
      between = 0;
      continue;
    }
    between += run.cells;
    if (between > kMostCellsBetweenWords || !IsBetweenWords(page.TextOf(run))) break;
  }
  return group;
}

}  // namespace

void LinePainter::Draw(const PageText& page, const PageLine& line, LinePlace place, LineLook look) {
  place_ = place;
  const std::uint32_t end = line.first_run + line.runs;
  for (std::uint32_t i = line.first_run; i < end;) {
    const TextRun& run = page.runs[i];
    const RunGroup group = GroupFrom(page, i, end);
    const TextRun& last = page.runs[group.end - 1];
    std::string_view text(page.text.data() + run.offset, last.offset + last.bytes - run.offset);
    Cells column = run.column - kGutter;
    if (column < 0) {
      text.remove_prefix(1);
      column = 0;
    }
    const Cells cells = std::max(last.column + last.cells - kGutter - column, 1);
    PdfCellFont& font = fonts_.Of(run.bold || look.bold);
    if (run.plain) {
      DrawPlain(font, text, column);
    } else {
      DrawShaped(font, text, column, cells, group.direction);
    }
    if (!text.empty() && (run.underline || look.underline)) {
      DrawStroke(font, font.Face().UnderlinePlace(), column, cells);
    }
    if (!text.empty() && look.strikethrough) {
      DrawStroke(font, font.Face().StrikePlace(), column, cells);
    }
    i = group.end;
  }
  Flush();
}

void LinePainter::DrawPlain(PdfCellFont& font, std::string_view text, Cells column) {
  const double cell = font.Cell().width * place_.size;
  const double baseline = place_.top + font.Baseline() * place_.size;
  double x = place_.left + column * cell;
  // Blanks behind drawn glyphs are of the same font, so that a text of several words is of one.
  if (!batch_.glyphs.empty() && DrawnFont::IsDrawn(batch_.font) &&
      text.find_first_not_of(' ') == std::string_view::npos) {
    for (std::size_t i = 0; i < text.size(); ++i, x += cell) {
      Append(" ", DrawnFont::kBlank, x, baseline);
    }
    return;
  }
  if (font.HasFixedPitch()) BeginPlain(font);
  for (std::size_t i = 0; i < text.size(); ++i, x += cell) {
    if (!font.HasFixedPitch()) {
      DrawShaped(font, text.substr(i, 1), column + static_cast<Cells>(i), 1,
                 Direction::kLeftToRight);
      continue;
    }
    const std::uint32_t glyph = font.PlainGlyph(text[i]);
    if (glyph == 0) {  // the family lacks it, another has it
      DrawShaped(font, text.substr(i, 1), column + static_cast<Cells>(i), 1,
                 Direction::kLeftToRight);
      BeginPlain(font);
      continue;
    }
    batch_.text.push_back(text[i]);
    batch_.glyphs.push_back({glyph, x, baseline});
    batch_.clusters.push_back({1, 1});
  }
}

void LinePainter::DrawShaped(PdfCellFont& font, std::string_view text, Cells column, Cells cells,
                             Direction direction) {
  if (text.empty()) return;
  const double size = place_.size;
  const double x = place_.left + column * font.Cell().width * size;
  const double y = place_.top + font.Baseline() * size;
  for (const CellGlyph& glyph : font.Shaped(text, cells, direction)) {
    Begin(glyph.font, glyph.matrix);
    Append(glyph.text, glyph.index, x + glyph.x * size, y + glyph.y * size);
  }
}

void LinePainter::Append(std::string_view text, std::uint32_t glyph, double x, double y) {
  batch_.text += text;
  batch_.glyphs.push_back({glyph, x, y});
  batch_.clusters.push_back({static_cast<int>(text.size()), 1});
}

// A stroke through the line at `place`, in ems below the baseline; it stays in the line.
void LinePainter::DrawStroke(const PdfCellFont& font, double place, Cells column, Cells cells) {
  const double height = font.Face().StrokeHeight();
  const double lowest = font.Cell().height - font.Baseline() - height;
  const double y = font.Baseline() + std::min(place, lowest);
  cairo_rectangle(context_, place_.left + column * font.Cell().width * place_.size,
                  place_.top + y * place_.size, cells * font.Cell().width * place_.size,
                  height * place_.size);
  cairo_fill(context_);
}

// What follows is of this font; what stood before in another goes out.
void LinePainter::Begin(cairo_font_face_t* font, const cairo_matrix_t& matrix) {
  const cairo_matrix_t& before = batch_.matrix;
  if (batch_.font == font && before.xx == matrix.xx && before.yy == matrix.yy) return;
  Flush();
  batch_.font = font;
  batch_.matrix = matrix;
}

void LinePainter::BeginPlain(const PdfCellFont& font) {
  Begin(font.Face().Drawn(), FontMatrix(font.PlainStretch(), 1, font.Face().Slant()));
}

void LinePainter::Flush() {
  if (batch_.glyphs.empty()) return;
  cairo_matrix_t letters = batch_.matrix;
  cairo_matrix_scale(&letters, place_.size, place_.size);
  cairo_set_font_face(context_, batch_.font);
  cairo_set_font_matrix(context_, &letters);
  if (DrawnFont::TakeFirstUse(batch_.font)) {
    cairo_glyph_t size = batch_.glyphs.front();
    size.index = DrawnFont::kLetterSize;
    const cairo_text_cluster_t one{1, 1};
    cairo_show_text_glyphs(context_, " ", 1, &size, 1, &one, 1, cairo_text_cluster_flags_t{});
  }
  cairo_show_text_glyphs(context_, batch_.text.data(), static_cast<int>(batch_.text.size()),
                         batch_.glyphs.data(), static_cast<int>(batch_.glyphs.size()),
                         batch_.clusters.data(), static_cast<int>(batch_.clusters.size()),
                         cairo_text_cluster_flags_t{});
  batch_.text.clear();
  batch_.glyphs.clear();
  batch_.clusters.clear();
}

}  // namespace kel
