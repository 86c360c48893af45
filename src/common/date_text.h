// Dates as people and programs write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "common/value.h"

namespace kel {

/// Which part of 03/04/2026 is the day.
enum class DateOrder { kDayFirst, kMonthFirst };

/// The date that a text states as a whole: 31/03/2026, 31-3-26, 31.3.2026, 31/March/2026,
/// 31-Mar-2026, March 31, 2026, 2026-03-31, each with a time behind it or not (14:05, 2:05:09 PM).
/// When the parts only fit the other order (31/03 month first), that is taken. Two-digit years are
/// 1930 to 2029. Nothing for other texts, days that the calendar does not have and years outside
/// 100 to 9999.
std::optional<Date> ReadDate(std::string_view text, DateOrder order);

/// ISO 8601: "2026-03-31", with " 14:05:09" behind it when there is a time of day, and ".fff" when
/// that has milliseconds. Throws Error 6 outside the years 100 to 9999.
std::string IsoDateText(Date date);

}  // namespace kel
