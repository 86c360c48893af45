#include "engine/report_windows.h"

#include "common/error.h"

namespace kel {
namespace {

class NoWindows : public ReportWindows {
 public:
  std::optional<PageRange> AskPageRange(std::int32_t page_count) override {
    return PageRange{1, page_count};
  }
  void AskStartPage(JobValues& job) override { job.start_page_changed = false; }
  void ShowPreview(const ReportSnapshot& /*report*/, ShowStyle /*style*/) override {
    throw Error(error_number::kInvalidProcedureCall, "there is no screen to show the preview on");
  }
  void ShowSetup() override {
    throw Error(error_number::kInvalidProcedureCall, "there is no screen to show the setup on");
  }
};

}  // namespace

ReportHost& CurrentReportHost() {
  static ReportHost host{std::make_shared<NoWindows>(), nullptr, nullptr};
  return host;
}

}  // namespace kel
