// The files that a report is exported to, made without any office program.
#pragma once

#include "common/file.h"
#include "engine/report_windows.h"
#include "export/desktop_programs.h"
#include "export/export_choices.h"
#include "export/export_progress.h"

namespace kel {

/// Writes the pages of a report into `file` in any format. An .xls file needs `programs`, which may
/// be null: Error 429 names .xlsx instead. False when the user stopped; the file is then not whole.
/// Throws Error when the pages cannot be read or the file not be written. The caller commits.
bool WriteReportFile(ExportFormat format, const ReportSnapshot& report, OutputFile& file,
                     DesktopPrograms* programs, ExportProgress& progress);

}  // namespace kel
