// Lines made into pages: margins, page line, repeated headings, rules and feet.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/grid_source.h"
#include "engine/page_file_writer.h"
#include "engine/print_settings.h"

namespace kel {

/// The texts of a report that are not cells.
struct ReportTexts {
  std::vector<std::string> titles;
  std::string stamp;
};

/// Puts body lines into the frame of pages that are all equally long. After the last page allowed
/// it writes nothing more.
class PageFrame {
 public:
  /// Grid (for the caption), settings and writer must outlive it. The titles are printed when the
  /// first page is page 1.
  PageFrame(GridSource& grid, const PrintSettings& settings, Cells line_width,
            const ReportTexts& texts, PageNumber first_page, PageFileWriter& writer);

  /// Whether a page can hold its frame, `headings` heading lines, the titles beyond the top margin
  /// and one body line.
  bool HasRoomFor(std::size_t headings) const { return settings_.lines >= LeastLines(headings); }
  /// Throws Error 5, naming the least `Lines` that would do, when it cannot.
  void RequireRoomFor(std::size_t headings) const;

  /// Writes the titles and the top of the first page. REQUIRES HasRoomFor(0).
  void Open();
  /// The lines that all later pages repeat under their page line.
  void SetHeadings(std::vector<std::string> headings) { headings_ = std::move(headings); }
  /// Writes a body line; a full page is closed and the next one begun.
  void WriteBody(std::string_view line);
  void WriteRule();
  /// Fills the last page up and writes its foot.
  void Close();

  /// True once the last page allowed is complete.
  bool IsComplete() const { return complete_; }
  PageNumber CurrentPage() const { return current_page_; }

 private:
  void PageStep();
  void WriteTop();
  std::int32_t SurplusTitles() const;
  std::int64_t LeastLines(std::size_t headings) const;
  void WritePageLine();
  void WriteFoot(std::string_view word);
  void WriteRuleLine();
  void WriteBottomMargin();

  GridSource& grid_;
  const PrintSettings& settings_;
  Cells line_width_;
  std::string margin_;
  std::string rule_;
  std::string stamp_;
  std::vector<std::string> titles_;
  PageFileWriter& writer_;
  std::vector<std::string> headings_;

  PageNumber first_page_;
  PageNumber current_page_;
  std::int32_t counter_ = 0;  // one more than the lines since the top margin, once it is written
  bool last_line_was_rule_ = false;
  bool complete_ = false;
  std::string line_;
};

}  // namespace kel
