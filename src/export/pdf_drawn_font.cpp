#include "export/pdf_drawn_font.h"

#include <cstdint>
#include <utility>

namespace kel {
namespace {

constexpr cairo_user_data_key_t kOwner = {};
constexpr std::size_t kMostDrawings = 250;  // of 256 codes in a font
constexpr double kHalfSize = 0.5;           // ems
constexpr double kAround = 0.02;  // ems beside the ink, for rounding and for slanted letters

template <typename T>
void AppendBytes(std::string& key, const T& value) {
  key.append(reinterpret_cast<const char*>(&value), sizeof value);
}

// Different texts may look alike, and must be read apart.
std::string KeyOf(const std::string& text, const GlyphDrawing& drawing) {
  std::string key = text;
  key.push_back('\0');
  AppendBytes(key, drawing.advance);
  for (const SqueezedGlyphs& part : drawing.parts) {
    AppendBytes(key, reinterpret_cast<std::uintptr_t>(part.face));
    for (const double length : {part.x, part.y, part.narrowing, part.lowering}) {
      AppendBytes(key, length);
    }
    for (const cairo_glyph_t& glyph : part.glyphs) AppendBytes(key, glyph);
  }
  return key;
}

}  // namespace

DrawnGlyph DrawnFont::GlyphOf(const std::string& text, GlyphDrawing drawing) {
  const auto [place, is_new] = known_.try_emplace(KeyOf(text, drawing));
  if (!is_new) return place->second;
  if (faces_.empty() || faces_.back()->drawings.size() == kMostDrawings) AddFace();
  Face& face = *faces_.back();
  place->second = {face.font.get(), static_cast<std::uint32_t>(face.drawings.size())};
  face.drawings.push_back(std::move(drawing));
  return place->second;
}

void DrawnFont::AddFace() {
  faces_.push_back(std::make_unique<Face>());
  Face& face = *faces_.back();
  face.font.reset(cairo_user_font_face_create());
  cairo_user_font_face_set_init_func(face.font.get(), Measure);
  cairo_user_font_face_set_render_glyph_func(face.font.get(), Render);
  cairo_font_face_set_user_data(face.font.get(), &kOwner, &face, nullptr);
  face.drawings = {{{}, kHalfSize}, {{}, blank_}};  // kLetterSize, kBlank
}

bool DrawnFont::IsDrawn(cairo_font_face_t* face) {
  return face != nullptr && cairo_font_face_get_user_data(face, &kOwner) != nullptr;
}

bool DrawnFont::TakeFirstUse(cairo_font_face_t* face) {
  auto* const drawn = static_cast<Face*>(cairo_font_face_get_user_data(face, &kOwner));
  return drawn != nullptr && !std::exchange(drawn->used, true);
}

// Cairo cuts off what is farther from a glyph's origin than the font says its glyphs are wide and
// high, and uses these lengths for nothing else.
cairo_status_t DrawnFont::Measure(cairo_scaled_font_t* /*font*/, cairo_t* /*context*/,
                                  cairo_font_extents_t* extents) noexcept {
  constexpr double kMostEms = 256;
  *extents = {kMostEms, kMostEms, 2 * kMostEms, kMostEms, 0};
  return CAIRO_STATUS_SUCCESS;
}

cairo_status_t DrawnFont::Render(cairo_scaled_font_t* font, unsigned long glyph, cairo_t* context,
                                 cairo_text_extents_t* extents) noexcept {
  cairo_font_face_t* const face = cairo_scaled_font_get_font_face(font);
  const auto* drawn = static_cast<const Face*>(cairo_font_face_get_user_data(face, &kOwner));
  const GlyphDrawing& drawing = drawn->drawings[glyph];
  extents->x_advance = drawing.advance;
  InkBox ink;  // told to cairo, whose own estimate cuts off strokes
  for (const SqueezedGlyphs& part : drawing.parts) {
    const cairo_matrix_t matrix = FontMatrix(part.narrowing, part.lowering, part.face->Slant());
    cairo_set_font_face(context, part.face->Drawn());
    cairo_set_font_matrix(context, &matrix);
    for (cairo_glyph_t one : part.glyphs) {
      one.x = part.x + one.x * part.narrowing;
      one.y = part.y + one.y * part.lowering;
      cairo_glyph_path(context, &one, 1);
      InkBox box = part.face->InkOf(static_cast<std::uint32_t>(one.index));
      box.left *= part.narrowing;
      box.right *= part.narrowing;
      box.top *= part.lowering;
      box.bottom *= part.lowering;
      ink.Include(box, one.x, one.y);
    }
    cairo_fill(context);
  }
  extents->x_bearing = ink.left - kAround;
  extents->y_bearing = ink.top - kAround;
  extents->width = ink.right - ink.left + 2 * kAround;
  extents->height = ink.bottom - ink.top + 2 * kAround;
  return CAIRO_STATUS_SUCCESS;
}

cairo_matrix_t FontMatrix(double narrowing, double lowering, double slant) {
  return {narrowing, 0, -slant * lowering, lowering, 0, 0};
}

}  // namespace kel
