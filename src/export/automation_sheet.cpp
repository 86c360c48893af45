// Reports as workbooks of "Excel.Application".
#include <array>
#include <optional>
#include <span>
#include <string>

#include "common/control_codes.h"
#include "common/error.h"
#include "common/numeric_value.h"
#include "engine/page_file_reader.h"
#include "export/automation_office.h"
#include "export/late_bound.h"
#include "export/line_cells.h"
#include "export/office_program.h"
#include "export/replaced_file.h"
#include "export/workbook_report.h"

namespace kel {
namespace {

constexpr int kPortrait = 1;
constexpr int kLandscape = 2;

void QuitExcel(const LateBound& excel) {
  excel.Put("DisplayAlerts", false);
  excel.Call("Quit");
}

void CheckColumns(const ReportSnapshot& report) {
  if (report.job.columns.size() <= kSheetColumns) return;
  throw Error(error_number::kOverflow,
              "the report has " + std::to_string(report.job.columns.size()) +
                  " columns, a sheet has " + std::to_string(kSheetColumns));
}

// The text of a cell as the program must be given it to show it: what begins with one of the first
// four would be a formula, and an apostrophe in front is the program's own mark of a text.
std::string AsEntered(std::string_view text) {
  constexpr std::string_view kMarks = "=+-@'";
  const bool read = !text.empty() && kMarks.find(text.front()) != std::string_view::npos;
  return read && !IsNumeric(text) ? "'" + std::string(text) : std::string(text);
}

// A workbook that takes a report line by line.
class Sheets {
 public:
  Sheets(const OfficeProgram& excel, const ReportSnapshot& report);

  void WriteLine(std::string_view line);
  /// Lays the last sheet out.
  void Finish() { LayOut(); }
  void SaveAs(const std::filesystem::path& path) { book_.Call("SaveAs", {PathText(path)}); }

 private:
  void AddSheetBehind();
  void WriteCell(std::int32_t column, std::string_view text);
  void LayOut();
  void SetUpPage();

  const OfficeProgram& excel_;
  const PrintSettings& settings_;
  LineCells cutter_;
  LateBound book_;
  LateBound sheets_;
  LateBound sheet_;  // the one being written
  std::optional<Member> cells_;
  std::int64_t row_ = 0;
  std::int32_t columns_ = 0;
};

Sheets::Sheets(const OfficeProgram& excel, const ReportSnapshot& report)
    : excel_(excel),
      settings_(report.settings),
      cutter_(report.job.columns, report.settings.left_margin),
      book_(excel.Application().Get("WorkBooks").Call("Add")),
      sheets_(book_.Get("WorkSheets")),
      sheet_(sheets_.Call("Add")),
      cells_(std::in_place, *sheet_.Pointer(), "Cells"),
      columns_(static_cast<std::int32_t>(cutter_.Cut("").size())) {}

void Sheets::WriteLine(std::string_view line) {
  if (row_ == kSheetRows) {
    LayOut();
    AddSheetBehind();
  }
  ++row_;
  const std::span<const std::string_view> cells = cutter_.Cut(line);
  const std::string_view rest = cutter_.Rest();
  std::int32_t column = 0;
  for (std::string_view text : cells) {
    ++column;
    if (column == columns_ && !rest.empty()) {
      // Both are pieces of the line; between them stand the blanks cut off the cell.
      const char* begin = text.empty() ? rest.data() : text.data();
      text = {begin, static_cast<std::size_t>(rest.data() + rest.size() - begin)};
    }
    WriteCell(column, text);
  }
}

void Sheets::AddSheetBehind() {
  sheet_ = LateBound(sheets_.Call("Add", {Value::Missing(), sheet_.Pointer()}));
  cells_.emplace(*sheet_.Pointer(), "Cells");
  row_ = 0;
}

void Sheets::WriteCell(std::int32_t column, std::string_view text) {
  const std::array<Value, 2> place = {row_, column};
  LateBound(cells_->Get(place)).Put("Value", AsEntered(text));
}

void Sheets::LayOut() {
  SetReportFont(sheet_.Get("Range", {"A1:Z" + std::to_string(row_)}), settings_);
  for (std::int32_t column = 1; column <= columns_; ++column) {
    sheet_.Get("Columns", {column}).Call("AutoFit");
  }
  SetUpPage();
}

void Sheets::SetUpPage() {
  const LateBound page = sheet_.Get("PageSetup");
  page.Put("Orientation", settings_.portrait ? kPortrait : kLandscape);
  page.Put("TopMargin", 0);
  page.Put("BottomMargin", 0);
  page.Put("LeftMargin", excel_.InchesToPoints(kLeftMarginInches));
  page.Put("RightMargin", 0);
  page.Put("HeaderMargin", 0);
  page.Put("FooterMargin", 0);
  page.Put("Zoom", false);
  page.Put("FitToPagesWide", 1);
  page.Put("FitToPagesTall", 1);
}

// False when stopped.
bool WriteLines(const ReportSnapshot& report, Sheets& sheets, ExportProgress& progress) {
  const PrintSettings& settings = report.settings;
  PageFileReader reader(report.page_file);
  const std::int64_t page_lines =
      std::int64_t{settings.lines} + settings.top_margin + settings.bottom_margin;
  progress.Begin(page_lines * report.job.page_count);
  std::string text;
  std::string_view line;
  while (reader.NextLine(line)) {
    text = line;
    StripCodesInPlace(text, TitleMark::kRemove);
    std::erase(text, kFormFeed);  // the row stays, and is empty
    sheets.WriteLine(text);
    if (!progress.Step()) return false;
  }
  sheets.Finish();
  return true;
}

}  // namespace

bool AutomationOffice::MakeSheet(const ReportSnapshot& report, const std::filesystem::path& target,
                                 Handover handover, ExportProgress& progress) {
  CheckColumns(report);
  ReplacedFile file(target);
  OfficeProgram excel(*programs_, "Excel.Application", &QuitExcel);
  Sheets sheets(excel, report);
  if (!WriteLines(report, sheets, progress)) return false;
  file.SetAside();
  sheets.SaveAs(file.Path());
  excel.HandOver(handover);
  file.Commit();
  return true;
}

}  // namespace kel
