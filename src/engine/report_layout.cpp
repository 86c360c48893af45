#include "engine/report_layout.h"

#include "common/error.h"
#include "engine/row_lines.h"

namespace kel {

namespace {

// Far beyond any paper; it keeps a mistyped width from asking for gigabytes per line.
constexpr std::int64_t kWidestLine = 1'000'000;
constexpr std::int64_t kLongestPage = 1'000'000;

// The walk over a grid's rows; it ends on every way out.
class Walk {
 public:
  explicit Walk(GridSource& grid) : grid_(grid) { grid.BeginWalk(); }
  ~Walk() { grid_.EndWalk(); }
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;

 private:
  GridSource& grid_;
};

class ReportLayout {
 public:
  ReportLayout(GridSource& grid, std::span<const Cells> widths, const PrintSettings& settings,
               const ReportRange& range, const ReportTexts& texts, PageFileWriter& writer)
      : grid_(grid),
        settings_(settings),
        range_(range),
        frame_(grid, settings, LineWidth(widths), texts, range.first_page, writer),
        row_lines_(grid, widths, range.col1, range.col2, settings.left_margin,
                   settings.print_column_divider) {}

  LaidOutPages Run(const RowStep& step);

 private:
  void CheckPageLength();
  void WriteRow(std::int32_t row);
  void WriteHeadingRow();

  GridSource& grid_;
  const PrintSettings& settings_;
  const ReportRange& range_;
  PageFrame frame_;
  RowLines row_lines_;
};

LaidOutPages ReportLayout::Run(const RowStep& step) {
  if (!row_lines_.HasColumns()) {
    throw Error(error_number::kInvalidProcedureCall,
                "no column to print: every ColWidth from column " + std::to_string(range_.col1) +
                    " to " + std::to_string(range_.col2) + " is 0 or less");
  }
  CheckPageLength();
  frame_.Open();
  grid_.SetVisible(false);
  grid_.SetHighLight(kHighlightNever);
  grid_.SetCol(range_.col1);
  for (std::int64_t row = range_.row1; row <= range_.row2 && !frame_.IsComplete(); ++row) {
    step(frame_.CurrentPage());
    const auto current = static_cast<std::int32_t>(row);
    if (!grid_.SetRow(current)) {
      if (range_.row2 == kLastRow) break;
      throw Error(error_number::kSubscriptOutOfRange,
                  "Subscript out of range: the rows end before row " + std::to_string(current));
    }
    WriteRow(current);
  }
  frame_.Close();
  grid_.SetHighLight(kHighlightWithFocus);
  grid_.SetVisible(true);
  return {frame_.CurrentPage(), row_lines_.Columns()};
}

// Headings are counted even where the page is too short without them, so that the least Lines is
// named at once.
void ReportLayout::CheckPageLength() {
  if (frame_.HasRoomFor(0)) return;
  std::size_t headings = 0;
  if (range_.row1 == 0 && range_.row2 >= 0 && grid_.SetRow(0)) {
    std::string_view line;
    for (row_lines_.Begin(0); row_lines_.Next(line);) ++headings;
  }
  frame_.RequireRoomFor(headings);
}

void ReportLayout::WriteRow(std::int32_t row) {
  if (grid_.CellBackColor() == system_color::kButtonFace) frame_.WriteRule();
  row_lines_.Begin(row);
  if (row == 0) {
    WriteHeadingRow();
  } else {
    std::string_view line;
    while (!frame_.IsComplete() && row_lines_.Next(line)) frame_.WriteBody(line);
  }
  if (grid_.CellBackColor() == system_color::kButtonFace) frame_.WriteRule();
}

// All lines of row 0 are built before the first is written: they decide whether a page can hold
// anything below them.
void ReportLayout::WriteHeadingRow() {
  std::vector<std::string> headings;
  std::size_t count = 0;
  std::string_view line;
  while (row_lines_.Next(line)) {
    if (++count <= static_cast<std::size_t>(settings_.lines)) headings.emplace_back(line);
  }
  frame_.RequireRoomFor(count);
  for (const std::string& heading : headings) frame_.WriteBody(heading);
  frame_.SetHeadings(std::move(headings));
}

void CheckColumns(std::span<const Cells> widths, const ReportRange& range) {
  const auto count = static_cast<std::int64_t>(widths.size());
  if (range.col1 >= 0 && range.col2 < count) return;
  throw Error(error_number::kSubscriptOutOfRange,
              "Subscript out of range: ColWidth has " + std::to_string(count) +
                  " entries, but columns " + std::to_string(range.col1) + " to " +
                  std::to_string(range.col2) + " are to be printed");
}

}  // namespace

Cells LineWidth(std::span<const Cells> widths) {
  std::int64_t width = -1;
  for (const Cells entry : widths) {
    if (entry > 0) width += std::int64_t{entry} + 1;
  }
  if (width < 0) {
    throw Error(error_number::kInvalidProcedureCall, "every ColWidth is 0 or less");
  }
  if (width > kWidestLine) {
    throw Error(error_number::kOverflow, "Overflow: a line would be " + std::to_string(width) +
                                             " characters wide; " + std::to_string(kWidestLine) +
                                             " is the most");
  }
  return static_cast<Cells>(width);
}

std::int32_t PageLength(const PrintSettings& settings) {
  for (const std::int32_t margin :
       {settings.top_margin, settings.bottom_margin, settings.left_margin, settings.right_margin}) {
    if (margin < 0) {
      throw Error(error_number::kInvalidProcedureCall, "a margin may not be below 0");
    }
  }
  const std::int64_t length =
      std::int64_t{settings.top_margin} + settings.lines + settings.bottom_margin;
  if (length > kLongestPage || settings.left_margin > kWidestLine ||
      settings.right_margin > kWidestLine) {
    throw Error(error_number::kOverflow, "Overflow: the page is too long or its margin too wide");
  }
  return static_cast<std::int32_t>(length);
}

LaidOutPages LayOutReport(GridSource& grid, std::span<const Cells> widths,
                          const PrintSettings& settings, const ReportRange& range,
                          const ReportTexts& texts, PageFileWriter& writer, const RowStep& step) {
  if (range.first_page > settings.end_page) {
    throw Error(error_number::kInvalidProcedureCall,
                "the first page would be " + std::to_string(range.first_page) +
                    ", but EndPage is " + std::to_string(settings.end_page));
  }
  PageLength(settings);
  CheckColumns(widths, range);
  const Walk walk(grid);
  LaidOutPages pages = ReportLayout(grid, widths, settings, range, texts, writer).Run(step);
  writer.Finish();
  return pages;
}

}  // namespace kel
