// A clock that stands still.
#pragma once

#include <string>

#include "common/clock.h"

namespace kel::testing {

class FixedClock : public Clock {
 public:
  FixedClock(int day, int month, int year, int hour, int minute, int second) {
    now_.tm_mday = day;
    now_.tm_mon = month - 1;
    now_.tm_year = year - 1900;
    now_.tm_hour = hour;
    now_.tm_min = minute;
    now_.tm_sec = second;
  }

  std::tm Now() const override { return now_; }
  std::string Stamp() const override { return "stamp"; }

 private:
  std::tm now_{};
};

}  // namespace kel::testing
