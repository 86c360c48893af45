#include "common/clock.h"

#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <array>
#include <clocale>

namespace kel {
namespace {

constexpr const char* kDateAndTime = "%x %X";
constexpr std::size_t kStampCapacity = 256;

// The user's way of writing dates, without touching the locale of the host program.
class TimeLocale {
 public:
  TimeLocale() : locale_(::newlocale(LC_TIME_MASK, "", nullptr)) {
    if (locale_ == nullptr) locale_ = ::newlocale(LC_TIME_MASK, "C", nullptr);
  }
  ~TimeLocale() {
    if (locale_ != nullptr) ::freelocale(locale_);
  }
  TimeLocale(const TimeLocale&) = delete;
  TimeLocale& operator=(const TimeLocale&) = delete;

  locale_t Get() const { return locale_; }

 private:
  locale_t locale_;
};

}  // namespace

std::tm SystemClock::Now() const {
  const std::time_t seconds = std::time(nullptr);
  std::tm now{};
  ::localtime_r(&seconds, &now);
  return now;
}

std::string SystemClock::Stamp() const {
  const TimeLocale locale;
  const std::tm now = Now();
  std::array<char, kStampCapacity> stamp{};
  const std::size_t length =
      ::strftime_l(stamp.data(), stamp.size(), kDateAndTime, &now, locale.Get());
  return {stamp.data(), length};
}

}  // namespace kel
