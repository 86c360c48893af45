#include "keldll/report_outputs.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "common/error.h"
#include "export/code_free_copy.h"
#include "keldll/standard_streams.h"

namespace kel::command {
namespace {

void RefuseSource(const Output& output, const std::string& source) {
  std::error_code unreadable;  // then it is not there yet, or opening it tells what is wrong
  if (!std::filesystem::equivalent(output.path, source, unreadable) || unreadable) return;
  throw Error(error_number::kPermissionDenied,
              output.path + ": the output is the report's own source");
}

}  // namespace

ReportOutputs::ReportOutputs(const ReportOptions& options) {
  bool standard_output = false;
  for (const Output& output : options.outputs) {
    if (output.kind != OutputKind::kStandardOutput) {
      RefuseSource(output, options.source);
      targets_.push_back({output.kind, std::make_unique<OutputFile>(output.path)});
    } else if (!standard_output) {
      targets_.push_back({output.kind, nullptr});
      standard_output = true;
    }
  }
}

void ReportOutputs::Write(const std::filesystem::path& page_file) {
  for (const Target& target : targets_) {
    if (target.kind != OutputKind::kPageFile) continue;
    InputFile pages(page_file, Links::kRefuse);
    target.file->WriteAll(pages);
  }
  WriteTexts(page_file);
}

void ReportOutputs::WriteTexts(const std::filesystem::path& page_file) {
  const auto is_text = [](const Target& target) { return target.kind != OutputKind::kPageFile; };
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
