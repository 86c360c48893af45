#include "keldll/report_command.h"

#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "common/clock.h"
#include "common/host.h"
#include "common/settings_store.h"
#include "engine/CPrint.h"
#include "keldll/progress.h"
#include "keldll/report_options.h"
#include "keldll/report_outputs.h"
#include "keldll/report_source.h"
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
  std::string ChoosePages();
  void RequireSuccess(const std::string& what);

  const ReportOptions& options_;
  std::optional<Host> host_before_;  // the job's ports know the job, so they go with it
  std::unique_ptr<CPrint> print_;
};

void ReportJob::Run() {
  ReportOutputs outputs(options_);
  SetUpHost();
  ReportSource source(options_);
  SetUpPrint(source);
  Prepare(source);
  outputs.Write(ChoosePages());
  outputs.Commit();
}

void ReportJob::SetUpHost() {
  InstallQtHost();
  Host& host = CurrentHost();
  host_before_ = host;
  host.desktop = std::make_shared<ProgressDesktop>(
      [this] { return print_ ? std::int64_t{print_->CurrentPage()} : 0; });
  if (options_.stamp) host.clock = std::make_shared<FixedStamp>(*options_.stamp);
  if (const std::optional<std::string> mode = options_.settings.Mode()) {
    auto overlay = std::make_shared<SettingsOverlay>(*host_before_->settings);
    overlay->Override("Setup", "Mode", *mode);
    host.settings = overlay;
  }
  // The command itself says what failed.
  SharedToolkit().OnError([](std::int32_t& /*Number*/, std::string& /*Description*/,
                             bool& Response) { Response = false; });
}

void ReportJob::SetUpPrint(ReportSource& source) {
  print_ = std::make_unique<CPrint>();
  RequireSuccess("cannot begin the report");
  print_->EndPage(std::numeric_limits<PageNumber>::max());
  options_.settings.ApplyTo(*print_);

  const std::vector<std::int32_t> widths = source.Widths();
  print_->ColWidth(Value::Array(widths.begin(), widths.end()));
  const std::vector<std::string>& titles = source.Titles();
  print_->ReportTitle(Value::Array(titles.begin(), titles.end()));
}

void ReportJob::Prepare(ReportSource& source) {
  const Range rows = options_.rows.value_or(Range{0, source.LastRow()});
  const Range cols = options_.cols.value_or(Range{0, source.LastCol()});
  print_->PrepareReport(source.Grid(), rows.first, cols.first, rows.last, cols.last,
                        options_.start_page);
  RequireSuccess("cannot lay out " + options_.source);
}

// The file with the pages that were asked for.
std::string ReportJob::ChoosePages() {
  if (!options_.pages) return print_->GetKelFile();
  const auto [from, to] = *options_.pages;
  if (to > print_->Pages()) {
    throw Error(error_number::kSubscriptOutOfRange,
                "cannot take pages " + std::to_string(from) + "-" + std::to_string(to) + " of " +
                    options_.source + ": the report has " + std::to_string(print_->Pages()) +
                    (print_->Pages() == 1 ? " page" : " pages"));
  }
  print_->CopyPageRange(from, to);
  RequireSuccess("cannot copy pages " + std::to_string(from) + "-" + std::to_string(to));
  return print_->PageRangeFile();
}

void ReportJob::RequireSuccess(const std::string& what) {
  const std::optional<Error>& failure = print_->LastError();
  if (!failure) return;
  // An error of the source itself names it already.
  const bool named = failure->Description().find(options_.source) != std::string::npos;
  throw Error(failure->Number(),
              named ? failure->Description() : what + ": " + failure->Description());
}

}  // namespace

void RunReport(std::span<const std::string> words) {
  const ReportOptions options = ReadReportOptions(words);
  ReportJob(options).Run();
}

}  // namespace kel::command
