#include "engine/report_job.h"

#include <memory>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/file.h"
#include "common/temp_folder.h"
#include "engine/page_format.h"

namespace kel {
namespace {

bool& Working() {
  thread_local bool working = false;
  return working;
}

}  // namespace

ReportJob::ReportJob() {
  if (Working()) {
    throw Error(error_number::kInvalidProcedureCall,
                "another report is being prepared or printed: wait until that is done");
  }
  Working() = true;
}

ReportJob::~ReportJob() { Working() = false; }

std::filesystem::path ReportPageFile() { return TempFolder() / kPageFileName; }

std::vector<std::string> TitleLines(const Value& report_title) {
  std::vector<std::string> lines;
  if (!report_title.IsArray()) {
    // A single text is one line; the initial empty one is none.
    const std::string line = report_title.ToText();
    if (!line.empty()) lines.push_back(line);
    return lines;
  }
  for (const Value& entry : report_title.ToArray()) lines.push_back(entry.ToText());
  return lines;
}

PageNumber WriteReport(const PrintSettings& settings, Cells line_width, PageNumber first_page,
                       const WritePages& write_pages) {
  OutputFile file(ReportPageFile(), Links::kRefuse);
  PageFileWriter writer(file);
  LaidOutPages pages = write_pages(writer);
  file.Commit();

  JobValues& job = CurrentJob();
  job.first_page = first_page;
  job.page_count = pages.last - first_page + 1;
  job.page_width = line_width + settings.left_margin + settings.right_margin;
  job.page_length = PageLength(settings);
  job.page_offsets = std::make_shared<const std::vector<std::uint64_t>>(writer.TakePageOffsets());
  job.columns = std::move(pages.columns);
  return pages.last;
}

}  // namespace kel
