// What a `report` command line asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/job_values.h"
#include "export/export_choices.h"
#include "keldll/arguments.h"
#include "keldll/job_settings.h"
#include "keldll/source_options.h"

namespace kel::command {

enum class OutputKind { kStandardOutput, kPageFile, kExport };

struct Output {
  OutputKind kind;
  std::string path;                           // empty for standard output
  ExportFormat format = ExportFormat::kText;  // of kExport
};

struct ReportOptions {
  SourceOptions source;
  std::optional<std::string> caption;
  std::vector<std::string> titles;
  std::optional<std::vector<std::int32_t>> widths;
  std::vector<int> alignments;
  std::optional<Range> rows;
  std::optional<Range> cols;
  PageNumber start_page = 0;
  JobSettings settings;
  std::optional<std::string> stamp;
  std::optional<Range> pages;

  std::vector<Output> outputs;  // empty only where print or preview is all that is asked for
  bool print = false;
  bool preview = false;
};

/// Throws UsageError for a wrong command line.
ReportOptions ReadReportOptions(std::span<const std::string> words);

}  // namespace kel::command
