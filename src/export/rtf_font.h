// How wide the text of a document will be.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/text_cells.h"
#include "export/pdf_fonts.h"

namespace kel {

/// The font of a document, measured where it is installed here, or another like it. The document
/// may be read where other fonts are, so every width is an estimate but those of Courier New.
/// Lengths are ems.
class RtfFont {
 public:
  explicit RtfFont(FontLook look);

  /// How far a letter of a font of fixed pitch takes; 0.6 for any other font.
  double CellWidth() const { return cell_; }
  bool HasFixedPitch() const { return fixed_pitch_; }
  /// Whether the font has a grapheme itself, as wide as its cells. Others are as wide as the font
  /// that is taken for them wants.
  bool FillsItsCells(std::string_view grapheme, Cells cells);
  double WidthOf(std::string_view text);

 private:
  FontChain* Fonts();
  void Measure();

  FontLook look_;
  std::optional<FontChain> fonts_;  // once text must be measured
  bool has_no_fonts_ = false;
  double cell_;
  bool fixed_pitch_ = true;
  std::unordered_map<std::string, double> widths_;
};

}  // namespace kel
