// The export writer.
#pragma once

#include <string>

#include "engine/report_windows.h"
#include "export/export_choices.h"
#include "export/export_progress.h"
#include "export/office.h"

namespace kel {

/// What is exported, and where to.
struct ExportOrder {
  ReportSnapshot report;
  ExportFormat format = ExportFormat::kDocument;
  ExportDestination destination = ExportDestination::kApplication;
  /// The target file, or the attachment's name for mail. Without one the target is a new file of
  /// the temporary folder, as it is for mail.
  std::string name;
};

/// Makes the file and hands it over: opened in its application, left on the disk, or attached to a
/// new mail message. A file of the target's name is replaced once the new one is whole; neither a
/// device or pipe (Error 52) nor the report's own page file (Error 70) is. False when the user
/// stopped. Throws Error for what fails.
bool ExportReport(const ExportOrder& order, Office& office, ExportProgress& progress);

}  // namespace kel
