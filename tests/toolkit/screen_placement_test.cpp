#include "toolkit/screen_placement.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/errors.h"

namespace kel {
namespace {

auto Edges(const RECT& rect) { return std::tuple(rect.Left, rect.Top, rect.Right, rect.Bottom); }

TEST(ScreenPlacementTest, EveryMemberStandsWhereItsNameSays) {
  const RECT area{10, 20, 111, 221};  // 101 by 201
  const auto corner = [&](AlignObject align) {
    const RECT placed = AlignedRect(area, 40, 60, align);
    EXPECT_EQ(std::tuple(placed.Right - placed.Left, placed.Bottom - placed.Top),
              std::tuple(40, 60));
    return std::tuple(placed.Left, placed.Top);
  };
  constexpr int kLeft = 10;
  constexpr int kMiddle = 40;
  constexpr int kRight = 71;
  constexpr int kTop = 20;
  constexpr int kCentre = 90;
  constexpr int kBottom = 161;
  EXPECT_EQ(corner(zurAlignLeftTop), std::tuple(kLeft, kTop));
  EXPECT_EQ(corner(zurAlignLeftBottom), std::tuple(kLeft, kBottom));
  EXPECT_EQ(corner(zurAlignRightTop), std::tuple(kRight, kTop));
  EXPECT_EQ(corner(zurAlignRightBottom), std::tuple(kRight, kBottom));
  EXPECT_EQ(corner(zurAlignCenterTop), std::tuple(kMiddle, kTop));
  EXPECT_EQ(corner(zurAlignCenterLeft), std::tuple(kLeft, kCentre));
  EXPECT_EQ(corner(zurAlignCenterRight), std::tuple(kRight, kCentre));
  EXPECT_EQ(corner(zurAlignCenterBottom), std::tuple(kMiddle, kBottom));
  EXPECT_EQ(corner(zurAlignCenter), std::tuple(kMiddle, kCentre));
  EXPECT_EQ(AlignedRect(area, 500, 60, zurAlignRightTop).Left, kLeft) << "too wide";
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
