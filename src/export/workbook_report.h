// A report as a spreadsheet workbook.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

#include "engine/report_windows.h"

namespace kel {

/// The rows that a sheet holds.
inline constexpr std::int64_t kWorkbookRows = 1'048'576;
inline constexpr std::int64_t kSheetRows = 65'536;  // of an .xls file

/// The columns that a sheet holds.
inline constexpr std::int32_t kWorkbookColumns = 16'384;
inline constexpr std::int32_t kSheetColumns = 256;

/// What one sheet can hold.
struct SheetLimits {
  std::int64_t rows = kWorkbookRows;
  std::int32_t columns = kWorkbookColumns;
};

/// Writes the pages of a report as an .xlsx workbook into the file `workbook`, which is made or
/// overwritten: a row a line, cut into a cell a column. A cell whose whole text (one trailing
/// divider aside) is a number in a right-aligned column is that number, shown as the report shows
/// it; any other text is text. A report with more lines than `limits` allow goes on on further
/// sheets. Memory does not grow with the pages.
///
/// `next_line` is told each line; False stops. False when stopped; the file is then not whole.
/// Throws Error when the pages cannot be read or the file not be written, and 6 for a report with
/// more columns than a sheet has.
bool WriteWorkbook(const ReportSnapshot& report, const std::filesystem::path& workbook,
                   const SheetLimits& limits, const std::function<bool()>& next_line);

}  // namespace kel
