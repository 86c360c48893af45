// The installed fonts as a PDF uses them.
#pragma once

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <hb.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kel {

/// Gives a C library's object back with its own function.
template <auto kRelease>
struct Releaser {
  template <typename T>
  void operator()(T* object) const {
    kRelease(object);
  }
};

/// What is drawn, around an origin; empty when nothing is.
struct InkBox {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  /// Grows to hold `box` moved by (x, y).
  void Include(const InkBox& box, double x, double y);
};

/// One font file, opened to be shaped and drawn with. Lengths are in ems, y runs downwards from the
/// baseline.
class FontFace {
 public:
  /// Null when the file cannot be read or is no outline font.
  static std::unique_ptr<FontFace> Open(FcPattern* font);

  cairo_font_face_t* Drawn() const { return drawn_.get(); }
  hb_font_t* Shaped() const { return shaped_.get(); }
  double UnitsPerEm() const { return units_per_em_; }

  /// 0 when the font does not have the character.
  std::uint32_t GlyphOf(char32_t character) const;
  double AdvanceOf(std::uint32_t glyph) const;

  InkBox InkOf(std::uint32_t glyph) const;

  double Ascent() const { return ascent_; }
  double Descent() const { return descent_; }
  double LineHeight() const { return line_height_; }
  double UnderlinePlace() const { return underline_place_; }
  double StrikePlace() const { return strike_place_; }
  double StrokeHeight() const { return stroke_height_; }
  /// How far a point one em up is moved to the right where the family has no italic of its own.
  double Slant() const { return slant_; }

 private:
  FontFace() = default;
  void Measure();

  std::unique_ptr<cairo_font_face_t, Releaser<cairo_font_face_destroy>> drawn_;
  std::unique_ptr<hb_font_t, Releaser<hb_font_destroy>> shaped_;
  double units_per_em_ = 1;
  double ascent_ = 0;
  double descent_ = 0;
  double line_height_ = 0;
  double underline_place_ = 0;
  double strike_place_ = 0;
  double stroke_height_ = 0;
  double slant_ = 0;
};

struct FontLook {
  std::string family;
  bool bold = false;
  bool italic = false;
};

/// The fonts for one look: the installed one nearest to it, and behind it those that have the
/// characters it lacks. A family that is not installed gives a font of fixed pitch.
class FontChain {
 public:
  /// Throws Error 5 when no font at all can be put in a PDF.
  explicit FontChain(const FontLook& look);

  const FontFace& Nearest() const { return *nearest_; }
  /// The first font that has every character of `text`; null when there is none. Characters that
  /// are not seen (joiners, variation selectors) need no glyph.
  const FontFace* FaceFor(std::string_view text);

 private:
  using Pattern = std::unique_ptr<FcPattern, Releaser<FcPatternDestroy>>;

  const FontFace* FaceAt(std::size_t place);

  Pattern asked_;
  std::unique_ptr<FcFontSet, Releaser<FcFontSetDestroy>> fonts_;  // the nearest first
  std::vector<std::unique_ptr<FontFace>> faces_;                  // of fonts_, once opened
  std::vector<bool> unusable_;                                    // of fonts_
  const FontFace* nearest_ = nullptr;
};

}  // namespace kel
