#include "keldll/report_outputs.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "common/error.h"
#include "export/code_free_copy.h"
#include "export/pdf_report.h"
#include "keldll/standard_streams.h"

namespace kel::command {

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
      targets_.push_back({output.kind, output.path, std::make_unique<OutputFile>(output.path)});
    } else if (!standard_output) {
      targets_.push_back({output.kind, output.path, nullptr});
      standard_output = true;
    }
  }
}

void ReportOutputs::Write(const ReportSnapshot& report, const std::function<void()>& next_page) {
  for (const Target& target : targets_) {
    if (target.kind == OutputKind::kPageFile) {
      InputFile pages(report.page_file, Links::kRefuse);
      target.file->WriteAll(pages);
    } else if (target.kind == OutputKind::kPdf) {
      WritePdf(target, report, next_page);
    }
  }
  WriteTexts(report.page_file);
}

void ReportOutputs::WritePdf(const Target& target, const ReportSnapshot& report,
                             const std::function<void()>& next_page) {
  try {
    WritePdfReport(report, *target.file, [&] {
      next_page();
      return true;
    });
  } catch (const Error& failure) {
    if (failure.Description().find(target.path) != std::string::npos) throw;
    throw Error(failure.Number(), "cannot make " + target.path + ": " + failure.Description());
  }
}

void ReportOutputs::WriteTexts(const std::filesystem::path& page_file) {
  const auto is_text = [](const Target& target) {
    return target.kind == OutputKind::kText || target.kind == OutputKind::kStandardOutput;
  };
  if (std::none_of(targets_.begin(), targets_.end(), is_text)) return;
  CopyWithoutCodes(page_file, [&](std::string_view text) {
    for (const Target& target : targets_) {
      if (target.kind == OutputKind::kText) target.file->Write(text);
      if (target.kind == OutputKind::kStandardOutput) WriteStandardOutput(text);
    }
  });
}

void ReportOutputs::Commit() {
  for (const Target& target : targets_) {
    if (target.file) target.file->Commit();
  }
}

}  // namespace kel::command
