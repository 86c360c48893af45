#include "controls/colors.h"

#include <gtest/gtest.h>

#include "support/errors.h"

namespace kel {
namespace {

TEST(Colors, ChannelsStandInAutomationOrder) {
  EXPECT_EQ(ToQColor(0x00102030, QPalette()), QColor(0x30, 0x20, 0x10));
  EXPECT_EQ(ToOleColor(QColor(0x30, 0x20, 0x10)), 0x00102030U);
  EXPECT_EQ(ToOleColor(QColor::fromHsv(240, 255, 255)), 0x00FF0000U);
}

TEST(Colors, SystemColoursFollowThePalette) {
  const QPalette dark(QColor(0x40, 0x40, 0x40), QColor(0x20, 0x20, 0x20));
  const QPalette light(QColor(0xE0, 0xE0, 0xE0), QColor(0xFF, 0xFF, 0xFF));
  for (const QPalette& palette : {dark, light}) {
    EXPECT_EQ(ToQColor(system_color::kButtonFace, palette), palette.color(QPalette::Button));
    EXPECT_EQ(ToQColor(system_color::kHighlight, palette), palette.color(QPalette::Highlight));
    EXPECT_EQ(ToQColor(system_color::kWindowText, palette), palette.color(QPalette::Text));
    EXPECT_EQ(ToQColor(system_color::kButtonShadow, palette), palette.color(QPalette::Dark));
    EXPECT_EQ(ToQColor(0x80000018, palette), palette.color(QPalette::ToolTipBase));
    EXPECT_EQ(ToQColor(0x800000FF, palette), palette.color(QPalette::WindowText));
  }
}

TEST(Colors, ClientsMayWriteThemSignedOrUnsigned) {
  EXPECT_EQ(ColorOf(-2147483633), system_color::kButtonFace);
  EXPECT_EQ(ColorOf(std::int64_t{2147483663}), system_color::kButtonFace);
  EXPECT_EQ(ColorOf("255"), 255U);
  EXPECT_EQ(ColorValue(system_color::kButtonFace), Value(-2147483633));
  EXPECT_EQ(testing::ErrorOf([] { ColorOf(1e12); }).Number(), error_number::kOverflow);
  EXPECT_EQ(testing::ErrorOf([] { ColorOf("red"); }).Number(), error_number::kTypeMismatch);
}

}  // namespace
}  // namespace kel
