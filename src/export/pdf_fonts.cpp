#include "export/pdf_fonts.h"

#include <cairo-ft.h>
#include <hb-ot.h>
#include <utf8proc.h>

#include <algorithm>

#include "common/code_point.h"
#include "common/error.h"

namespace kel {
namespace {

constexpr const char* kFixedPitch = "monospace";

int Number(FcPattern* font, const char* property, int fallback) {
  int value = fallback;
  return FcPatternGetInteger(font, property, 0, &value) == FcResultMatch ? value : fallback;
}

bool Flag(FcPattern* font, const char* property) {
  FcBool value = FcFalse;
  return FcPatternGetBool(font, property, 0, &value) == FcResultMatch && value == FcTrue;
}

// What becomes letters in a PDF: outlines of one colour in a file that can be shaped with.
bool IsOutlineFont(FcPattern* font) {
  FcChar8* format = nullptr;
  if (FcPatternGetString(font, FC_FONTFORMAT, 0, &format) != FcResultMatch) return false;
  const std::string_view name(reinterpret_cast<const char*>(format));
  return (name == "TrueType" || name == "CFF") && Flag(font, FC_OUTLINE) && !Flag(font, FC_COLOR) &&
         !Flag(font, FC_VARIABLE);
}

std::unique_ptr<hb_font_t, Releaser<hb_font_destroy>> OpenToShape(FcPattern* font) {
  constexpr unsigned kFileFaces = 0x10000;  // above them: the named instance of a variable font
  FcChar8* file = nullptr;
  if (FcPatternGetString(font, FC_FILE, 0, &file) != FcResultMatch) return nullptr;
  const auto index = static_cast<unsigned>(Number(font, FC_INDEX, 0));
  const std::unique_ptr<hb_blob_t, Releaser<hb_blob_destroy>> blob(
      hb_blob_create_from_file_or_fail(reinterpret_cast<const char*>(file)));
  if (blob == nullptr) return nullptr;
  const std::unique_ptr<hb_face_t, Releaser<hb_face_destroy>> face(
      hb_face_create(blob.get(), index % kFileFaces));
  if (hb_face_get_glyph_count(face.get()) == 0) return nullptr;
  std::unique_ptr<hb_font_t, Releaser<hb_font_destroy>> shaped(hb_font_create(face.get()));
  if (index >= kFileFaces) {
    hb_font_set_var_named_instance(shaped.get(), index / kFileFaces - 1);
  }
  return shaped;
}

bool IsSeen(utf8proc_int32_t character) {
  constexpr utf8proc_int32_t kFirstSelector = 0xFE00;
  constexpr utf8proc_int32_t kLastSelector = 0xFE0F;
  return utf8proc_category(character) != UTF8PROC_CATEGORY_CF &&
         (character < kFirstSelector || character > kLastSelector);
}

bool HasAll(FcPattern* font, std::string_view text) {
  FcCharSet* characters = nullptr;
  if (FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch) return false;
  while (!text.empty()) {
    const CodePoint character = FirstCodePoint(text);
    if (!character.IsValid()) return false;
    if (IsSeen(character.value) &&
        !FcCharSetHasChar(characters, static_cast<FcChar32>(character.value))) {
      return false;
    }
    text.remove_prefix(character.bytes);
  }
  return true;
}

FcPattern* PatternOf(const FontLook& look) {
  FcPattern* pattern = FcPatternCreate();
  for (const char* family : {look.family.c_str(), kFixedPitch}) {
    if (*family == '\0') continue;
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  }
  FcPatternAddInteger(pattern, FC_WEIGHT, look.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern, FC_SLANT, look.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(pattern, FC_OUTLINE, FcTrue);
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  return pattern;
}

}  // namespace

void InkBox::Include(const InkBox& box, double x, double y) {
  left = std::min(left, x + box.left);
  top = std::min(top, y + box.top);
  right = std::max(right, x + box.right);
  bottom = std::max(bottom, y + box.bottom);
}

std::unique_ptr<FontFace> FontFace::Open(FcPattern* font) {
  std::unique_ptr<FontFace> face(new FontFace);  // the constructor is private
  face->shaped_ = OpenToShape(font);
  if (face->shaped_ == nullptr) return nullptr;
  face->drawn_.reset(cairo_ft_font_face_create_for_pattern(font));
  if (cairo_font_face_status(face->drawn_.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  FcMatrix* matrix = nullptr;
  if (FcPatternGetMatrix(font, FC_MATRIX, 0, &matrix) == FcResultMatch) face->slant_ = matrix->xy;
  face->Measure();
  return face;
}

void FontFace::Measure() {
  units_per_em_ = hb_face_get_upem(hb_font_get_face(shaped_.get()));
  hb_font_extents_t extents{};
  hb_font_get_h_extents(shaped_.get(), &extents);
  ascent_ = extents.ascender / units_per_em_;
  descent_ = -extents.descender / units_per_em_;
  line_height_ = ascent_ + descent_ + extents.line_gap / units_per_em_;
  const auto metric = [this](hb_ot_metrics_tag_t tag) {
    hb_position_t position = 0;
    hb_ot_metrics_get_position_with_fallback(shaped_.get(), tag, &position);
    return position / units_per_em_;
  };
  underline_place_ = -metric(HB_OT_METRICS_TAG_UNDERLINE_OFFSET);
  strike_place_ = -metric(HB_OT_METRICS_TAG_STRIKEOUT_OFFSET);
  stroke_height_ = metric(HB_OT_METRICS_TAG_UNDERLINE_SIZE);
}

std::uint32_t FontFace::GlyphOf(char32_t character) const {
  hb_codepoint_t glyph = 0;
  hb_font_get_nominal_glyph(shaped_.get(), character, &glyph);
  return glyph;
}

double FontFace::AdvanceOf(std::uint32_t glyph) const {
  return hb_font_get_glyph_h_advance(shaped_.get(), glyph) / units_per_em_;
}

InkBox FontFace::InkOf(std::uint32_t glyph) const {
  hb_glyph_extents_t ink{};
  hb_font_get_glyph_extents(shaped_.get(), glyph, &ink);
  return {ink.x_bearing / units_per_em_, -ink.y_bearing / units_per_em_,
          (ink.x_bearing + ink.width) / units_per_em_,
          -(ink.y_bearing + ink.height) / units_per_em_};
}

FontChain::FontChain(const FontLook& look) : asked_(PatternOf(look)) {
  FcResult result = FcResultMatch;
  fonts_.reset(FcFontSort(nullptr, asked_.get(), FcTrue, nullptr, &result));
  const auto count = fonts_ == nullptr ? 0 : static_cast<std::size_t>(fonts_->nfont);
  faces_.resize(count);
  unusable_.resize(count);
  for (std::size_t i = 0; i < count && nearest_ == nullptr; ++i) nearest_ = FaceAt(i);
  if (nearest_ == nullptr) {
    throw Error(error_number::kInvalidProcedureCall,
                "no font is installed that a PDF can be written with");
  }
}

const FontFace* FontChain::FaceFor(std::string_view text) {
  for (std::size_t i = 0; i < faces_.size(); ++i) {
    if (!HasAll(fonts_->fonts[i], text)) continue;
    if (const FontFace* face = FaceAt(i)) return face;
  }
  return nullptr;
}

const FontFace* FontChain::FaceAt(std::size_t place) {
  if (faces_[place] == nullptr && !unusable_[place]) {
    FcPattern* const font = fonts_->fonts[place];
    if (IsOutlineFont(font)) {
      const Pattern prepared(FcFontRenderPrepare(nullptr, asked_.get(), font));
      faces_[place] = FontFace::Open(prepared.get());
    }
    unusable_[place] = faces_[place] == nullptr;
  }
  return faces_[place].get();
}

}  // namespace kel
