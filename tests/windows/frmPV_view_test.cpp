// The viewing area: where its parts lie, and how the page moves in it.
#include <algorithm>
#include <cmath>

#include "preview/scroll_ranges.h"
#include "preview/zoom.h"
#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

TEST_F(PreviewTest, ThePageIsAsLargeAsItsCellsAndTwoGuttersAndHasAShadow) {
  Open();
  const QWidget& border = Find("Border");
  for (int step = 0; step < 4; ++step) {
    const QSizeF cell = Pic().Cell();
    EXPECT_NEAR(Pic().width(), 42 * cell.width(), 1);
    EXPECT_NEAR(Pic().height(), 5 * cell.height(), 1);
    EXPECT_EQ(border.size(), Pic().size());
    EXPECT_EQ(border.pos() - Pic().pos(), QPoint(2, 1));
    Click("ZoomIn");
  }
}

TEST_F(PreviewTest, BestFitTakesTheLargestSizeAtWhichThePageFits) {
  const Pages pages = {std::vector<std::string>(66, std::string(132, 'w'))};
  for (const QSize size : {QSize(1280, 720), QSize(900, 300)}) {
    Open(WritePages(folder_ / "wide.rpt", pages, 132), size);
    Click("Best Fit");
    const QSize view = Find("fme").size();
    const QSize larger = Pic().PageSizeAt(Pic().FontSize() + kBestFitStep);
    EXPECT_EQ(Pic().size().boundedTo(view), Pic().size());
    EXPECT_NE(larger.boundedTo(view), larger);
    EXPECT_EQ(std::fmod(kBestFitStart - Pic().FontSize(), kBestFitStep), 0);
  }
}

TEST_F(PreviewTest, TheWindowsPartsLieAsPublished) {
  Open();
  const auto place = [&](const char* name) {
    return QRect(Find(name).mapTo(window_.get(), QPoint()), Find(name).size());
  };
  const auto [toolbar, view] = std::pair(place("tbrPV"), place("fme"));
  const auto [vertical, horizontal] = std::pair(place("VS"), place("HS"));
  EXPECT_EQ(toolbar, QRect(0, 0, 1280, toolbar.height()));
  EXPECT_EQ(view, QRect(0, toolbar.height(), 1280 - vertical.width(),
                        720 - toolbar.height() - horizontal.height()));
  EXPECT_EQ(vertical, QRect(view.right() + 1, view.top(), vertical.width(), view.height()));
  EXPECT_EQ(horizontal, QRect(0, view.bottom() + 1, view.width(), horizontal.height()));
  EXPECT_EQ(place("picAnimate"),
            QRect(vertical.left(), horizontal.top(), vertical.width(), horizontal.height()));
}

TEST_F(PreviewTest, BoldIsHeavierAndUnderlinedHasALine) {
  const char* const line = "\x01plain \x1b\x45plain\x1b\x46 \x1b-1plain\x1b-0";
  Open(WritePages(folder_ / "codes.rpt", {{line}}, 30));
  while (IsEnabled("ZoomIn")) Click("ZoomIn");
  const auto ink = [&](int column) {
    const QImage cells = CellImage(column, 0, 5);
    double dark = 0;
    for (int y = 0; y < cells.height(); ++y) {
      for (int x = 0; x < cells.width(); ++x) dark += 255 - cells.pixelColor(x, y).lightness();
    }
    return dark;
  };
  EXPECT_GT(ink(7), 1.1 * ink(1));
  EXPECT_GT(ink(13), 1.1 * ink(1));
}

// A page that is larger than the window both ways.
class LargePageTest : public PreviewTest {
 protected:
  void SetUp() override {
    PreviewTest::SetUp();
    Pages pages(2, std::vector<std::string>(120, std::string(300, 'x')));
    pages[0][60] = std::string(250, ' ') + "Needle";
    report_ = WritePages(folder_ / "large.rpt", pages, 300);
    Open();
  }
};

TEST_F(LargePageTest, BarsRunAsFarAsThePageReachesOverTheWindow) {
  const double excess_down = (Pic().height() - 720 + HS().height()) / kPixelsPerUnit + 1;
  const double toolbar = Find("tbrPV").height() / kPixelsPerUnit;
  EXPECT_EQ(VS().minimum(), -1);
  EXPECT_NEAR(VS().maximum(), excess_down + toolbar, 1);
  const double excess_across = (Pic().width() - 1280 + VS().width()) / kPixelsPerUnit + 1;
  EXPECT_EQ(HS().minimum(), -1);
  EXPECT_NEAR(HS().maximum(), excess_across, 1);
  // The last line can be seen.
  Press(Qt::Key_End);
  EXPECT_LE(Pic().geometry().bottom(), Find("fme").height());
}

TEST_F(LargePageTest, KeysMoveThePage) {
  const int view = VS().pageStep();
  EXPECT_NEAR(view * kPixelsPerUnit, Find("fme").height(), kPixelsPerUnit);
  const std::vector<std::pair<Qt::Key, int>> keys = {{Qt::Key_Down, 0},
                                                     {Qt::Key_PageDown, view},
                                                     {Qt::Key_Up, view - 1},
                                                     {Qt::Key_End, VS().maximum()},
                                                     {Qt::Key_Down, VS().maximum()},
                                                     {Qt::Key_Home, -1},
                                                     {Qt::Key_PageUp, -1}};
  for (const auto& [key, value] : keys) {
    Press(key);
    EXPECT_EQ(VS().value(), value) << key;
    EXPECT_NEAR(Pic().y(), -value * kPixelsPerUnit, 1) << key;
  }
  Press(Qt::Key_Right);
  EXPECT_EQ(HS().value(), std::min(HS().pageStep() - 1, HS().maximum()));
  EXPECT_NEAR(Pic().x(), -HS().value() * kPixelsPerUnit, 1);
  Press(Qt::Key_Left);
  EXPECT_EQ(HS().value(), -1);
  EXPECT_EQ(Find("Border").pos() - Pic().pos(), QPoint(2, 1));
}

TEST_F(LargePageTest, KeysMoveThePageAlsoWhileABoxOrAButtonHasTheFocus) {
  Type(FindBox(), "xy");
  Press(Qt::Key_Home);
  Press(Qt::Key_Right);
  EXPECT_EQ(FindBox().cursorPosition(), 1);
  EXPECT_EQ(HS().value(), std::min(HS().pageStep() - 1, HS().maximum()));
  Press(Qt::Key_End);
  EXPECT_EQ(FindBox().cursorPosition(), 2);
  EXPECT_EQ(VS().value(), VS().maximum());
  Press(Qt::Key_PageUp);
  EXPECT_EQ(VS().value(), VS().maximum() - VS().pageStep());

  HS().setValue(-1);
  Find("Print").setFocus();
  Press(Qt::Key_Right);
  EXPECT_GT(HS().value(), 0);
  EXPECT_EQ(QApplication::focusWidget(), &Find("Print"));
}

TEST_F(LargePageTest, TheWheelScrollsAndTheMouseDrags) {
  const QPoint middle(400, 300);
  QWidget& view = Find("fme");
  TurnWheel(Pic(), {0, -120});
  const double moved = (VS().value() + 1) * kPixelsPerUnit;
  EXPECT_NEAR(moved, QApplication::wheelScrollLines() * Pic().Cell().height(),
              Pic().Cell().height());
  const QPoint before = Pic().pos();
  QTest::mousePress(&view, Qt::LeftButton, {}, middle);
  QTest::mouseMove(&view, middle - QPoint(200, 100));
  QTest::mouseRelease(&view, Qt::LeftButton, {}, middle - QPoint(200, 100));
  EXPECT_NEAR(Pic().x(), before.x() - 200, kPixelsPerUnit);
  EXPECT_NEAR(Pic().y(), before.y() - 100, kPixelsPerUnit);
}

TEST_F(LargePageTest, AMatchIsScrolledIntoViewAndIfTooFarRightToBeDrawnToTheEnd) {
  SearchFor("needle");
  const QSizeF cell = Pic().Cell();
  const QRectF match(251 * cell.width(), 60 * cell.height(), 6 * cell.width(), cell.height());
  EXPECT_TRUE(Find("fme").rect().contains(match.toAlignedRect().translated(Pic().pos())));

  Pages pages(1, std::vector<std::string>(120, "x"));
  pages[0][110] = std::string(40000, 'x') + "Needle";
  window_->ShowReport(WritePages(report_.page_file, pages, 300));
  SearchFor("needle");
  EXPECT_GT(VS().value(), 0);
  EXPECT_EQ(HS().value(), HS().maximum());
}

TEST_F(LargePageTest, APageZoomedSmallIsCentredAndItsBarsAreFixed) {
  Press(Qt::Key_End);
  while (IsEnabled("ZoomOut")) Click("ZoomOut");
  for (const auto key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_PageDown, Qt::Key_End}) Press(key);
  for (const QScrollBar* bar : {&VS(), &HS()}) EXPECT_EQ(bar->minimum() + bar->maximum(), -2);
  EXPECT_NEAR(Pic().x(), (Find("fme").width() - Pic().width()) / 2.0, 1);
  EXPECT_NEAR(Pic().y(), (Find("fme").height() - Pic().height()) / 2.0, 1);
  for (int i = 0; i < 3; ++i) Click("ZoomIn");
  ASSERT_GT(VS().maximum(), 0);
  EXPECT_NEAR(Pic().y(), -VS().value() * kPixelsPerUnit, 1);
}

}  // namespace
}  // namespace kel::testing
