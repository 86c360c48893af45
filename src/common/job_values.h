// The values of the last prepared report that preview, printing and export share.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "common/text_cells.h"

namespace kel {

/// A page number as printed; the first page of a report need not be 1.
using PageNumber = std::int32_t;

/// The first page of a report for which `asked` is given: 1 when that is 0.
constexpr PageNumber FirstPageOf(PageNumber asked) { return asked == 0 ? 1 : asked; }

/// A printed column of a report. One column, its divider or blank, stands behind the other.
struct ReportColumn {
  Cells width = 0;  // above 0
  TextSide side = TextSide::kLeft;
};

/// Values of the last report prepared on this thread.
struct JobValues {
  PageNumber first_page = 0;
  std::int32_t page_count = 0;
  std::int32_t page_width = 0;   // characters: line width and both side margins
  std::int32_t page_length = 0;  // lines of the file per page, margins and page end included
  bool start_page_changed = false;
  /// Byte offset of every page in the report page file; nothing where it is not known.
  std::shared_ptr<const std::vector<std::uint64_t>> page_offsets;
  /// The columns that the lines are made of, behind the left margin; none where they are not known.
  std::vector<ReportColumn> columns;
};

/// The set of the calling thread.
JobValues& CurrentJob();

}  // namespace kel
