// One line of a report as the content of a paragraph.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/job_values.h"
#include "engine/page_line.h"
#include "export/rtf_font.h"
#include "export/rtf_text.h"

namespace kel {

/// What a page of a document is set in. Lengths are twips.
struct RtfPageSetting {
  double cell_width = 0;
  double font_size = 0;
  double text_width = 0;  // from the left margin to the paper's right edge
};

/// Writes lines so that their columns stand where those of other lines do. Characters of the font
/// itself follow one another; behind text of other fonts comes a tab to the next word's cell, and
/// where it would not leave room it is set narrower.
class RtfLineWriter {
 public:
  /// `columns` are those of the report, behind `left_margin` cells. The font must outlive it.
  RtfLineWriter(RtfFont& font, BlankRuns blanks, Cells left_margin,
                const std::vector<ReportColumn>& columns);

  void SetPage(const RtfPageSetting& setting) { setting_ = setting; }

  /// Makes Text() and TabStops() those of `line`.
  void Take(const PageText& page, const PageLine& line);
  const std::string& Text() const { return text_; }
  /// Controls that belong to the paragraph; empty when it has no tab stops.
  const std::string& TabStops() const { return tab_stops_; }

 private:
  struct Look {
    bool bold = false;
    bool underline = false;
    bool operator==(const Look&) const = default;
  };
  // A stretch of blanks, a stretch of other letters, or one grapheme of another font.
  struct Piece {
    std::string_view text;
    Cells column = 0;
    Cells cells = 0;
    Look look;
    bool blank = false;
    bool loose = false;  // of another font, or from right to left
  };

  bool TakePieces(const PageText& page, const PageLine& line);
  void AppendPlainPieces(Piece run);
  void AppendRuns(const PageText& page, const PageLine& line);
  void AppendPieces();
  std::size_t StretchEnd(std::size_t first) const;
  std::size_t AppendStretch(std::size_t first);
  int Narrowing(std::size_t first, std::size_t end, std::size_t next) const;
  double NaturalWidth(std::size_t first, std::size_t end) const;
  std::string_view TextOf(std::size_t first, std::size_t end) const;
  void AppendTab(Cells column, Look look);
  void Append(std::string_view text, Look look);
  void SetLook(Look look);

  RtfFont& font_;
  BlankRuns blanks_;
  std::vector<Cells> column_starts_;
  RtfPageSetting setting_;
  std::vector<Piece> pieces_;
  Look look_;
  std::string text_;
  std::string tab_stops_;
};

}  // namespace kel
