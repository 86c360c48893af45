// Automation's dates and Qt's.
#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>

#include "common/value.h"

namespace kel {

/// The day and the time of day, without a time zone: the clock on the wall in both.
struct DayAndTime {
  QDate day;
  QTime time;
  bool operator==(const DayAndTime&) const = default;
};

/// To the millisecond. Throws Error 6 outside the years 100 to 9999.
DayAndTime DayAndTimeOf(Date date);

/// REQUIRES a valid day.
Date DateOf(const DayAndTime& moment);
Date DateOf(const QDateTime& moment);

}  // namespace kel
