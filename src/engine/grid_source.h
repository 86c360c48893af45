// What the layout walks: a grid with a current cell.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "common/ole_color.h"
#include "common/text_cells.h"  // kAlignLeft, kAlignRight, TextSide

namespace kel {

/// Values of a grid's HighLight.
inline constexpr int kHighlightNever = 0;
inline constexpr int kHighlightWithFocus = 2;

/// As the last row of a range: every row up to the end of a source whose length is not known.
inline constexpr std::int32_t kLastRow = std::numeric_limits<std::int32_t>::max();

/// The font of a cell as far as a report shows it.
struct CellFont {
  bool bold = false;
  bool underline = false;
};

/// A grid of report rows; row 0 holds the column headings, rows and columns count from 0.
///
/// The layout calls it in the order in which grids are published to be used: per row SetRow and
/// CellBackColor, then per printed column TextMatrix, SetCol, CellFontBold and CellFontUnderline
/// (Font) and ColAlignment, then CellBackColor again. Rows come in ascending order, so a source
/// may stream. Every call throws Error when the grid refuses it (9 for an index out of range).
class GridSource {
 public:
  virtual ~GridSource() = default;

  /// The rows are about to be walked over, and have been, whether or not that went well. In
  /// between a source may read ahead on a thread of its own.
  virtual void BeginWalk() {}
  virtual void EndWalk() noexcept {}

  /// The last row and column there are; kLastRow for a source that does not know its length.
  virtual std::int32_t LastRow() = 0;
  virtual std::int32_t LastCol() = 0;

  /// Parent.Caption, the text of the page line.
  virtual std::string Caption() = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual void SetHighLight(int high_light) = 0;

  /// Makes a row current. False when the source has ended before it, which only a source of
  /// unknown length says.
  virtual bool SetRow(std::int32_t row) = 0;
  virtual void SetCol(std::int32_t col) = 0;

  /// Back colour and font of the current cell. The system's button face is the colour of a fixed
  /// heading row; every other row has another, such as the window's background.
  virtual OleColor CellBackColor() = 0;
  virtual CellFont Font() = 0;

  /// The text of a cell of the current row, good until the next SetRow.
  virtual std::string_view TextMatrix(std::int32_t row, std::int32_t col) = 0;
  /// kAlignLeft, or any other value for right.
  virtual int ColAlignment(std::int32_t col) = 0;
  /// For a source that knows more sides than these two.
  virtual TextSide Side(std::int32_t col) {
    return ColAlignment(col) == kAlignLeft ? TextSide::kLeft : TextSide::kRight;
  }
};

}  // namespace kel
