#include "export/page_reading.h"

#include <span>
#include <string>
#include <string_view>

#include "common/error.h"
#include "common/text_cells.h"

namespace kel {
namespace {

// A page of a report has some 72 lines of 80 to 250 characters; what is more than these is none.
constexpr std::int32_t kMostPageLines = 32767;
constexpr std::size_t kMostPageBytes = std::size_t{64} << 20;
constexpr std::size_t kMostLineBytes = 4 * static_cast<std::size_t>(kMostLineCells);

[[noreturn]] void Refuse(const std::string& why) {
  throw Error(error_number::kInvalidProcedureCall, why);
}

// A line of which a page, or `kMostLineBytes`, may hold only the beginning is refused.
void AppendWhole(PageText& page, std::string_view line) {
  constexpr Cells kWidest = 2;  // of a character
  AppendPageLine(page, line);
  if (line.size() < kMostLineBytes &&
      PaperWidth(page, page.lines.back()) + kGutter + kWidest <= kMostLineCells) {
    return;
  }
  throw Error(error_number::kOverflow, "a line of the report is too long for a page");
}

const std::filesystem::path& FileWithPages(const ReportSnapshot& report) {
  if (report.job.page_count < 1 || report.job.page_length < 1) {
    Refuse("there are no pages: prepare the report first");
  }
  if (report.job.page_length > kMostPageLines) Refuse("a page cannot have so many lines");
  return report.page_file;
}

}  // namespace

ReportPages::ReportPages(const ReportSnapshot& report)
    : report_(report), reader_(FileWithPages(report)) {}

void ReportPages::Read(PageNumber number, PageText& page) {
  page.Clear();
  bool whole = GoTo(number);
  std::string_view line;
  for (std::int32_t i = 0; whole && i < report_.job.page_length; ++i) {
    whole = page.text.size() <= kMostPageBytes && reader_.NextLineStart(line, kMostLineBytes);
    if (whole) AppendWhole(page, line);
  }
  if (whole) return;
  throw Error(error_number::kInvalidFileFormat, report_.page_file.string() +
                                                    " does not hold page " +
                                                    std::to_string(number) + " of the report");
}

bool ReportPages::GoTo(PageNumber number) {
  const JobValues& job = report_.job;
  if (reader_.NextLineNumber() == FirstLineOfPage(number, job.page_length)) return true;
  const std::span<const std::uint64_t> offsets =
      job.page_offsets ? *job.page_offsets : std::span<const std::uint64_t>();
  return reader_.GoToPage(number, job.page_length, offsets);
}

}  // namespace kel
