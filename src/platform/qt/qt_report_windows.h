// The windows of report jobs on a Qt screen.
#pragma once

#include <memory>

#include "engine/report_windows.h"

namespace kel {

class frmPV;

/// One preview is open at a time; a modeless one closes when the application's event loop ends.
/// Every call throws Error 5 where no window can be shown (CanShowWindows).
class QtReportWindows : public ReportWindows {
 public:
  QtReportWindows();
  ~QtReportWindows() override;
  QtReportWindows(const QtReportWindows&) = delete;
  QtReportWindows& operator=(const QtReportWindows&) = delete;

  std::optional<PageRange> AskPageRange(std::int32_t page_count) override;
  void AskStartPage(JobValues& job) override;
  void ShowPreview(const ReportSnapshot& report, ShowStyle style) override;
  void ShowSetup() override;

 private:
  void BringForward();
  void OpenBeside();
  void OpenUntilClosed();

  std::unique_ptr<frmPV> preview_;  // null while none is open
};

}  // namespace kel
