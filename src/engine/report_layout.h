// A grid laid out into report pages.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "common/job_values.h"
#include "engine/grid_source.h"
#include "engine/page_file_writer.h"
#include "engine/page_frame.h"
#include "engine/print_settings.h"

namespace kel {

/// What of a grid is laid out, and the number of its first page.
struct ReportRange {
  std::int32_t row1 = 0;
  std::int32_t col1 = 0;
  std::int32_t row2 = 0;
  std::int32_t col2 = 0;
  PageNumber first_page = 1;
};

/// Sum of the positive widths and of the dividers between their columns. Throws Error 5 when no
/// width is positive, 6 when a line would be longer than any printer could use.
Cells LineWidth(std::span<const Cells> widths);

/// Lines of the file per page. Throws Error 5 for negative margins.
std::int32_t PageLength(const PrintSettings& settings);

/// What was laid out.
struct LaidOutPages {
  PageNumber last = 0;  // the number of the last page
  std::vector<ReportColumn> columns;
};

/// Told before each row which page is being written.
using RowStep = std::function<void(PageNumber current_page)>;

/// Lays the range out and pushes the lines into `writer`. A pure pass over the grid: it depends on
/// nothing but its arguments. Throws Error 5 when `Lines` is too small, 9 for columns or rows that
/// there are not, and what grid and writer throw.
LaidOutPages LayOutReport(GridSource& grid, std::span<const Cells> widths,
                          const PrintSettings& settings, const ReportRange& range,
                          const ReportTexts& texts, PageFileWriter& writer, const RowStep& step);

}  // namespace kel
