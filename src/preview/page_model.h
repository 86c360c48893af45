// The preview without its window: which page is on show, what is on it, where the search stands.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/page_format.h"
#include "engine/page_line.h"
#include "engine/report_windows.h"
#include "preview/page_index.h"

namespace kel {

/// A report on show. It holds the lines of one page; every operation opens the page file anew and
/// closes it again.
///
///     PageModel model(snapshot);
///     PageText page;
///     model.LoadPage(true, page);
///     if (model.LocatePage("Cash")) model.LoadPage(false, page);
class PageModel {
 public:
  explicit PageModel(ReportSnapshot report);

  const ReportSnapshot& Report() const { return report_; }
  std::int32_t PageCount() const { return report_.job.page_count; }
  std::int32_t LinesPerPage() const { return report_.job.page_length; }
  Cells PageWidth() const { return report_.job.page_width; }

  PageNumber CurrentPage() const { return current_page_; }
  bool CanGoPrevious() const { return current_page_ > 1; }
  bool CanGoNext() const { return current_page_ < PageCount(); }
  void GoPrevious();
  void GoNext();
  /// Takes a page number typed by the user, read with the tolerant numeric conversion and rounded
  /// half to even. False, with nothing changed, when it is no number of another page.
  bool GoToTypedPage(std::string_view typed);
  /// "3/12".
  std::string PageBoxText() const;

  /// True when the current page can only be found by reading a long way through the file.
  bool IsFarAway() const { return index_.PagesToScan(current_page_) > kFarAway; }

  /// Reads the current page into `page`. With `reset_find` the next search starts at the top of
  /// this page; without, the match on show stays. Throws Error when the file cannot be read; `page`
  /// then holds what was read before.
  void LoadPage(bool reset_find, PageText& page);

  /// Looks for the next match of `text` and makes its page current. False when there is none, as
  /// for the empty text: the next search then starts at the top of the report. Throws Error, with
  /// nothing changed, when the file cannot be read.
  bool LocatePage(std::string_view text);

  /// File line of the last match found, and where the next search starts; 0 for the top.
  LineNumber MatchLine() const { return match_line_; }
  /// Column of the last match in its line, from 1; 0 when no match is on show.
  Cells MatchColumn() const { return match_column_; }
  /// The match's line on its page, from 0. REQUIRES that a match is on show.
  std::int32_t MatchLineOfPage() const {
    return static_cast<std::int32_t>((match_line_ - 1) % LinesPerPage());
  }

 private:
  void RequirePages() const;

  static constexpr PageNumber kFarAway = 1000;

  ReportSnapshot report_;
  PageIndex index_;
  PageNumber current_page_ = 1;
  LineNumber match_line_ = 0;
  Cells match_column_ = 0;
  Cells match_cells_ = 0;
};

}  // namespace kel
