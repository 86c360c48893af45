// The source of a report, opened.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "data/Connection.h"
#include "data/Recordset.h"
#include "engine/memory_grid.h"
#include "engine/recordset_grid.h"
#include "keldll/job_grid.h"
#include "keldll/report_options.h"

namespace kel::command {

/// Opens what the options name and makes a grid of it, with caption, alignments and titles as they
/// hold for the job: an option wins over the file.
class ReportSource {
 public:
  /// Throws Error naming the file or the SQL text.
  explicit ReportSource(const ReportOptions& options);
  ReportSource(const ReportSource&) = delete;
  ReportSource& operator=(const ReportSource&) = delete;

  GridSource& Grid();
  /// One per column: those of the options, else of the file, else measured.
  std::vector<std::int32_t> Widths();
  const std::vector<std::string>& Titles() const { return titles_; }

 private:
  void OpenGridFile();
  void OpenCsvFile();
  void OpenStatement();
  void StreamRecords();
  void DressGrid(GridSource& grid, const std::string& caption);

  const ReportOptions& options_;
  Connection connection_;
  Recordset records_;
  std::unique_ptr<RecordsetGrid> stream_;
  std::unique_ptr<MemoryGrid> loaded_;
  std::unique_ptr<JobGrid> dressed_;
  std::vector<std::int32_t> file_widths_;  // empty when the file has none
  std::vector<std::string> titles_;
};

}  // namespace kel::command
