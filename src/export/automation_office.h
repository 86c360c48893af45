// The office by automation: word processor, spreadsheet and mail program reached by member names.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "common/object.h"
#include "export/office.h"

namespace kel {

/// How an automated office reaches programs. Every operation throws Error for what fails.
class OfficePrograms {
 public:
  virtual ~OfficePrograms() = default;

  /// A new object of a programmatic identifier ("Word.Application"). Throws Error 429 where no such
  /// program is installed.
  virtual std::shared_ptr<Object> CreateObject(std::string_view program) = 0;
  /// Starts a command in a window of that style (Shell).
  virtual void Shell(const std::string& command, int window_style) = 0;
  /// Opens a file in the program for its kind.
  virtual void Open(const std::filesystem::path& file) = 0;
};

/// Documents are made by "Word.Application", .xls files by "Excel.Application", mail by
/// "Outlook.Application", in the published order of calls. The other formats are written by the
/// library itself. A word processor or spreadsheet that was not handed to the user is quit on every
/// way out; the mail program never is, as it may be the one that the user has open.
class AutomationOffice : public Office {
 public:
  explicit AutomationOffice(std::shared_ptr<OfficePrograms> programs)
      : programs_(std::move(programs)) {}

  bool MakeFile(ExportFormat format, const ReportSnapshot& report,
                const std::filesystem::path& target, Handover handover,
                ExportProgress& progress) override;
  void SendMail(const std::filesystem::path& file, const AttachmentNames& names) override;

 private:
  bool MakeDocument(const ReportSnapshot& report, const std::filesystem::path& target,
                    Handover handover, ExportProgress& progress);
  bool MakeSheet(const ReportSnapshot& report, const std::filesystem::path& target,
                 Handover handover, ExportProgress& progress);

  std::shared_ptr<OfficePrograms> programs_;
};

}  // namespace kel
