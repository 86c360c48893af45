#include "controls/qt_date.h"

#include <cmath>

#include "common/error.h"

namespace kel {
namespace {

constexpr double kMillisecondsPerDay = 86400000;
constexpr double kFirstDay = -657434;   // 1 January of the year 100
constexpr double kEndOfDays = 2958466;  // 1 January of the year 10000

QDate Epoch() { return {1899, 12, 30}; }

}  // namespace

// Before 1899-12-30 the whole days count backwards, but the time of day still counts forwards.
DayAndTime DayAndTimeOf(Date date) {
  if (!(date.days > kFirstDay - 1 && date.days < kEndOfDays)) {
    throw Error(error_number::kOverflow, "Overflow: not a date");
  }
  const double whole = std::trunc(date.days);
  auto days = static_cast<qint64>(whole);
  auto milliseconds = std::llround(std::abs(date.days - whole) * kMillisecondsPerDay);
  if (milliseconds == std::llround(kMillisecondsPerDay)) {
    milliseconds = 0;
    ++days;
  }
  return {Epoch().addDays(days), QTime::fromMSecsSinceStartOfDay(static_cast<int>(milliseconds))};
}

Date DateOf(const DayAndTime& moment) {
  const auto days = static_cast<double>(Epoch().daysTo(moment.day));
  const double time = moment.time.msecsSinceStartOfDay() / kMillisecondsPerDay;
  return {days < 0 ? days - time : days + time};
}

Date DateOf(const QDateTime& moment) { return DateOf(DayAndTime{moment.date(), moment.time()}); }

}  // namespace kel
