#include "common/clock.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <string>

namespace kel {
namespace {

// A time stamp with 0 for every digit.
std::string ShapeOf(std::string stamp) {
  for (char& c : stamp) {
    if (c >= '0' && c <= '9') c = '0';
  }
  return stamp;
}

class SystemClockTest : public testing::Test {
 protected:
  void TearDown() override { ::unsetenv("LC_ALL"); }
};

TEST_F(SystemClockTest, StampIsTheDateAndTimeOfTheLocale) {
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(ShapeOf(SystemClock().Stamp()), "00/00/00 00:00:00");
}

TEST_F(SystemClockTest, AnUnknownLocaleStillGivesAStamp) {
  ::setenv("LC_ALL", "xx_XX.NONSENSE", 1);
  EXPECT_EQ(ShapeOf(SystemClock().Stamp()), "00/00/00 00:00:00");
}

TEST_F(SystemClockTest, TheProgramsOwnLocaleStaysAsItIs) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  ::setenv("LC_ALL", "C.UTF-8", 1);
  SystemClock().Stamp();
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

TEST_F(SystemClockTest, NowIsTheComputersLocalTime) {
  const std::time_t before = std::time(nullptr);
  std::tm now = SystemClock().Now();
  const std::time_t told = std::mktime(&now);
  EXPECT_GE(told, before);
  EXPECT_LE(told, std::time(nullptr));
}

}  // namespace
}  // namespace kel
