// The work on the report page file, which all jobs of a thread share.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "common/job_values.h"
#include "common/text_cells.h"
#include "common/value.h"
#include "engine/page_file_writer.h"
#include "engine/print_settings.h"
#include "engine/report_layout.h"

namespace kel {

/// One job at a time: wait windows let events through, and with them a program's other jobs.
class ReportJob {
 public:
  /// Throws Error 5 while another job of this thread is being prepared or printed.
  ReportJob();
  ~ReportJob();
  ReportJob(const ReportJob&) = delete;
  ReportJob& operator=(const ReportJob&) = delete;
};

/// Full path of the report page file of this thread.
std::filesystem::path ReportPageFile();

/// The lines of a ReportTitle: an array of them, or one; "" is none.
std::vector<std::string> TitleLines(const Value& report_title);

/// Writes pages into a new page file.
using WritePages = std::function<LaidOutPages(PageFileWriter& writer)>;

/// Puts a report in the place of the last one: its page file, once that is whole, and the job
/// values. The result is the number of the last page.
PageNumber WriteReport(const PrintSettings& settings, Cells line_width, PageNumber first_page,
                       const WritePages& write_pages);

}  // namespace kel
