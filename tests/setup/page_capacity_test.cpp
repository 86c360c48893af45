#include "setup/page_capacity.h"

#include <gtest/gtest.h>

namespace kel {
namespace {

TEST(PageCapacityTest, WholeCellsOfTheCharacterSetAreCountedAfterTheAllowances) {
  struct Case {
    const char* height;
    double width;
    const char* set;
    PageCapacity capacity;
  };
  for (const Case& page :
       {Case{"12", 8.5, "10 cpi", {71, 80}}, Case{"11", 8.5, "12 cpi", {65, 96}},
        Case{"12", 15, "17 cpi", {71, 246}},
        Case{"12", 8.3, "10 cpi", {71, 78}},  // 7.8 inches are no binary number
        Case{"", 8.5, "Draft", {71, 80}}, Case{"0 inches", 0.5, "0 cpi", {71, 0}},
        Case{"0.1", 0.2, "10 cpi", {0, 0}}, Case{"-3", -1e300, "10 cpi", {0, 0}},
        Case{"1e300", 1e300, "1e300 cpi", {32767, 32767}},
        Case{"12", 8.5, "1e-300 cpi", {71, 8}}}) {
    EXPECT_EQ(CapacityOf(PageHeightOf(page.height), page.width, TextModeCell(page.set)),
              page.capacity)
        << page.height << " " << page.width << " " << page.set;
  }
  EXPECT_EQ(CapacityOf(12, 8.5, {120, 227}), (PageCapacity{75, 96}));
  EXPECT_EQ(LinesText({71, 80}), "Total Number Of Lines Supported : 71");
  EXPECT_EQ(ColumnsText({71, 80}), "Total Number Of Columns Supported : 80 (char.)");
}

}  // namespace
}  // namespace kel
