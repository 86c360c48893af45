// One grid row broken into the physical lines that show it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/job_values.h"
#include "common/text_cells.h"
#include "engine/grid_source.h"

namespace kel {

/// Builds the lines of one row after the other. A cell longer than its column goes on in further
/// lines, broken after the last blank that fits; a word longer than the column is cut at the
/// width. One line buffer serves all rows, and cell texts are only looked at, so a row of plain
/// texts costs no allocation.
class RowLines {
 public:
  /// Columns `col1` to `col2` are shown as far as their width is above 0. The grid must outlive it.
  RowLines(GridSource& grid, std::span<const Cells> widths, std::int32_t col1, std::int32_t col2,
           Cells left_margin, bool print_column_divider);

  bool HasColumns() const { return !columns_.empty(); }
  /// What is shown, from left to right. The sides are those of the last row.
  std::vector<ReportColumn> Columns() const;

  /// Starts with the grid's current row, which is `row`.
  void Begin(std::int32_t row);

  /// The row's next line as the file holds it: the mark where it has codes, the margin, the text
  /// without trailing blanks. Good until the next call. False when the row is finished.
  bool Next(std::string_view& line);

 private:
  struct Column {
    std::int32_t index;
    Cells width;
    bool divider_after;
    std::size_t offset;  // in blank_line_

    // The current row.
    std::string_view rest;  // what is still to be shown of the cell
    std::string cleaned;    // backs `rest` when the cell's text cannot be shown as it is
    bool plain;             // one byte of `rest` is one cell

    // The current line.
    std::string_view shown;
    Cells cells;  // that `shown` takes
    CellFont font;
    TextSide side;
    Cells before;  // blanks before `shown`; the others follow it
  };

  static Cells BlanksBefore(const Column& column);
  void ReadText(Column& column);
  void TakePiece(Column& column);
  void PaintLine();
  void AssembleLine();
  std::string_view FinishedLine() const;

  GridSource& grid_;
  std::vector<Column> columns_;
  char divider_;
  std::size_t margin_end_;  // of the mark and the margin in line_
  std::string blank_line_;  // a line of empty cells: mark, margin, blanks and dividers
  std::string line_;
  std::int32_t row_ = 0;
  bool first_line_ = false;
  bool continues_ = false;
};

}  // namespace kel
