#include "export/report_files.h"

#include <filesystem>
#include <string_view>

#include "common/error.h"
#include "common/work_folder.h"
#include "export/code_free_copy.h"
#include "export/pdf_report.h"
#include "export/rtf_document.h"
#include "export/workbook_report.h"

namespace kel {
namespace {

// Thrown through a copy that knows no other way to be stopped.
struct Stopped {};

bool WriteText(const ReportSnapshot& report, OutputFile& file, ExportProgress& progress) {
  progress.Begin(static_cast<std::int64_t>(InputFile(report.page_file, Links::kRefuse).Size()));
  try {
    CopyWithoutCodes(report.page_file, [&](std::string_view text) {
      file.Write(text);
      if (!progress.Step(static_cast<std::int64_t>(text.size()))) throw Stopped();
    });
  } catch (const Stopped&) {
    return false;
  }
  return true;
}

using PageWriter = bool (*)(const ReportSnapshot& report, OutputFile& file,
                            const std::function<bool()>& next_page);

bool WritePages(PageWriter writer, const ReportSnapshot& report, OutputFile& file,
                ExportProgress& progress) {
  progress.Begin(report.job.page_count);
  return writer(report, file, [&] { return progress.Step(); });
}

bool MakeWorkbook(const ReportSnapshot& report, const std::filesystem::path& workbook,
                  const SheetLimits& limits, ExportProgress& progress) {
  progress.Begin(std::int64_t{report.job.page_count} * report.job.page_length);
  return WriteWorkbook(report, workbook, limits, [&] { return progress.Step(); });
}

void TakeOver(const std::filesystem::path& made, OutputFile& file) {
  InputFile whole(made);
  file.WriteAll(whole);
}

bool WriteXlsx(const ReportSnapshot& report, OutputFile& file, ExportProgress& progress) {
  const WorkFolder folder;
  const std::filesystem::path workbook = folder.Path() / "report.xlsx";
  if (!MakeWorkbook(report, workbook, {}, progress)) return false;
  TakeOver(workbook, file);
  return true;
}

bool WriteXls(const ReportSnapshot& report, OutputFile& file, DesktopPrograms* programs,
              ExportProgress& progress) {
  if (programs == nullptr) {
    throw Error(error_number::kCannotCreateObject,
                "this program has nothing that makes .xls files: choose an .xlsx file instead");
  }
  programs->RequireSheetMaker();
  const WorkFolder folder;
  const std::filesystem::path workbook = folder.Path() / "report.xlsx";
  const std::filesystem::path sheet = folder.Path() / "report.xls";
  const SheetLimits limits{kSheetRows, kSheetColumns};
  if (!MakeWorkbook(report, workbook, limits, progress)) return false;
  progress.Begin(0);
  if (!programs->MakeSheet(workbook, sheet, [&] { return progress.Step(0); })) return false;
  TakeOver(sheet, file);
  return true;
}

}  // namespace

bool WriteReportFile(ExportFormat format, const ReportSnapshot& report, OutputFile& file,
                     DesktopPrograms* programs, ExportProgress& progress) {
  switch (format) {
    case ExportFormat::kText:
      return WriteText(report, file, progress);
    case ExportFormat::kDocument:
      return WritePages(&WriteRtfDocument, report, file, progress);
    case ExportFormat::kPdf:
      return WritePages(&WritePdfReport, report, file, progress);
    case ExportFormat::kWorkbook:
      return WriteXlsx(report, file, progress);
    case ExportFormat::kSheet:
      break;
  }
  return WriteXls(report, file, programs, progress);
}

}  // namespace kel
