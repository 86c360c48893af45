// The windows of a report job, and its printers, as the engine sees them.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "common/job_values.h"
#include "common/value.h"
#include "engine/held_file.h"
#include "engine/page_range_entry.h"
#include "engine/print_settings.h"
#include "engine/printer_port.h"
#include "engine/system_printer.h"

namespace kel {

/// A prepared report. The pages themselves stay in the file.
struct ReportSnapshot {
  std::filesystem::path page_file;
  JobValues job;
  PrintSettings settings;
  Value col_width;
  /// Keeps page_file as it is while later jobs are prepared; null where the file is the job's own.
  std::shared_ptr<const HeldFile> held = nullptr;
};

/// How a window is shown: beside the caller's, or until it is closed. The published values of
/// Style.
enum class ShowStyle : int { kModeless = 0, kModal = 1 };

/// The windows of the report engine. Calls come on the thread of the job. An implementation throws
/// Error when it cannot show a window.
class ReportWindows {
 public:
  virtual ~ReportWindows() = default;

  /// Asks which of `page_count` pages to print (frmPrint); nothing when cancelled.
  virtual std::optional<PageRange> AskPageRange(std::int32_t page_count) = 0;
  /// Asks for the number of the first page (frmStartPage) and puts it, and whether it changed,
  /// into `job`.
  virtual void AskStartPage(JobValues& job) = 0;
  /// Shows a report (frmPV). With a preview already open the report is shown in that window, and
  /// the call returns at once.
  virtual void ShowPreview(const ReportSnapshot& report, ShowStyle style) = 0;
  /// Shows the printer setup (frmSetup) until it is closed.
  virtual void ShowSetup() = 0;
};

/// What the engine reaches its windows and printers through. Change it only while no other thread
/// uses the library.
struct ReportHost {
  /// Without a screen: all pages are printed, the first page number stays, and preview and setup
  /// are refused with Error 5.
  std::shared_ptr<ReportWindows> windows;
  /// Null while the program has none.
  std::shared_ptr<PrinterPort> printer_port;
  std::shared_ptr<SystemPrinter> system_printer;
};

ReportHost& CurrentReportHost();

}  // namespace kel
