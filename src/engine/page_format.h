// The format of the report page file.
//
// Plain text; every line ends with CR LF. Every page has exactly page-length lines:
//
//     top margin     empty lines; report titles first, on a report that starts at page 1
//     page line      margin, caption, " Page ", number
//     rule, headings, rule           (not on the first page)
//     body           rows of the grid, rules around fixed rows
//     rule, foot     margin, time stamp, "Contd..." or "End Of Report."
//     bottom margin  empty lines; the last one is Chr(12) alone
//
// A line that begins with Chr(1) is a report title or holds codes: ESC "E"/ESC "F" bold,
// ESC "-1"/ESC "-0" underline, ESC "-8" to ESC "-26" font size (common/control_codes.h).
#pragma once

#include <cstdint>
#include <string_view>

#include "common/job_values.h"
#include "common/text_cells.h"

namespace kel {

inline constexpr std::string_view kPageFileName = "_kelFile.rpt";
inline constexpr std::string_view kPageRangeFileName = "_kelFile.kel";

inline constexpr std::string_view kLineEnd = "\r\n";
inline constexpr std::string_view kPageEndLine = "\x0c\r\n";

inline constexpr std::string_view kPageWord = " Page ";
inline constexpr std::string_view kContinuedWord = "Contd...";
inline constexpr std::string_view kEndWord = "End Of Report.";
inline constexpr Cells kStampWidth = 22;
inline constexpr char kColumnDivider = '|';

/// Lines of a page besides its body: page line, rule, rule, rule, foot. Headings stand between the
/// first two rules, and at least one body line belongs to a page.
inline constexpr std::int32_t kPageFrameLines = 5;

/// A line's number in the file, counted from 1.
using LineNumber = std::int64_t;

/// The first line of page `page`, counted from 1 at the start of the file.
constexpr LineNumber FirstLineOfPage(PageNumber page, std::int32_t page_length) {
  return (LineNumber{page} - 1) * page_length + 1;
}

}  // namespace kel
