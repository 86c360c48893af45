// The time of day as a port, so that a report can be made again to the last byte.
#pragma once

#include <ctime>
#include <string>

namespace kel {

class Clock {
 public:
  virtual ~Clock() = default;

  /// The local time now.
  virtual std::tm Now() const = 0;
  /// The time stamp of a report: short date, one blank, time, as the user's locale writes them.
  virtual std::string Stamp() const = 0;
};

/// The computer's clock in the locale that the user's environment names (LC_ALL, LC_TIME, LANG).
class SystemClock : public Clock {
 public:
  std::tm Now() const override;
  std::string Stamp() const override;
};

}  // namespace kel
