// What the two dialogs of a report job make of what is typed into them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/job_values.h"

namespace kel {

/// Pages of a report page file, counted from 1 at its start. From may be greater than To.
struct PageRange {
  PageNumber from = 1;
  PageNumber to = 1;
  bool operator==(const PageRange&) const = default;
};

/// "Print (Pages-12)".
std::string PageRangeCaption(std::int32_t page_count);

/// The range typed as two texts, read with the tolerant numeric conversion; nothing when From < 1,
/// To > page count, From > page count or To < 1. Fractions are rounded half to even.
std::optional<PageRange> ReadPageRange(std::string_view from, std::string_view to,
                                       std::int32_t page_count);

/// The text of the start-page dialog's box: the first page number, 1 when it is 0.
std::string StartPageText(const JobValues& job);

/// Takes a typed first page number: a number below 10000 that is not 0 becomes the first page
/// number (rounded half to even; as near as 32 bits come), every other makes it 1.
/// start_page_changed tells whether the typed number differed from the one before, which is 0 as
/// long as no report has been prepared.
void TakeStartPage(JobValues& job, std::string_view typed);

}  // namespace kel
