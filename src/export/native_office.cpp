#include "export/native_office.h"

#include <system_error>

#include "common/error.h"
#include "common/file.h"
#include "common/handover.h"
#include "export/report_files.h"

namespace kel {

bool NativeOffice::MakeFile(ExportFormat format, const ReportSnapshot& report,
                            const std::filesystem::path& target, Handover handover,
                            ExportProgress& progress) {
  if (handover == Handover::kOpen) Programs();
  OutputFile file(target);
  if (!WriteReportFile(format, report, file, programs_.get(), progress)) return false;
  file.Commit();
  if (handover == Handover::kOpen) Programs().Open(target);
  return true;
}

void NativeOffice::SendMail(const std::filesystem::path& file, const AttachmentNames& names) {
  DesktopPrograms& programs = Programs();
  const std::filesystem::path attachment = HandoverPathNamed(names.file);
  std::error_code failure;
  std::filesystem::rename(file, attachment, failure);
  if (failure) {
    throw Error::FromSystem(failure.value(), "cannot attach the file " + attachment.string());
  }
  try {
    programs.ComposeMail(names.subject, attachment);
  } catch (...) {
    std::filesystem::remove_all(attachment.parent_path(), failure);
    throw;
  }
}

DesktopPrograms& NativeOffice::Programs() const {
  if (programs_) return *programs_;
  throw Error(error_number::kCannotCreateObject,
              "this program has no desktop to hand a file over to");
}

}  // namespace kel
