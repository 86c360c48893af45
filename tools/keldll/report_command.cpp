#include "keldll/report_command.h"

#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "common/clock.h"
#include "common/host.h"
#include "common/settings_store.h"
#include "engine/CPrint.h"
#include "keldll/progress.h"
#include "keldll/report_options.h"
#include "keldll/report_outputs.h"
#include "keldll/report_source.h"
#include "keldll/screen.h"
#include "platform/posix/spooler_port.h"
#include "platform/qt/qt_host.h"
#include "toolkit/CZURDLL.h"

namespace kel::command {
namespace {

class FixedStamp : public SystemClock {
 public:
  explicit FixedStamp(std::string stamp) : stamp_(std::move(stamp)) {}
  std::string Stamp() const override { return stamp_; }

 private:
  std::string stamp_;
};

class ReportJob {
 public:
  explicit ReportJob(const ReportOptions& options) : options_(options) {}
  ~ReportJob() {
    if (host_before_) CurrentHost() = *host_before_;
  }
  ReportJob(const ReportJob&) = delete;
  ReportJob& operator=(const ReportJob&) = delete;

  void Run();

 private:
  void SetUpHost();
  void SetUpPrint(ReportSource& source);
  void Prepare(ReportSource& source);
  ReportSnapshot ChosenPages();
  void Write(const ReportSnapshot& report, ReportOutputs& outputs) const;
  void Print(const ReportSnapshot& report) const;
  void Preview(const ReportSnapshot& report, ReportSource& source) const;
  void RequireSuccess(const CPrint& print, const std::string& what) const;

  const ReportOptions& options_;
  std::optional<Host> host_before_;  // the job's ports know the job, so they go with it
  std::unique_ptr<CPrint> print_;
};

void ReportJob::Run() {
  DropQtWarnings();
  if (options_.preview) RequireScreen("--preview");
  ReportOutputs outputs(options_);
  SetUpHost();
  ReportSource source(options_);
  SetUpPrint(source);
  Prepare(source);
  const ReportSnapshot report = ChosenPages();
  Write(report, outputs);
  if (options_.print) Print(report);
  if (options_.preview) Preview(report, source);
}

void ReportJob::SetUpHost() {
  InstallQtHost();
  // The command ends with the job, so what fails on the way to the printer is told now.
  CurrentReportHost().printer_port =
      std::make_shared<SpoolerPort>(SpoolerPort::Waiting::kUntilSent);
  Host& host = CurrentHost();
  host_before_ = host;
  if (!options_.preview) {
    host.desktop = std::make_shared<ProgressDesktop>(
        [this] { return print_ ? std::int64_t{print_->CurrentPage()} : 0; });
  }
  if (options_.stamp) host.clock = std::make_shared<FixedStamp>(*options_.stamp);
  if (const std::optional<std::string> mode = options_.settings.Mode()) {
    auto overlay = std::make_shared<SettingsOverlay>(*host_before_->settings);
    overlay->Override("Setup", "Mode", *mode);
    host.settings = overlay;
  }
  TellFailuresAtTheEnd();
}

void ReportJob::SetUpPrint(ReportSource& source) {
  print_ = std::make_unique<CPrint>();
  RequireSuccess(*print_, "cannot begin the report");
  print_->EndPage(std::numeric_limits<PageNumber>::max());
  options_.settings.ApplyTo(*print_);

  const std::vector<std::int32_t> widths = source.Widths();
  print_->ColWidth(Value::Array(widths.begin(), widths.end()));
  const std::vector<std::string>& titles = source.Titles();
  print_->ReportTitle(Value::Array(titles.begin(), titles.end()));
}

void ReportJob::Prepare(ReportSource& source) {
  const Range rows = options_.rows.value_or(Range{0, source.Grid().LastRow()});
  const Range cols = options_.cols.value_or(Range{0, source.Grid().LastCol()});
  print_->PrepareReport(source.Grid(), rows.first, cols.first, rows.last, cols.last,
                        options_.start_page);
  RequireSuccess(*print_, "cannot lay out " + options_.source.name);
}

// The report, cut down to the pages that were asked for.
ReportSnapshot ReportJob::ChosenPages() {
  ReportSnapshot report = print_->Snapshot();
  if (!options_.pages) return report;
  const auto [from, to] = *options_.pages;
  const std::string pages = "pages " + std::to_string(from) + "-" + std::to_string(to);
  if (to > report.job.page_count) {
    throw Error(error_number::kSubscriptOutOfRange,
                "cannot take " + pages + " of " + options_.source.name + ": the report has " +
                    std::to_string(report.job.page_count) +
                    (report.job.page_count == 1 ? " page" : " pages"));
  }
  print_->CopyPageRange(from, to);
  RequireSuccess(*print_, "cannot copy " + pages);
  // The page-range file is where the preview puts what the user prints from it.
  std::error_code failure;
  std::filesystem::rename(print_->PageRangeFile(), report.page_file, failure);
  if (failure) throw Error::FromSystem(failure.value(), "cannot keep " + pages);
  report.job.first_page += from - 1;
  report.job.page_count = to - from + 1;
  report.job.page_offsets.reset();
  return report;
}

void ReportJob::Write(const ReportSnapshot& report, ReportOutputs& outputs) const {
  CZURDLL& toolkit = SharedToolkit();
  toolkit.ShowWait();
  outputs.Write(report, [&] { toolkit.StepWait(); });
  toolkit.UnloadWait();
  outputs.Commit();
}

void ReportJob::Print(const ReportSnapshot& report) const {
  RefuseSource(report.settings.port, options_.source.name);
  CPrint print(report);
  print.PrintReport();
  RequireSuccess(print, "cannot print " + options_.source.name);
}

void ReportJob::Preview(const ReportSnapshot& report, ReportSource& source) const {
  TellFailuresInWindows();
  CPrint print(report);
  print.PrintPreview(source.Grid(), {}, {}, {}, {}, static_cast<int>(ShowStyle::kModal));
  RequireSuccess(print, "cannot show " + options_.source.name);
}

void ReportJob::RequireSuccess(const CPrint& print, const std::string& what) const {
  const std::optional<Error>& failure = print.LastError();
  if (!failure) return;
  // An error of the source itself names it already.
  const bool named = failure->Description().find(options_.source.name) != std::string::npos;
  throw Error(failure->Number(),
              named ? failure->Description() : what + ": " + failure->Description());
}

}  // namespace

void RunReport(std::span<const std::string> words) {
  const ReportOptions options = ReadReportOptions(words);
  ReportJob(options).Run();
}

}  // namespace kel::command
