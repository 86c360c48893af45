#include "preview/scroll_ranges.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kel {

namespace {

// A bar holds whole numbers: a fraction is rounded half to even, as such an assignment does.
std::int32_t ToBarValue(double units) {
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(
      std::clamp(std::nearbyint(units), double{kScrollMinimum}, kMost));
}

}  // namespace

ScrollRange VerticalRange(const ViewMetrics& view) {
  const double excess = view.page_height + 1 - (view.inner_height - view.bar_height);
  if (excess > 0) return {ToBarValue(excess + view.toolbar_height), std::nullopt};
  return {kScrollMinimum, (view.view_height - view.page_height) / 2};
}

ScrollRange HorizontalRange(const ViewMetrics& view) {
  const double excess = view.page_width + 1 - (view.inner_width - view.bar_width);
  if (excess > 0) return {ToBarValue(excess), std::nullopt};
  return {kScrollMinimum, (view.view_width - view.page_width) / 2};
}

std::int32_t Stepped(std::int32_t value, std::int32_t by, std::int32_t maximum) {
  const std::int64_t stepped = std::int64_t{value} + by;
  const std::int64_t most = std::max(maximum, kScrollMinimum);
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(stepped, kScrollMinimum, most));
}

std::int32_t ValueForSelection(std::int32_t value, std::int32_t maximum, double edge) {
  if (maximum <= edge) return maximum > 0 ? maximum : value;
  return ToBarValue(kScrollMinimum + std::max(std::floor(edge), 0.0));
}

}  // namespace kel
