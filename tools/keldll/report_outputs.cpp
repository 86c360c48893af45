#include "keldll/report_outputs.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "common/error.h"
#include "export/code_free_copy.h"
#include "export/export_progress.h"
#include "export/report_files.h"
#include "keldll/standard_streams.h"
#include "platform/posix/xdg_programs.h"

namespace kel::command {
namespace {

// Counts pages, whatever the steps of an export are.
class PageProgress : public ExportProgress {
 public:
  PageProgress(std::int64_t pages, const std::function<void()>& next_page)
      : pages_(std::max<std::int64_t>(pages, 1)), next_page_(next_page) {}

  void Begin(std::int64_t steps) override {
    steps_of_page_ = std::max<std::int64_t>(steps / pages_, 1);
    done_ = 0;
  }
  bool Step(std::int64_t steps) override {
    for (done_ += steps; done_ >= steps_of_page_; done_ -= steps_of_page_) next_page_();
    return true;
  }

 private:
  std::int64_t pages_;
  const std::function<void()>& next_page_;
  std::int64_t steps_of_page_ = 1;
  std::int64_t done_ = 0;  // steps of the page that is being made
};

}  // namespace

void RefuseSource(const std::string& written, const std::string& source) {
  std::error_code unreadable;  // then it is not there yet, or opening it tells what is wrong
  if (!std::filesystem::equivalent(written, source, unreadable) || unreadable) return;
  throw Error(error_number::kPermissionDenied, written + ": the output is the report's own source");
}

ReportOutputs::ReportOutputs(const ReportOptions& options) {
  bool standard_output = false;
  for (const Output& output : options.outputs) {
    if (output.kind != OutputKind::kStandardOutput) {
      RefuseSource(output.path, options.source.name);
      targets_.push_back({output, std::make_unique<OutputFile>(output.path)});
    } else if (!standard_output) {
      targets_.push_back({output, nullptr});
      standard_output = true;
    }
  }
}

void ReportOutputs::Write(const ReportSnapshot& report, const std::function<void()>& next_page) {
  for (const Target& target : targets_) {
    if (target.output.kind == OutputKind::kPageFile) {
      InputFile pages(report.page_file, Links::kRefuse);
      target.file->WriteAll(pages);
    } else if (!IsText(target)) {
      WriteFile(target, report, next_page);
    }
  }
  WriteTexts(report.page_file);
}

void ReportOutputs::WriteFile(const Target& target, const ReportSnapshot& report,
                              const std::function<void()>& next_page) {
  const std::string& path = target.output.path;
  try {
    XdgPrograms programs;
    PageProgress progress(report.job.page_count, next_page);
    WriteReportFile(target.output.format, report, *target.file, &programs, progress);
  } catch (const Error& failure) {
    if (failure.Description().find(path) != std::string::npos) throw;
    throw Error(failure.Number(), "cannot make " + path + ": " + failure.Description());
  }
}

// The text of a report is read once for all who want it.
bool ReportOutputs::IsText(const Target& target) {
  return target.output.kind == OutputKind::kStandardOutput ||
         (target.output.kind == OutputKind::kExport && target.output.format == ExportFormat::kText);
}

void ReportOutputs::WriteTexts(const std::filesystem::path& page_file) {
  if (std::none_of(targets_.begin(), targets_.end(), IsText)) return;
  CopyWithoutCodes(page_file, [&](std::string_view text) {
    for (const Target& target : targets_) {
      if (!IsText(target)) continue;
      if (target.file) {
        target.file->Write(text);
      } else {
        WriteStandardOutput(text);
      }
    }
  });
}

void ReportOutputs::Commit() {
  for (const Target& target : targets_) {
    if (target.file) target.file->Commit();
  }
}

}  // namespace kel::command
