#include "toolkit/screen_placement.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "support/errors.h"

namespace kel {
namespace {

auto Edges(const RECT& rect) { return std::tuple(rect.Left, rect.Top, rect.Right, rect.Bottom); }

TEST(ScreenPlacementTest, EveryMemberStandsWhereItsNameSays) {
  const RECT area{10, 20, 111, 221};  // 101 by 201
  const std::vector<std::tuple<AlignObject, int, int>> places = {
      {zurAlignLeftTop, 10, 20},      {zurAlignLeftBottom, 10, 161},   {zurAlignRightTop, 71, 20},
      {zurAlignRightBottom, 71, 161}, {zurAlignCenterTop, 40, 20},     {zurAlignCenterLeft, 10, 90},
      {zurAlignCenterRight, 71, 90},  {zurAlignCenterBottom, 40, 161}, {zurAlignCenter, 40, 90}};
  for (const auto& [align, left, top] : places) {
    EXPECT_EQ(Edges(AlignedRect(area, 40, 60, align)), std::tuple(left, top, left + 40, top + 60));
  }
  EXPECT_EQ(AlignedRect(area, 500, 60, zurAlignRightTop).Left, 10) << "too wide";
}

TEST(ScreenPlacementTest, WireFramesTakeTheLargestEdgeDistanceInStepsOfTheFraction) {
  const RECT from{0, 0, 100, 50};
  EXPECT_EQ(WireSteps(from, from, 8), 0);
  EXPECT_EQ(WireSteps(from, {-80, 16, 100, 50}, 8), 10);
  EXPECT_EQ(WireSteps(from, {0, 0, 112, 70}, 8), 2) << "2.5 goes to the even 2, 1.5 to 2";
  EXPECT_EQ(WireSteps(from, {0, 0, 100, 58}, 0.5), 16);
  EXPECT_EQ(testing::ErrorOf([&] { WireSteps(from, from, 0); }).Number(), 11);
  EXPECT_EQ(testing::ErrorOf([&] { WireSteps(from, {INT32_MIN, 0, 0, 0}, 8); }).Number(), 6);

  EXPECT_EQ(Edges(WireRect(from, {40, -20, 300, 50}, 1, 4)), std::tuple(10, -5, 150, 50));
  EXPECT_EQ(Edges(WireRect(from, {40, -20, 300, 50}, 4, 4)), std::tuple(40, -20, 300, 50));
}

}  // namespace
}  // namespace kel
