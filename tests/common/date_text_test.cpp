#include "common/date_text.h"

#include <gtest/gtest.h>

#include "common/error.h"

namespace kel {
namespace {

// The date as ISO text; "-" for none.
std::string Read(std::string_view text, DateOrder order) {
  const auto date = ReadDate(text, order);
  return date ? IsoDateText(*date) : "-";
}

TEST(DateTextTest, DatesAreReadAsPeopleAndProgramsWriteThem) {
  struct Case {
    const char* text;
    const char* day_first;
    const char* month_first;
  };
  for (const Case& c : {
           Case{"31/03/2026", "2026-03-31", "2026-03-31"},
           Case{"03/04/2026", "2026-04-03", "2026-03-04"},
           Case{"3/31/2026", "2026-03-31", "2026-03-31"},
           Case{" 31-3-26 ", "2026-03-31", "2026-03-31"},
           Case{"31.3.2026", "2026-03-31", "2026-03-31"},
           Case{"05/March/2009", "2009-03-05", "2009-03-05"},
           Case{"31-Mar-2026", "2026-03-31", "2026-03-31"},
           Case{"31 mar 29", "2029-03-31", "2029-03-31"},
           Case{"SEPT. 30, 30", "1930-09-30", "1930-09-30"},
           Case{"March 31,2026 2:05:09 PM", "2026-03-31 14:05:09", "2026-03-31 14:05:09"},
           Case{"2026-03-31", "2026-03-31", "2026-03-31"},
           Case{"2026/3/1 12:00 am", "2026-03-01", "2026-03-01"},
           Case{"2024-02-29T23:59:59.9996", "2024-03-01", "2024-03-01"},
           Case{"29/2/2024 00:00:00.007", "2024-02-29 00:00:00.007", "2024-02-29 00:00:00.007"},
           Case{"1899-12-29 06:00", "1899-12-29 06:00:00", "1899-12-29 06:00:00"},
           Case{"1/1/0100", "0100-01-01", "0100-01-01"},
           Case{"9999-12-31", "9999-12-31", "9999-12-31"},
       }) {
    EXPECT_EQ(Read(c.text, DateOrder::kDayFirst), c.day_first) << c.text;
    EXPECT_EQ(Read(c.text, DateOrder::kMonthFirst), c.month_first) << c.text;
  }
  for (const char* text : {"",
                           " ",
                           "31",
                           "31/03",
                           "31/03/",
                           "31/02/2026",
                           "29-02-2026",
                           "13/13/2026",
                           "0/1/2026",
                           "1/1/99",
                           "1/1/0099",
                           "1/1/12026",
                           "31/3-2026",
                           "31 3 2026",
                           "31Mar2026",
                           "1/Ma/2026",
                           "1/Marsh/2026",
                           "Mar/Mar/2026",
                           "2026 31 March x",
                           "31/03/2026 14",
                           "31/03/2026 24:00",
                           "31/03/2026 13:00 PM",
                           "31/03/2026 10:60",
                           "31/03/2026 10:00:00.",
                           "31/03/2026x",
                           "2026-03-31 10:00 pmx",
                           "12345678901234567890/1/1",
                           "1,2,2026",
                           "\xff/1/2026"}) {
    const std::string day_first = Read(text, DateOrder::kDayFirst);
    EXPECT_EQ(day_first, std::string_view(text) == "1/1/99" ? "1999-01-01" : "-") << text;
  }
}

TEST(DateTextTest, IsoTextOfADateReadsBackAsIt) {
  for (const double days : {46112.0, 46112.586909722222, -657434.0, -1.25, 0.5, 2958465.999}) {
    const auto read = ReadDate(IsoDateText(Date{days}), DateOrder::kDayFirst);
    ASSERT_TRUE(read) << days;
    EXPECT_NEAR(read->days, days, 0.5 / 86'400'000);
  }
  for (const double days : {-657435.0, 2958466.0, 2958465.9999999999, 1e300, -1e300}) {
    EXPECT_THROW(IsoDateText(Date{days}), Error) << days;
  }
}

}  // namespace
}  // namespace kel
