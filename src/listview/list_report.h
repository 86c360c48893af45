// The list window's report: what it shows as pages.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "common/text_cells.h"
#include "data/Recordset.h"
#include "engine/CPrint.h"
#include "listview/list_columns.h"

namespace kel {

/// Of a column's width on the screen, for each character of its width in the report.
inline constexpr Twips kTwipsPerCharacter = 120;

/// Widths of the report's columns in characters, one for each column of the list; 0 for those that
/// are not printed. The
/// one with which the total reaches `page_width` is the last, and cut so that the line stays within
/// `line_width`. Hidden columns are left out.
std::vector<Cells> ListReportWidths(std::span<const ListColumn> columns, Cells page_width,
                                    Cells line_width);

/// Writes the records, all of them whatever EndPage says, into the report page file, with the print
/// settings of `pg`, and makes them its prepared report: headings, records, under a line of dashes
/// the totals of the columns in `col_sums`, exact. Numbered from the first page number of the last
/// job. Afterwards the recordset stands where it stood. On failure the page file from before is
/// still there. Throws Error 5 when no column is wide enough for one character, or `Lines` too
/// small. REQUIRES that all rows are fetched.
void WriteListReport(Recordset& records, std::span<const ListColumn> columns,
                     const std::string& caption, const std::string& col_sums, CPrint& pg);

}  // namespace kel
