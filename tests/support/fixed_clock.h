// A clock that stands still.
#pragma once

#include <array>
#include <string>

#include "common/clock.h"

namespace kel::testing {

/// At 05:09 past an hour of a day in 2026; the stamp of a report is "15/11/2026 02:05:09 PM".
class FixedClock : public Clock {
 public:
  explicit FixedClock(int day = 15, int month = 11, int hour = 14) {
    now_.tm_mday = day;
    now_.tm_mon = month - 1;
    now_.tm_year = 2026 - 1900;
    now_.tm_hour = hour;
    now_.tm_min = 5;
    now_.tm_sec = 9;
  }

  std::tm Now() const override { return now_; }
  std::string Stamp() const override {
    std::array<char, 32> stamp{};
    std::strftime(stamp.data(), stamp.size(), "%d/%m/%Y %I:%M:%S %p", &now_);
    return stamp.data();
  }

 private:
  std::tm now_{};
};

}  // namespace kel::testing
