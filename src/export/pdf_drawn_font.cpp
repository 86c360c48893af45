#include "export/pdf_drawn_font.h"

#include <cstdint>
#include <utility>

namespace kel {
namespace {

constexpr cairo_user_data_key_t kOwner = {};
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

DrawnFont::DrawnFont() : face_(cairo_user_font_face_create()) {
  cairo_user_font_face_set_init_func(face_.get(), Measure);
  cairo_user_font_face_set_render_glyph_func(face_.get(), Render);
  cairo_font_face_set_user_data(face_.get(), &kOwner, this, nullptr);
}

std::uint32_t DrawnFont::GlyphOf(const std::string& text, GlyphDrawing drawing) {
  const auto [place, is_new] =
      known_.try_emplace(KeyOf(text, drawing), static_cast<std::uint32_t>(drawings_.size()));
  if (is_new) drawings_.push_back(std::move(drawing));
  return place->second;
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
  const auto* self = static_cast<const DrawnFont*>(cairo_font_face_get_user_data(face, &kOwner));
  const GlyphDrawing& drawing = self->drawings_[glyph];
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
