#include "engine/page_range_entry.h"

#include <gtest/gtest.h>

#include <tuple>

namespace kel {
namespace {

TEST(PageRangeEntryTest, OnlyPagesOfTheReportAreARange) {
  struct Case {
    const char* from;
    const char* to;
    std::optional<PageRange> expected;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"1", "12", PageRange{1, 12}},
           {" 3 ", "7 pages", PageRange{3, 7}},
           {"9", "2", PageRange{9, 2}},  // the order of the two is nobody's business
           {"2.5", "3.5", PageRange{2, 4}},
           {"0", "3", std::nullopt},
           {"0.9", "3", std::nullopt},
           {"1", "13", std::nullopt},
           {"1", "12.1", std::nullopt},
           {"13", "13", std::nullopt},
           {"13", "12", std::nullopt},
           {"1", "0", std::nullopt},
           {"1", "-3", std::nullopt},
           {"one", "3", std::nullopt},
           {"", "", std::nullopt},
           {"1E999", "1", PageRange{1, 1}}}) {
    EXPECT_EQ(ReadPageRange(c.from, c.to, 12), c.expected) << c.from << ".." << c.to;
  }
  EXPECT_FALSE(ReadPageRange("1", "1", 0));
}

TEST(StartPageTest, ATypedNumberBecomesTheFirstPageOr1) {
  struct Case {
    PageNumber before;
    const char* typed;
    PageNumber after;
    bool changed;
  };
  for (const Case& c : std::initializer_list<Case>{{0, "1", 1, true},
                                                   {7, "7", 7, false},
                                                   {1, "9999", 9999, true},
                                                   {7, "10000", 1, true},
                                                   {1, "0", 1, true},
                                                   {1, "abc", 1, true},
                                                   {1, "-4", -4, true},
                                                   {3, "3.4", 3, true},
                                                   {3, "2.5", 2, true},
                                                   {1, "-9E99", INT32_MIN, true}}) {
    JobValues job;
    job.first_page = c.before;
    job.start_page_changed = !c.changed;
    TakeStartPage(job, c.typed);
    EXPECT_EQ(std::tuple(job.first_page, job.start_page_changed), std::tuple(c.after, c.changed))
        << c.before << " " << c.typed;
  }
  EXPECT_EQ(StartPageText({}), "1");
}

}  // namespace
}  // namespace kel
