// A line of a report cut into the cells of a sheet.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/job_values.h"
#include "common/text_cells.h"

namespace kel {

/// Cuts lines by the columns that they were laid out in: behind the left margin each column takes
/// its width and one character more, its divider. Trailing blanks of a cell are cut off.
class LineCells {
 public:
  /// Without columns a line is one cell.
  LineCells(std::span<const ReportColumn> columns, Cells left_margin);

  /// The cells of a line without codes; good until the next call. Columns beyond the line's end are
  /// empty. A line shorter than the margin is not cut from its left.
  std::span<const std::string_view> Cut(std::string_view line);
  /// What of the last line stands behind its last column.
  std::string_view Rest() const { return rest_; }

 private:
  std::vector<Cells> widths_;
  Cells left_margin_;
  std::vector<std::string_view> cells_;
  std::string_view rest_;
};

}  // namespace kel
