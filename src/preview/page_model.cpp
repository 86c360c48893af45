#include "preview/page_model.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "common/control_codes.h"
#include "common/error.h"
#include "common/numeric_value.h"
#include "engine/page_file_reader.h"
#include "preview/page_search.h"

namespace kel {

namespace {

// More than is ever looked at of a line: four bytes for every cell.
constexpr std::size_t kMostLineBytes = 4 * static_cast<std::size_t>(kMostLineCells);
// A page of a report has some 72 lines of 80 to 250 characters; what is more than these is not of
// a report, and is not drawn.
constexpr std::size_t kMostPageLines = 32767;
constexpr std::size_t kMostPageBytes = std::size_t{64} << 20;

bool HasRoom(const PageText& page) {
  return page.lines.size() < kMostPageLines && page.text.size() < kMostPageBytes;
}

PageNumber PageOfLine(LineNumber line, std::int32_t page_length) {
  const LineNumber page = (line - 1) / page_length + 1;
  return static_cast<PageNumber>(
      std::min<LineNumber>(page, std::numeric_limits<PageNumber>::max()));
}

}  // namespace

PageModel::PageModel(ReportSnapshot report)
    : report_(std::move(report)),
      index_(report_.page_file, LinesPerPage(), report_.job.page_offsets) {}

void PageModel::GoPrevious() {
  if (CanGoPrevious()) --current_page_;
}

void PageModel::GoNext() {
  if (CanGoNext()) ++current_page_;
}

bool PageModel::GoToTypedPage(std::string_view typed) {
  const double number = ExVal(typed);
  if (!(number > 0 && number <= PageCount()) || number == current_page_) return false;
  const auto page = static_cast<PageNumber>(std::nearbyint(number));
  if (page < 1) return false;
  current_page_ = page;
  return true;
}

std::string PageModel::PageBoxText() const {
  return std::to_string(current_page_) + "/" + std::to_string(PageCount());
}

void PageModel::LoadPage(bool reset_find, PageText& page) {
  if (reset_find) match_column_ = 0;
  page.Clear();
  RequirePages();
  PageFileReader reader(report_.page_file);
  const LineNumber behind = FirstLineOfPage(current_page_, LinesPerPage()) + LinesPerPage();
  if (index_.GoToPage(reader, current_page_)) {
    std::string_view line;
    while (reader.NextLineNumber() < behind && HasRoom(page)) {
      const bool is_match = match_column_ >= 1 && reader.NextLineNumber() == match_line_;
      if (!reader.NextLineStart(line, kMostLineBytes)) break;
      AppendPageLine(page, line, match_column_, is_match ? match_cells_ : 0);
    }
  }
  if (reset_find) match_line_ = FirstLineOfPage(current_page_, LinesPerPage());
}

bool PageModel::LocatePage(std::string_view text) {
  RequirePages();
  const SearchText searched(text);
  const LineNumber line = std::max<LineNumber>(match_line_, 1);
  PageFileReader reader(report_.page_file);
  std::optional<Match> match;
  if (index_.GoToPage(reader, PageOfLine(line, LinesPerPage()))) {
    match = FindMatch(reader, searched, line, match_column_);
  }
  match_line_ = match ? match->line : 0;
  match_column_ = match ? match->column : 0;
  match_cells_ = match ? match->cells : 0;
  if (match) current_page_ = PageOfLine(match->line, LinesPerPage());
  return match.has_value();
}

void PageModel::RequirePages() const {
  if (LinesPerPage() >= 1) return;
  throw Error(error_number::kInvalidProcedureCall,
              "the lines of a page are not known: prepare the report first");
}

}  // namespace kel
