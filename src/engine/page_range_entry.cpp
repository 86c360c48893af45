#include "engine/page_range_entry.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/numeric_value.h"

namespace kel {
namespace {

constexpr double kFirstPageLimit = 10000;

PageNumber AsPageNumber(double number) {
  constexpr double kLeast = std::numeric_limits<PageNumber>::min();
  constexpr double kMost = std::numeric_limits<PageNumber>::max();
  return static_cast<PageNumber>(std::nearbyint(std::clamp(number, kLeast, kMost)));
}

}  // namespace

std::string PageRangeCaption(std::int32_t page_count) {
  return "Print (Pages-" + std::to_string(page_count) + ")";
}

std::optional<PageRange> ReadPageRange(std::string_view from, std::string_view to,
                                       std::int32_t page_count) {
  const double first = ExVal(from);
  const double last = ExVal(to);
  if (first < 1 || last > page_count || first > page_count || last < 1) return std::nullopt;
  return PageRange{AsPageNumber(first), AsPageNumber(last)};
}

std::string StartPageText(const JobValues& job) {
  return std::to_string(FirstPageOf(job.first_page));
}

void TakeStartPage(JobValues& job, std::string_view typed) {
  const double number = ExVal(typed);
  job.start_page_changed = number != job.first_page;
  const bool accepted = number < kFirstPageLimit && number != 0;
  job.first_page = accepted ? AsPageNumber(number) : 1;
}

}  // namespace kel
