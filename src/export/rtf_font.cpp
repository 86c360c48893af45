#include "export/rtf_font.h"

#include <cmath>
#include <utility>

#include "common/code_point.h"
#include "common/error.h"
#include "common/names.h"
#include "export/pdf_shaping.h"

namespace kel {
namespace {

constexpr std::string_view kCourierNew = "Courier New";
constexpr double kCourierCell = 1229.0 / 2048;  // as its designers measured it
constexpr double kUsualCell = 0.6;
constexpr double kSameWidth = 0.01;
// A report in one script has a few thousand different words.
constexpr std::size_t kMostWidths = 16384;

// The only character of a text; 0 when it has more.
char32_t OnlyCharacter(std::string_view text) {
  const CodePoint first = FirstCodePoint(text);
  return first.IsValid() && first.bytes == text.size() ? static_cast<char32_t>(first.value) : 0;
}

}  // namespace

RtfFont::RtfFont(FontLook look) : look_(std::move(look)), cell_(kCourierCell) {
  if (!SameName(look_.family, kCourierNew)) Measure();
}

void RtfFont::Measure() {
  cell_ = kUsualCell;
  fixed_pitch_ = false;
  if (Fonts() == nullptr) return;
  const FontFace& face = Fonts()->Nearest();
  const double cell = face.AdvanceOf(face.GlyphOf(U'0'));
  for (const char32_t letter : {U' ', U'i', U'M', U'|'}) {
    if (std::abs(face.AdvanceOf(face.GlyphOf(letter)) - cell) > kSameWidth) return;
  }
  if (cell <= 0) return;
  cell_ = cell;
  fixed_pitch_ = true;
}

bool RtfFont::FillsItsCells(std::string_view grapheme, Cells cells) {
  const char32_t character = OnlyCharacter(grapheme);
  if (character == 0 || Fonts() == nullptr) return false;
  const FontFace& face = Fonts()->Nearest();
  const std::uint32_t glyph = face.GlyphOf(character);
  return glyph != 0 && std::abs(face.AdvanceOf(glyph) - cells * cell_) <= kSameWidth;
}

double RtfFont::WidthOf(std::string_view text) {
  if (Fonts() == nullptr) return kel::CellWidth(text) * kUsualCell;
  if (widths_.size() >= kMostWidths) widths_.clear();
  const auto [place, is_new] = widths_.try_emplace(std::string(text), 0);
  if (is_new) {
    place->second = ShapeText(*Fonts(), TextForPdf(text), Direction::kLeftToRight).advance;
  }
  return place->second;
}

// Null where no fonts are installed, as on a server: the document needs none.
FontChain* RtfFont::Fonts() {
  if (!fonts_ && !has_no_fonts_) {
    try {
      fonts_.emplace(look_);
    } catch (const Error&) {
      has_no_fonts_ = true;
    }
  }
  return fonts_ ? &*fonts_ : nullptr;
}

}  // namespace kel
