#include "toolkit/screen_placement.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <limits>

#include "common/error.h"

namespace kel {
namespace {

enum class Edge { kFirst, kMiddle, kLast };

Edge HorizontalEdge(AlignObject align) {
  switch (align) {
    case zurAlignLeftTop:
    case zurAlignLeftBottom:
    case zurAlignCenterLeft:
      return Edge::kFirst;
    case zurAlignRightTop:
    case zurAlignRightBottom:
    case zurAlignCenterRight:
      return Edge::kLast;
    default:
      return Edge::kMiddle;
  }
}

Edge VerticalEdge(AlignObject align) {
  switch (align) {
    case zurAlignLeftTop:
    case zurAlignRightTop:
    case zurAlignCenterTop:
      return Edge::kFirst;
    case zurAlignLeftBottom:
    case zurAlignRightBottom:
    case zurAlignCenterBottom:
      return Edge::kLast;
    default:
      return Edge::kMiddle;
  }
}

std::int32_t Placed(std::int32_t first, std::int32_t last, std::int32_t extent, Edge edge) {
  const std::int32_t room = last - first - extent;
  if (room < 0 || edge == Edge::kFirst) return first;
  return edge == Edge::kLast ? last - extent : first + room / 2;
}

double Distance(std::int32_t from, std::int32_t to) { return std::abs(double{1} * to - from); }

std::int32_t Between(std::int32_t from, std::int32_t to, int step, int steps) {
  return static_cast<std::int32_t>(
      std::lround(from + (double{1} * to - from) * step / std::max(steps, 1)));
}

}  // namespace

RECT AlignedRect(const RECT& area, std::int32_t width, std::int32_t height, AlignObject align) {
  const std::int32_t left = Placed(area.Left, area.Right, width, HorizontalEdge(align));
  const std::int32_t top = Placed(area.Top, area.Bottom, height, VerticalEdge(align));
  return {left, top, left + width, top + height};
}

std::int16_t WireSteps(const RECT& from, const RECT& to, double fraction) {
  if (fraction == 0) throw Error(error_number::kDivisionByZero, "Division by zero");
  double most = -std::numeric_limits<double>::infinity();
  for (const double distance : {Distance(from.Left, to.Left), Distance(from.Top, to.Top),
                                Distance(from.Right, to.Right), Distance(from.Bottom, to.Bottom)}) {
    most = std::max(most, std::nearbyint(distance / fraction));
  }
  if (!(std::abs(most) <= std::numeric_limits<std::int16_t>::max())) {
    throw Error(error_number::kOverflow, "Overflow");
  }
  return static_cast<std::int16_t>(most);
}

RECT WireRect(const RECT& from, const RECT& to, int step, int steps) {
  return {Between(from.Left, to.Left, step, steps), Between(from.Top, to.Top, step, steps),
          Between(from.Right, to.Right, step, steps), Between(from.Bottom, to.Bottom, step, steps)};
}

}  // namespace kel
