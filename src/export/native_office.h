// The office where none is automated: files are written by the library itself.
#pragma once

#include <memory>
#include <utility>

#include "export/office.h"

namespace kel {

/// Writes every file itself (report_files.h) and leaves showing and mailing to the programs of the
/// desktop. Without these a file can only be kept, and no .xls file be made.
class NativeOffice : public Office {
 public:
  explicit NativeOffice(std::shared_ptr<DesktopPrograms> programs)
      : programs_(std::move(programs)) {}

  bool MakeFile(ExportFormat format, const ReportSnapshot& report,
                const std::filesystem::path& target, Handover handover,
                ExportProgress& progress) override;
  void SendMail(const std::filesystem::path& file, const AttachmentNames& names) override;

 private:
  DesktopPrograms& Programs() const;

  std::shared_ptr<DesktopPrograms> programs_;  // null where there are none
};

}  // namespace kel
