#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "preview/scroll_ranges.h"
#include "preview/zoom.h"

namespace kel {
namespace {

TEST(ZoomTest, TheSizesSkipThreeInBothDirections) {
  std::vector<double> sizes = {kLeastZoom};
  while (CanZoomIn(sizes.back())) sizes.push_back(ZoomedSize(sizes.back(), true));
  EXPECT_EQ(sizes, (std::vector<double>{2.25, 4.5, 6, 7.5, 9, 10.5, 12, 13.5, 15, 16.5, 18, 19.5,
                                        21, 22.5, 24, 25.5}));
  std::vector<double> back = {sizes.back()};
  while (CanZoomOut(back.back())) back.push_back(ZoomedSize(back.back(), false));
  EXPECT_EQ(back, std::vector<double>(sizes.rbegin(), sizes.rend()));
}

TEST(ZoomTest, SizesOfABestFitComeBackToTheRow) {
  EXPECT_EQ(ZoomedSize(3, true), 4.5);
  EXPECT_EQ(ZoomedSize(3, false), 2.25);
  EXPECT_EQ(ZoomedSize(3.75, false), 2.25);
  EXPECT_EQ(ZoomedSize(0.75, true), 2.25);
  EXPECT_EQ(ZoomedSize(0.75, false), 0.75);  // never below a font
}

TEST(ZoomTest, BestFitTriesFromTheLargestDown) {
  std::vector<double> tried;
  EXPECT_EQ(BestFitSize([&](double size) {
              tried.push_back(size);
              return size <= 8.3;
            }),
            8.25);
  EXPECT_EQ(tried, (std::vector<double>{9.75, 9, 8.25}));
  EXPECT_EQ(BestFitSize([](double) { return true; }), 9.75);
  EXPECT_EQ(BestFitSize([](double) { return false; }), 0.75);
}

TEST(ScrollRangesTest, ThePageFitsWhenItFitsTheWindowWithoutItsToolBar) {
  ViewMetrics view;
  view.inner_width = 200;
  view.inner_height = 100;
  view.bar_width = view.bar_height = 5;
  view.toolbar_height = 10;
  view.view_width = 195;
  view.view_height = 85;
  view.page_width = 194;  // with 1 more just the width without the bar
  view.page_height = 94;
  EXPECT_EQ(VerticalRange(view).maximum, kScrollMinimum);
  EXPECT_EQ(VerticalRange(view).centred_edge, -4.5);  // a tool bar taller than its view
  EXPECT_EQ(HorizontalRange(view).maximum, kScrollMinimum);
  EXPECT_EQ(HorizontalRange(view).centred_edge, 0.5);

  // Half to even.
  view.page_height = 96.5;
  view.page_width = 197.5;
  EXPECT_EQ(VerticalRange(view).maximum, 12);
  EXPECT_EQ(VerticalRange(view).centred_edge, std::nullopt);
  EXPECT_EQ(HorizontalRange(view).maximum, 4);
  view.page_height = 1e300;
  EXPECT_EQ(VerticalRange(view).maximum, std::numeric_limits<std::int32_t>::max());
}

TEST(ScrollRangesTest, AStepOutOfRangeGoesToTheEnd) {
  EXPECT_EQ(Stepped(0, -1, 50), -1);
  EXPECT_EQ(Stepped(3, -10, 50), -1);
  EXPECT_EQ(Stepped(45, 10, 50), 50);
  EXPECT_EQ(Stepped(45, 5, 50), 50);
  EXPECT_EQ(Stepped(-1, 10, -1), -1);
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(Stepped(kMost, kMost, kMost), kMost);
}

TEST(ScrollRangesTest, AMatchIsBroughtToOneUnitAboveItsEdge) {
  EXPECT_EQ(ValueForSelection(7, 50, 20.9), 19);
  EXPECT_EQ(ValueForSelection(7, 50, 0.5), -1);
  EXPECT_EQ(ValueForSelection(7, 50, 50), 50);
  EXPECT_EQ(ValueForSelection(7, 50, 49.9), 48);
  EXPECT_EQ(ValueForSelection(-1, -1, 20), -1);
  EXPECT_EQ(ValueForSelection(-1, 0, 20), -1);
}

}  // namespace
}  // namespace kel
