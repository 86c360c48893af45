// How far the page can be moved under the viewing area. One unit is a millimetre at 100 %.
#pragma once

#include <cstdint>
#include <optional>

namespace kel {

inline constexpr double kPixelsPerUnit = 96 / 25.4;

/// The drop shadow stands this far right of and below the page.
inline constexpr double kShadowRight = 0.4;
inline constexpr double kShadowDown = 0.3;

/// What the ranges are computed from, in units.
struct ViewMetrics {
  double inner_width = 0;  // of the window
  double inner_height = 0;
  double bar_width = 0;   // of the vertical bar
  double bar_height = 0;  // of the horizontal bar
  double toolbar_height = 0;
  double view_width = 0;  // of the viewing area
  double view_height = 0;
  double page_width = 0;
  double page_height = 0;
};

inline constexpr std::int32_t kScrollMinimum = -1;

/// Range of one scroll bar. With a fitting page it is fixed at -1 and the page's edge is given.
struct ScrollRange {
  std::int32_t maximum = kScrollMinimum;
  std::optional<double> centred_edge;  // top or left of the page
};

/// A page up to one tool bar taller than the viewing area counts as fitting and is centred with a
/// negative top: the fit is measured against the window without its tool bar.
ScrollRange VerticalRange(const ViewMetrics& view);
ScrollRange HorizontalRange(const ViewMetrics& view);

/// The value after a step of `by`; a value out of range becomes the end that it passed.
std::int32_t Stepped(std::int32_t value, std::int32_t by, std::int32_t maximum);

/// The bar's value that brings a match into view whose edge is `edge` units from the page's own
/// (MoveToSelection): the maximum when that is not greater than `edge`, else one less than the
/// whole units of `edge`. `value`, as it is, when the bar has no range.
std::int32_t ValueForSelection(std::int32_t value, std::int32_t maximum, double edge);

}  // namespace kel
