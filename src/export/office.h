// The office programs, as an export sees them.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "engine/report_windows.h"
#include "export/desktop_programs.h"
#include "export/export_choices.h"
#include "export/export_progress.h"

namespace kel {

/// What becomes of a file once it is made.
enum class Handover { kKeep, kOpen };

/// Makes the files that office programs know and hands files over to them. Where a file cannot be
/// made, or the user stops, what stood at `target` before stands there still. Every operation
/// throws Error for what fails.
class Office {
 public:
  virtual ~Office() = default;

  /// Puts the pages of `report` into a new file `target`, and with kOpen shows that to the user.
  /// False when the user stopped.
  virtual bool MakeFile(ExportFormat format, const ReportSnapshot& report,
                        const std::filesystem::path& target, Handover handover,
                        ExportProgress& progress) = 0;

  /// Shows the user a new mail message with `file` attached to it under the names given. The file
  /// may be moved.
  virtual void SendMail(const std::filesystem::path& file, const AttachmentNames& names) = 0;
};

/// Change it only while no other thread uses the library.
struct ExportHost {
  /// A native office without programs while the host has no other.
  std::shared_ptr<Office> office;
};

ExportHost& CurrentExportHost();

}  // namespace kel
