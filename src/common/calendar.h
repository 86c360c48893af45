// The calendar day and the time of day that a Date is.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "common/value.h"

namespace kel {

inline constexpr int kFirstYear = 100;
inline constexpr int kLastYear = 9999;
inline constexpr std::chrono::sys_days kDayZero =
    std::chrono::year{1899} / std::chrono::December / 30;

struct Moment {
  std::chrono::sys_days day;
  std::int64_t time = 0;  // since midnight, in the unit asked for
};

/// The moment with its time rounded to the unit of which a day has `units_per_day`; the last half
/// unit of a day belongs to the next one. Before 1899-12-30 the whole days count backwards, but
/// the time of day still counts forwards: -1.25 is 1899-12-29 06:00. Nothing outside the years
/// kFirstYear to kLastYear.
std::optional<Moment> MomentOf(Date date, std::int64_t units_per_day) noexcept;

}  // namespace kel
