#include "export/automation_office.h"

#include "common/file.h"
#include "export/late_bound.h"
#include "export/report_files.h"

namespace kel {
namespace {

constexpr int kNormalFocus = 3;  // the published window style of Notepad

}  // namespace

bool AutomationOffice::MakeFile(ExportFormat format, const ReportSnapshot& report,
                                const std::filesystem::path& target, Handover handover,
                                ExportProgress& progress) {
  // The programs have current folders of their own.
  const std::filesystem::path whole = std::filesystem::absolute(target);
  if (format == ExportFormat::kDocument) return MakeDocument(report, whole, handover, progress);
  if (format == ExportFormat::kSheet) return MakeSheet(report, whole, handover, progress);

  OutputFile file(whole);
  if (!WriteReportFile(format, report, file, nullptr, progress)) return false;
  file.Commit();
  if (handover == Handover::kKeep) return true;
  if (format == ExportFormat::kText) {
    programs_->Shell("Notepad.exe " + PathText(whole), kNormalFocus);
  } else {
    programs_->Open(whole);
  }
  return true;
}

}  // namespace kel
