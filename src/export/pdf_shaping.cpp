#include "export/pdf_shaping.h"

#include <hb.h>
#include <utf8proc.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "common/code_point.h"
#include "common/text_cells.h"

namespace kel {
namespace {

constexpr std::string_view kReplacement = "\xef\xbf\xbd";  // U+FFFD

// Permanently reserved code points (Unicode 23.7), which cairo takes for an error.
bool IsNoncharacter(utf8proc_int32_t character) {
  return (character >= 0xFDD0 && character <= 0xFDEF) || (character & 0xFFFE) == 0xFFFE;
}

struct FontItem {
  const FontFace* face = nullptr;
  std::string_view text;
};

// Cuts a text that no single font has into graphemes of one font.
std::vector<FontItem> FontItems(FontChain& fonts, std::string_view text) {
  if (const FontFace* face = fonts.FaceFor(text)) return {{face, text}};
  std::vector<FontItem> items;
  for (std::size_t done = 0; done < text.size();) {
    const std::string_view grapheme = text.substr(done, FirstGrapheme(text.substr(done)).bytes);
    const FontFace* face = fonts.FaceFor(grapheme);
    if (face == nullptr) face = &fonts.Nearest();  // which draws its box for a missing character
    if (!items.empty() && items.back().face == face) {
      items.back().text = {items.back().text.data(), items.back().text.size() + grapheme.size()};
    } else {
      items.push_back({face, grapheme});
    }
    done += grapheme.size();
  }
  return items;
}

// Groups glyphs by the byte of the text that the shaper numbers them with. They stand from left to
// right, so from right to left the text of a cluster ends where the cluster before it begins.
std::vector<GlyphCluster> ClustersOf(hb_buffer_t* buffer, const FontItem& item,
                                     Direction direction) {
  unsigned count = 0;
  const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
  const hb_glyph_position_t* places = hb_buffer_get_glyph_positions(buffer, &count);
  const double unit = 1 / item.face->UnitsPerEm();
  std::vector<GlyphCluster> clusters;
  std::vector<std::size_t> starts;
  double x = 0;
  for (unsigned i = 0; i < count; ++i) {
    if (starts.empty() || starts.back() != infos[i].cluster) {
      starts.push_back(infos[i].cluster);
      clusters.push_back({{}, item.face, {}, x, 0});
    }
    clusters.back().glyphs.push_back(
        {infos[i].codepoint, x + places[i].x_offset * unit, -places[i].y_offset * unit});
    clusters.back().advance += places[i].x_advance * unit;
    x += places[i].x_advance * unit;
  }
  std::size_t end = item.text.size();
  for (std::size_t i = 0; i < clusters.size(); ++i) {
    const std::size_t at = direction == Direction::kRightToLeft ? i : clusters.size() - 1 - i;
    clusters[at].text = item.text.substr(starts[at], end - starts[at]);
    end = starts[at];
  }
  return clusters;
}

std::vector<GlyphCluster> ShapeItem(const FontItem& item, Direction direction) {
  const std::unique_ptr<hb_buffer_t, Releaser<hb_buffer_destroy>> buffer(hb_buffer_create());
  const auto size = static_cast<int>(item.text.size());
  hb_buffer_add_utf8(buffer.get(), item.text.data(), size, 0, size);
  hb_buffer_set_direction(
      buffer.get(), direction == Direction::kRightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_guess_segment_properties(buffer.get());
  hb_shape(item.face->Shaped(), buffer.get(), nullptr, 0);
  return ClustersOf(buffer.get(), item, direction);
}

void Append(ShapedText& shaped, GlyphCluster cluster) {
  const FontFace& face = *cluster.face;
  for (const cairo_glyph_t& glyph : cluster.glyphs) {
    shaped.ink.Include(face.InkOf(static_cast<std::uint32_t>(glyph.index)), glyph.x, glyph.y);
  }
  shaped.ascent = std::max(shaped.ascent, face.Ascent());
  shaped.descent = std::max(shaped.descent, face.Descent());
  shaped.advance += cluster.advance;
  shaped.ink.right = std::max(shaped.ink.right, shaped.advance);
  shaped.clusters.push_back(std::move(cluster));
}

}  // namespace

std::string TextForPdf(std::string_view text) {
  std::string valid;
  while (!text.empty()) {
    const CodePoint character = FirstCodePoint(text);
    const bool usable = character.IsValid() && !IsNoncharacter(character.value);
    valid += usable ? text.substr(0, character.bytes) : kReplacement;
    text.remove_prefix(character.bytes);
  }
  return valid;
}

ShapedText ShapeText(FontChain& fonts, std::string_view text, Direction direction) {
  ShapedText shaped;
  std::vector<FontItem> items = FontItems(fonts, text);
  if (direction == Direction::kRightToLeft) std::reverse(items.begin(), items.end());
  for (const FontItem& item : items) {
    const double origin = shaped.advance;
    for (GlyphCluster& cluster : ShapeItem(item, direction)) {
      cluster.left += origin;
      for (cairo_glyph_t& glyph : cluster.glyphs) glyph.x += origin;
      Append(shaped, std::move(cluster));
    }
  }
  return shaped;
}

}  // namespace kel
