// One line of the page file as it is drawn (PritToPic).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_cells.h"

namespace kel {

/// A stretch of a drawn line in one look. A plain one is ASCII, one cell a byte; any other is one
/// grapheme, or the graphemes of one Indic conjunct, which are shaped together in the cells they
/// take together. A byte that is no UTF-8 is U+FFFD here. Column 0 is the gutter.
struct TextRun {
  std::uint32_t offset = 0;  // of its text in PageText::text
  std::uint32_t bytes = 0;
  Cells column = 0;
  Cells cells = 0;
  bool plain = true;
  bool bold = false;
  bool underline = false;
};

/// The cells of a match that are marked; none when `cells` is 0.
struct MarkedCells {
  std::int32_t line = 0;  // of the page, from 0
  Cells column = 0;
  Cells cells = 0;
};

struct PageLine {
  std::uint32_t first_run = 0;
  std::uint32_t runs = 0;
};

/// The lines of one page, ready to be drawn. It holds no more of a line than `kMostLineCells`
/// cells.
struct PageText {
  std::string text;
  std::vector<TextRun> runs;
  std::vector<PageLine> lines;
  MarkedCells match;
  bool underline = false;  // still on behind the last line

  std::string_view TextOf(const TextRun& run) const {
    return std::string_view(text).substr(run.offset, run.bytes);
  }
  void Clear();
};

/// The blank cells that are put in front of every line; paper has none.
inline constexpr Cells kGutter = 1;

/// The cells of a line without the gutter.
Cells PaperWidth(const PageText& page, const PageLine& line);

/// What a page surface could ever show of one line.
inline constexpr Cells kMostLineCells = 32767;

/// Appends a line that is drawn as it stands, one blank in front; every control character, ESC
/// included, is drawn as a blank. A line of blanks becomes an empty one.
void AppendRawLine(PageText& page, std::string_view line);

/// Appends a line whose codes are interpreted: Chr(1) removed, one blank put in front; ESC "E" and
/// ESC "F" switch bold, ESC "-1" and ESC "-0" underline, any other ESC is dropped. Bold ends with
/// the line, underline goes on until it is switched off. With `mark_cells` > 0 the cells from
/// `mark_column` on, as far as the line has them, are the page's match.
void AppendFormattedLine(PageText& page, std::string_view line, Cells mark_column = 0,
                         Cells mark_cells = 0);

/// Appends a line of a page file: one that begins with Chr(1), or has a match, formatted, any other
/// raw. Its form feeds are left out.
void AppendPageLine(PageText& page, std::string_view line, Cells mark_column = 0,
                    Cells mark_cells = 0);

}  // namespace kel
