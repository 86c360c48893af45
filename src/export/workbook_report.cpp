#include "export/workbook_report.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/control_codes.h"
#include "common/error.h"
#include "common/text_cells.h"
#include "engine/page_file_reader.h"
#include "engine/page_line.h"
#include "engine/report_caption.h"
#include "export/cell_number.h"
#include "export/line_cells.h"
#include "export/paper_geometry.h"
#include "export/sheet_paper.h"
#include "export/sheet_texts.h"
#include "export/workbook.h"

namespace kel {
namespace {

constexpr const char* kTextModeFont = "Courier New";
constexpr double kTextModePoints = 10;
// Room to spare for fonts that are not fixed-pitch, and for a sheet fitted to one page, whose small
// letters are rounded wider.
constexpr double kDigitsALetter = 1.1;
constexpr double kLeftMargin = 0.25;  // inches
constexpr std::size_t kMostLineBytes = std::size_t{1} << 20;

[[noreturn]] void Overflow(const std::string& why) { throw Error(error_number::kOverflow, why); }

WorkbookFont FontOf(const PrintSettings& settings) {
  if (settings.mode == kTextMode) {
    return {kTextModeFont, kTextModePoints, {}, kDigitsALetter};
  }
  constexpr double kMostPoints = 409;  // in a sheet
  CheckPoints(settings.font_size);
  const double size = std::min<double>(settings.font_size, kMostPoints);
  std::string name = TextForXml(settings.font);
  if (name.empty()) name = kTextModeFont;
  return {name, size, settings.font_flags, kDigitsALetter};
}

SheetPage PageOf(const PrintSettings& settings) {
  return {settings.portrait, PaperCode(settings.page_width, settings.page_height), kLeftMargin};
}

// Puts lines into the rows of a workbook.
class ReportSheets {
 public:
  ReportSheets(const ReportSnapshot& report, const std::filesystem::path& workbook,
               const SheetLimits& limits);

  void BeginPage() { page_.Clear(); }
  void Add(std::string_view line);
  void Finish();

 private:
  void BeginSheet();
  std::string_view ReadCodes(std::string_view line);
  void WriteCells(std::string_view text);
  void WriteCell(std::size_t column, std::string_view text);
  CellLook LookOf(std::string_view text) const;

  const ReportSnapshot& report_;
  std::int64_t most_rows_;
  std::string caption_;
  LineCells cells_;
  std::vector<Cells> longest_;  // text of each column of the sheet
  std::int32_t sheets_ = 0;
  PageText page_;                  // the line with its codes read
  std::span<const TextRun> runs_;  // of that line; none for one without codes
  Workbook workbook_;
};

ReportSheets::ReportSheets(const ReportSnapshot& report, const std::filesystem::path& workbook,
                           const SheetLimits& limits)
    : report_(report),
      most_rows_(std::min(limits.rows, kWorkbookRows)),
      caption_(TextForXml(CaptionOf(report.page_file, report.job))),
      cells_(report.job.columns, report.settings.left_margin),
      workbook_(workbook, FontOf(report.settings)) {
  if (!caption_.empty()) workbook_.SetTitle(caption_);
  BeginSheet();
}

void ReportSheets::BeginSheet() {
  if (sheets_ > 0) workbook_.SetColumns(longest_);
  longest_.assign(std::max<std::size_t>(report_.job.columns.size(), 1), 0);
  workbook_.AddSheet(SheetName(caption_, ++sheets_), PageOf(report_.settings));
}

void ReportSheets::Add(std::string_view line) {
  if (workbook_.Rows() == most_rows_) BeginSheet();
  runs_ = {};
  const bool is_bare = !page_.underline && IsPlain(line) && line.find(kEsc) == line.npos;
  WriteCells(is_bare ? line : ReadCodes(line));
  workbook_.EndRow();
}

// The text of a line without its codes; what they say stands in runs_.
std::string_view ReportSheets::ReadCodes(std::string_view line) {
  const bool underline = page_.underline;
  page_.Clear();
  page_.underline = underline;
  AppendPageLine(page_, line);
  const PageLine& read = page_.lines.back();
  if (PaperWidth(page_, read) + 2 * kGutter >= kMostLineCells) {
    Overflow("a line of the report is too long for a sheet");
  }
  if (read.runs == 0) return {};
  ReplaceNonCharacters(page_.text);
  runs_ = std::span(page_.runs).subspan(read.first_run, read.runs);
  return std::string_view(page_.text).substr(runs_.front().offset + kGutter);
}

void ReportSheets::WriteCells(std::string_view text) {
  const std::span<const std::string_view> cells = cells_.Cut(text);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (cells[i].empty()) continue;
    longest_[i] = std::max(longest_[i], CellWidth(cells[i]));
  }
  const std::string_view rest = cells_.Rest();
  for (std::size_t i = 0; i + 1 < cells.size(); ++i) WriteCell(i, cells[i]);
  const std::string_view last = cells.back();
  const char* const end = rest.empty() ? last.data() + last.size() : rest.data() + rest.size();
  WriteCell(cells.size() - 1, {last.data(), static_cast<std::size_t>(end - last.data())});
}

void ReportSheets::WriteCell(std::size_t column, std::string_view text) {
  if (text.empty()) return;
  if (text.size() > kMostCellText && Utf16Length(text) > kMostCellText) {
    Overflow("a text of the report is longer than the 32767 characters of a cell");
  }
  const auto place = static_cast<std::int32_t>(column);
  CellLook look = LookOf(text);
  const std::span<const ReportColumn> columns = report_.job.columns;
  if (column < columns.size() && columns[column].side == TextSide::kRight) {
    const std::optional<CellNumber> number = ReadCellNumber(text);
    if (number && workbook_.WriteNumber(place, number->value, number->format, look)) return;
    // Others are pieces of lines that were not laid out in columns.
    const Cells blanks = columns[column].width - CellWidth(text);
    look.at_right = blanks == 0 || blanks == -1;
  }
  workbook_.WriteText(place, text, look);
}

// A cell looks as its first visible character does.
CellLook ReportSheets::LookOf(std::string_view text) const {
  if (runs_.empty()) return {};
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  // What has no width looks as the character before it, of another cell.
  while (!text.empty()) {
    const TextPiece piece = FirstGrapheme(text);
    if (piece.cells > 0) break;
    text.remove_prefix(piece.bytes);
  }
  const auto first = static_cast<std::size_t>(text.data() - page_.text.data());
  const auto behind =
      std::upper_bound(runs_.begin(), runs_.end(), first,
                       [](std::size_t offset, const TextRun& run) { return offset < run.offset; });
  const TextRun& run = *(behind - 1);
  return {run.bold, run.underline, false};
}

void ReportSheets::Finish() {
  workbook_.SetColumns(longest_);
  workbook_.Close();
}

void RequireLimits(const JobValues& job, const SheetLimits& limits) {
  if (job.page_count < 1 || job.page_length < 1) {
    throw Error(error_number::kInvalidProcedureCall,
                "there are no pages: prepare the report first");
  }
  const auto columns = static_cast<std::int64_t>(job.columns.size());
  if (columns > std::min(limits.columns, kWorkbookColumns)) {
    Overflow("the report has " + std::to_string(columns) + " columns; a sheet has " +
             std::to_string(limits.columns));
  }
}

}  // namespace

bool WriteWorkbook(const ReportSnapshot& report, const std::filesystem::path& workbook,
                   const SheetLimits& limits, const std::function<bool()>& next_line) {
  RequireLimits(report.job, limits);
  PageFileReader reader(report.page_file);
  ReportSheets sheets(report, workbook, limits);
  std::string_view line;
  for (PageNumber page = 1; page <= report.job.page_count; ++page) {
    sheets.BeginPage();
    for (std::int32_t i = 0; i < report.job.page_length; ++i) {
      if (next_line && !next_line()) return false;
      if (!reader.NextLineStart(line, kMostLineBytes)) {
        throw Error(error_number::kInvalidFileFormat, report.page_file.string() +
                                                          " does not hold page " +
                                                          std::to_string(page) + " of the report");
      }
      if (line.size() == kMostLineBytes) Overflow("a line of the report is too long for a sheet");
      sheets.Add(line);
    }
  }
  sheets.Finish();
  return true;
}

}  // namespace kel
