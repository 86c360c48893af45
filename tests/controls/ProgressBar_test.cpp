#include "controls/ProgressBar.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <array>
#include <limits>
#include <vector>

namespace kel {
namespace {

QWidget& Pic(const ProgressBar& bar) { return *bar.findChild<QWidget*>("Pic"); }

// At 100 %, whatever the screen's scale.
QImage Look(ProgressBar& bar) {
  QImage image(bar.size(), QImage::Format_RGB32);
  bar.render(&image);
  return image;
}

TEST(ProgressBar, TheValueItselfCountsNotItsDistanceFromMin) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  // Min, Max and the value given, the value stored, and the width of a bar 200 wide.
  const std::vector<std::array<std::int32_t, 5>> steps = {
      {0, 100, 0, 0, 0},      {0, 100, 101, 100, 200},  {0, 100, -1, 0, 0},
      {50, 100, 75, 75, 300}, {50, 100, 10, 50, 200},   {0, 3, 1, 1, 67},
      {0, 3, 2, 2, 133},      {-100, 100, -50, -50, 0}, {0, 1000000, 500000, 500000, 100}};
  for (const auto& [min, max, value, stored, width] : steps) {
    ProgressBar bar;
    bar.resize(200, 16);
    bar.Min(min);
    bar.Max(max);
    bar.Value(value);
    EXPECT_EQ(bar.Value(), stored) << min << ' ' << max << ' ' << value;
    EXPECT_EQ(Pic(bar).geometry(), QRect(0, 0, width, 16)) << min << ' ' << max << ' ' << value;
  }
  EXPECT_NEAR(ProgressBar::BarWidth(kMost, -kMost - 1, kMost, 200), 100, 0.001);
  ProgressBar extreme;
  extreme.resize(200, 16);
  extreme.Max(kMost);
  extreme.Min(kMost - 1);
  extreme.Value(kMost);
  EXPECT_GE(Pic(extreme).width(), 200);
}

TEST(ProgressBar, TheBarFollowsTheControlsSizeAndBorder) {
  ProgressBar bar;
  bar.resize(200, 16);
  bar.Value(50);
  bar.resize(300, 20);
  bar.show();
  EXPECT_EQ(Pic(bar).geometry(), QRect(0, 0, 150, 20));
  bar.BorderStyle(ProgressBar::kFixedSingle);
  bar.Appearance(ProgressBar::kFlat);
  EXPECT_EQ(Pic(bar).geometry(), QRect(1, 1, 149, 18));
}

TEST(ProgressBar, ColoursAndPictureAreSeen) {
  ProgressBar bar;
  bar.resize(200, 16);
  bar.BackColor(0x00FF00);
  bar.ForeColor(0x0000FF);
  bar.Value(50);
  QImage image = Look(bar);
  EXPECT_EQ(image.pixelColor(98, 8), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(102, 8), QColor(Qt::green));

  QPixmap picture(40, 10);
  picture.fill(Qt::blue);
  bar.Picture(picture);
  image = Look(bar);
  EXPECT_EQ(image.pixelColor(98, 8), QColor(Qt::blue));
  bar.AutoSize(true);
  EXPECT_EQ(Pic(bar).size(), QSize(40, 10));
  bar.AutoSize(false);
  EXPECT_EQ(Pic(bar).size(), QSize(100, 16));
}

TEST(ProgressBar, AnUnknownEndRunsToAndFroOnlyWhileItIsSeen) {
  ProgressBar bar;
  bar.resize(200, 16);
  bar.Min(5);
  bar.Max(5);
  bar.Value(7);
  EXPECT_TRUE(bar.IsBusy());
  bar.show();
  const int first = Pic(bar).x();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Pic(bar).x() != first; }));
  EXPECT_TRUE(bar.rect().contains(Pic(bar).geometry()));

  bar.Max(10);
  EXPECT_EQ(Pic(bar).geometry(), QRect(0, 0, 200, 16));  // 5 / (10 - 5)
}

TEST(ProgressBar, ChangesAreToldByTheirPublishedNames) {
  ProgressBar bar;
  const QSignalSpy changes(&bar, &ProgressBar::PropertyChanged);
  bar.Value(40);
  bar.Value(40);
  bar.AutoSize(true);
  bar.Max(30);
  QStringList names;
  for (const auto& change : changes) names << change.at(0).toString();
  EXPECT_EQ(names, QStringList({"Value", "AutoSize", "Max", "Value"}));
}

TEST(ProgressBar, KeptPropertiesComeBackAndMissingOnesAreTheDefaults) {
  using Numbers = std::vector<std::int64_t>;
  const auto properties = [](const ProgressBar& bar) {
    return Numbers{bar.Min(),         bar.Max(),       bar.Value(),     bar.Appearance(),
                   bar.BorderStyle(), bar.BackColor(), bar.ForeColor(), bar.AutoSize()};
  };
  const auto face = std::int64_t{system_color::kButtonFace};
  const auto highlight = std::int64_t{system_color::kHighlight};
  ProgressBar bar;
  bar.Min(10);
  bar.Max(500);
  bar.Value(42);
  bar.Appearance(ProgressBar::kFlat);
  bar.BorderStyle(ProgressBar::kFixedSingle);
  bar.BackColor(0x123456);
  bar.AutoSize(true);
  ProgressBar copy;
  copy.ReadProperties(bar.WriteProperties());
  EXPECT_EQ(properties(copy), (Numbers{10, 500, 42, ProgressBar::kFlat, ProgressBar::kFixedSingle,
                                       0x123456, highlight, 1}));
  copy.ReadProperties({});
  EXPECT_EQ(properties(copy), (Numbers{0, 100, 0, ProgressBar::k3D, 0, face, highlight, 0}));
}

}  // namespace
}  // namespace kel
