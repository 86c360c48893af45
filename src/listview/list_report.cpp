#include "listview/list_report.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "common/error.h"
#include "common/host.h"
#include "common/number_text.h"
#include "data/decimal_sum.h"
#include "data/field_value.h"
#include "engine/grid_source.h"
#include "engine/page_format.h"
#include "engine/page_frame.h"
#include "engine/report_job.h"
#include "engine/report_layout.h"
#include "engine/row_lines.h"
#include "listview/list_settings.h"
#include "listview/list_texts.h"
#include "toolkit/wait_scope.h"

namespace kel {
namespace {

constexpr std::int32_t kHeadingRow = 0;

/// The list as rows of a report: row 0 are the captions, row n is record n, and the row behind the
/// last record has the totals.
///
/// The wait window lets the program work on. When that changes which rows there are the report
/// fails: it would have some of each.
class ListReportGrid : public GridSource, private RecordsetEvents {
 public:
  ListReportGrid(Recordset& records, std::span<const ListColumn> columns,
                 std::span<const Cells> widths, std::string caption)
      : records_(records),
        columns_(columns),
        caption_(std::move(caption)),
        records_texts_(records, columns, widths),
        texts_(columns.size()),
        last_row_(static_cast<std::int32_t>(records.RowsSeen()) + 1) {
    records_.AddEvents(*this);
  }
  ~ListReportGrid() override { records_.RemoveEvents(*this); }
  ListReportGrid(const ListReportGrid&) = delete;
  ListReportGrid& operator=(const ListReportGrid&) = delete;

  std::int32_t LastRow() override { return last_row_; }
  std::int32_t LastCol() override { return static_cast<std::int32_t>(columns_.size()) - 1; }
  std::string Caption() override { return caption_; }
  void SetVisible(bool /*visible*/) override {}
  void SetHighLight(int /*high_light*/) override {}
  bool SetRow(std::int32_t row) override;
  void SetCol(std::int32_t /*col*/) override {}
  OleColor CellBackColor() override { return system_color::kWindowBackground; }
  CellFont Font() override { return {}; }
  std::string_view TextMatrix(std::int32_t /*row*/, std::int32_t col) override {
    const auto column = static_cast<std::size_t>(col);
    return on_record_ ? records_texts_.Text(column) : texts_[column];
  }
  int ColAlignment(std::int32_t col) override {
    return Side(col) == TextSide::kLeft ? kAlignLeft : kAlignRight;
  }
  TextSide Side(std::int32_t col) override;

  /// Has the texts of the next rows made, beside what follows; `row` is the first of them.
  void ReadAhead(std::int32_t row) {
    RequireSameRows();
    records_texts_.ReadAhead(row - 1);
  }
  /// How many rows from there on can be walked over. No event may run between the two calls.
  std::int32_t TakeRows() { return static_cast<std::int32_t>(records_texts_.TakeBlock()); }

  /// Totals the columns of a column list from now on.
  void Total(std::string_view col_sums);

 private:
  void RecordsetChangeComplete() override { other_rows_ = true; }
  void RequireSameRows() const;
  void ReadRecord(std::int64_t record);
  void ReadCaptions();
  void ReadTotals();

  Recordset& records_;
  std::span<const ListColumn> columns_;
  std::string caption_;
  ListTexts records_texts_;
  std::vector<std::string> texts_;  // of captions or totals, by column
  std::vector<std::pair<std::size_t, DecimalSum>> sums_;
  std::int32_t last_row_;
  bool on_record_ = false;
  bool other_rows_ = false;
};

bool ListReportGrid::SetRow(std::int32_t row) {
  RequireSameRows();
  on_record_ = row != kHeadingRow && row != LastRow();
  if (on_record_) {
    ReadRecord(row - 1);
  } else if (row == kHeadingRow) {
    ReadCaptions();
  } else {
    ReadTotals();
  }
  return true;
}

void ListReportGrid::RequireSameRows() const {
  if (!other_rows_ && records_.RowsSeen() + 1 >= last_row_) return;
  throw Error(error_number::kInvalidProcedureCall,
              "the records were changed while they were printed");
}

void ListReportGrid::ReadRecord(std::int64_t record) {
  records_texts_.Take(record);
  for (auto& [column, sum] : sums_) {
    sum.Add(records_.CellSeen(record, static_cast<int>(column)));
  }
}

void ListReportGrid::ReadCaptions() {
  for (std::size_t i = 0; i < columns_.size(); ++i) texts_[i] = columns_[i].caption;
}

void ListReportGrid::ReadTotals() {
  for (std::string& text : texts_) text.clear();
  for (const auto& [column, sum] : sums_) {
    if (!IsNumericType(columns_[column].type)) continue;  // nothing that could be added
    columns_[column].format.AppendNumber(sum.Text(), texts_[column]);
  }
}

TextSide ListReportGrid::Side(std::int32_t col) {
  switch (columns_[static_cast<std::size_t>(col)].Side()) {
    case gridLeft:
      return TextSide::kLeft;
    case gridCenter:
      return TextSide::kCenter;
    default:
      return TextSide::kRight;
  }
}

void ListReportGrid::Total(std::string_view col_sums) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (NamesColumn(col_sums, static_cast<int>(i))) sums_.emplace_back(i, DecimalSum());
  }
}

/// The pages of a list. The pass over its rows that PageFrame and RowLines leave to their user.
class ListLayout {
 public:
  ListLayout(ListReportGrid& grid, std::span<const Cells> widths, const PrintSettings& settings,
             Cells line_width, const ReportTexts& texts, PageNumber first_page,
             PageFileWriter& writer)
      : grid_(grid),
        margin_(static_cast<std::size_t>(settings.left_margin), ' '),
        line_width_(line_width),
        frame_(grid, settings, line_width, texts, first_page, writer),
        lines_(grid, widths, 0, LastPrinted(widths), settings.left_margin,
               settings.print_column_divider) {}

  LaidOutPages Run(bool with_totals, const WaitScope& wait);

 private:
  static std::int32_t LastPrinted(std::span<const Cells> widths);
  void WriteHeadings();
  void WriteRow(std::int32_t row);
  void WriteTotals();

  ListReportGrid& grid_;
  std::string margin_;
  Cells line_width_;
  PageFrame frame_;
  RowLines lines_;
};

LaidOutPages ListLayout::Run(bool with_totals, const WaitScope& wait) {
  WriteHeadings();
  grid_.ReadAhead(1);
  for (std::int32_t row = 1; row < grid_.LastRow();) {
    const std::int32_t end = row + grid_.TakeRows();
    wait.Step(end - row);
    grid_.ReadAhead(end);
    for (; row < end; ++row) WriteRow(row);
  }
  if (with_totals) WriteTotals();
  frame_.Close();
  return {frame_.CurrentPage(), lines_.Columns()};
}

// Columns after it are no place for a divider.
std::int32_t ListLayout::LastPrinted(std::span<const Cells> widths) {
  auto last = static_cast<std::int32_t>(widths.size()) - 1;
  while (last > 0 && widths[static_cast<std::size_t>(last)] <= 0) --last;
  return last;
}

void ListLayout::WriteHeadings() {
  grid_.SetRow(kHeadingRow);
  lines_.Begin(kHeadingRow);
  std::vector<std::string> headings;
  for (std::string_view line; lines_.Next(line);) headings.emplace_back(line);
  frame_.RequireRoomFor(headings.size());
  frame_.Open();
  frame_.WriteRule();
  for (const std::string& heading : headings) frame_.WriteBody(heading);
  frame_.SetHeadings(std::move(headings));
  frame_.WriteRule();
}

void ListLayout::WriteRow(std::int32_t row) {
  grid_.SetRow(row);
  lines_.Begin(row);
  for (std::string_view line; lines_.Next(line);) frame_.WriteBody(line);
}

void ListLayout::WriteTotals() {
  frame_.WriteBody(margin_ + std::string(static_cast<std::size_t>(line_width_), '-'));
  WriteRow(grid_.LastRow());
}

PrintSettings SettingsOf(const CPrint& pg) {
  PrintSettings settings = pg.Snapshot().settings;
  PageLength(settings);  // margins make sense
  settings.end_page = std::numeric_limits<PageNumber>::max();
  return settings;
}

bool AnyPrinted(std::span<const Cells> widths) {
  return std::any_of(widths.begin(), widths.end(), [](Cells width) { return width > 0; });
}

}  // namespace

std::vector<Cells> ListReportWidths(std::span<const ListColumn> columns, Cells page_width,
                                    Cells line_width) {
  std::vector<Cells> widths(columns.size(), 0);
  std::int64_t total = 0;
  std::int64_t used = -1;  // by the columns so far and the dividers between them
  for (std::size_t i = 0; i < columns.size() && total < page_width; ++i) {
    const Cells width = columns[i].visible ? columns[i].width / kTwipsPerCharacter : 0;
    if (width <= 0) continue;
    total += width;
    widths[i] =
        static_cast<Cells>(std::clamp<std::int64_t>(std::int64_t{line_width} - used - 1, 0, width));
    used += std::int64_t{width} + 1;
  }
  return widths;
}

void WriteListReport(Recordset& records, std::span<const ListColumn> columns,
                     const std::string& caption, const std::string& col_sums, CPrint& pg) {
  const ReportJob job;
  const PrintSettings settings = SettingsOf(pg);
  const Cells line_width = settings.cols - settings.left_margin - settings.right_margin;
  const std::vector<Cells> widths = ListReportWidths(columns, settings.cols, line_width);
  if (!AnyPrinted(widths)) {
    throw Error(error_number::kInvalidProcedureCall,
                "no column to print: a line has " + std::to_string(line_width) +
                    " characters, and no column is wide enough for one");
  }
  LineWidth({&line_width, 1});  // no printer has more
  const ReportTexts texts = {TitleLines(pg.ReportTitle()), CurrentHost().clock->Stamp()};
  ListReportGrid grid(records, columns, widths, caption);
  grid.Total(col_sums);
  const PageNumber first_page = FirstPageOf(CurrentJob().first_page);
  const WaitScope wait("Preparing Pages...", 0, grid.LastRow() - 1);
  const auto write_pages = [&](PageFileWriter& writer) {
    ListLayout layout(grid, widths, settings, line_width, texts, first_page, writer);
    LaidOutPages pages = layout.Run(!col_sums.empty() && records.RowsSeen() > 0, wait);
    writer.Finish();
    return pages;
  };
  pg.CurrentPage(WriteReport(settings, line_width, first_page, write_pages));
  pg.Pages(CurrentJob().page_count);
  pg.ColWidth(Value::Array(widths.begin(), widths.end()));
  pg.ReBuild(false);
}

}  // namespace kel
