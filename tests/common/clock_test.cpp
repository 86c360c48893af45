#include "common/clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <ctime>
#include <string>

namespace kel {
namespace {

TEST(SystemClock, StampIsADateAndTimeInAnyLocaleAndTheProgramsOwnStays) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"C", "C.UTF-8", "xx_XX.NONSENSE"}) {
    ::setenv("LC_ALL", locale, 1);
    std::string shape = SystemClock().Stamp();
    std::replace_if(
        shape.begin(), shape.end(), [](char c) { return c >= '0' && c <= '9'; }, '0');
    EXPECT_EQ(shape, "00/00/00 00:00:00") << locale;
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before) << locale;
  }
  ::unsetenv("LC_ALL");
}

TEST(SystemClock, NowIsTheComputersLocalTime) {
  ::setenv("TZ", "IST-5:30", 1);
  ::tzset();
  const std::time_t before = std::time(nullptr);
  std::tm now = SystemClock().Now();
  const std::time_t told = std::mktime(&now);
  EXPECT_GE(told, before);
  EXPECT_LE(told, std::time(nullptr));
  ::unsetenv("TZ");
}

}  // namespace
}  // namespace kel
