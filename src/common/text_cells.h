// Report text measured in display cells.
//
// A character of a report line is a display cell. A grapheme (an extended grapheme cluster,
// Unicode annex 29) takes its East Asian width (annex 11): 0, 1 or 2 cells. A byte that is not
// part of valid UTF-8 is a grapheme of one cell of its own, and so is every ASCII byte, control
// codes included. Nothing is ever cut inside a grapheme.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kel {

/// A count of display cells.
using Cells = std::int32_t;

/// The grid's alignment numbers that the engine uses itself.
inline constexpr int kAlignLeft = 1;   // left, centred vertically
inline constexpr int kAlignRight = 7;  // right, centred vertically

/// Where a column's texts stand.
enum class TextSide { kLeft, kRight, kCenter };

/// A leading piece of a text.
struct TextPiece {
  std::size_t bytes = 0;
  Cells cells = 0;
};

/// True when every byte is printable ASCII or ESC, so that bytes and cells are the same and the
/// text may go into a report line as it is.
bool IsPlain(std::string_view text) noexcept;

/// The text without the blanks at its ends (Trim).
std::string_view TrimBlanks(std::string_view text) noexcept;

/// The text as a report line can hold it: CR LF, CR, LF, TAB, Chr(12), Chr(1) and NUL become one
/// blank each. ESC and everything else passes.
std::string CleanText(std::string_view text);

/// The first grapheme of a text. REQUIRES !text.empty().
TextPiece FirstGrapheme(std::string_view text) noexcept;

Cells CellWidth(std::string_view text) noexcept;

/// The longest leading run of whole graphemes that takes at most `width` cells; graphemes without
/// a width that follow it belong to it. Reads no further than it must.
TextPiece FitCells(std::string_view text, Cells width) noexcept;

/// Appends `text` as exactly `width` cells (AlignText): cut to the graphemes that fit, or padded
/// with blanks on the right for kAlignLeft and on the left for every other alignment. A negative
/// width counts as 0. A cut that falls inside a wide grapheme is filled with a blank.
void AppendAligned(std::string& line, std::string_view text, Cells width, int alignment);

}  // namespace kel
