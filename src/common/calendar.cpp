#include "common/calendar.h"

#include <cmath>

namespace kel {
namespace {

constexpr double kFirstDay = -657434;   // 1 January of the first year
constexpr double kEndOfDays = 2958466;  // the day after the last year

}  // namespace

std::optional<Moment> MomentOf(Date date, std::int64_t units_per_day) noexcept {
  if (!(date.days > kFirstDay - 1 && date.days < kEndOfDays)) return std::nullopt;
  const double whole = std::trunc(date.days);
  const std::int64_t time =
      std::llround(std::abs(date.days - whole) * static_cast<double>(units_per_day));
  const auto day = static_cast<int>(whole) + static_cast<int>(time / units_per_day);
  if (day >= static_cast<int>(kEndOfDays)) return std::nullopt;
  return Moment{kDayZero + std::chrono::days{day}, time % units_per_day};
}

}  // namespace kel
