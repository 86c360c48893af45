// The viewing area: where its parts lie, and how the page moves in it.
#include <algorithm>
#include <cmath>

#include "preview/scroll_ranges.h"
#include "preview/zoom.h"
#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

TEST_F(PreviewTest, ThePageIsAsLargeAsItsCellsAndTwoGutters) {
  Open();
  for (int step = 0; step < 4; ++step) {
    const QSizeF cell = Pic().Cell();
    EXPECT_NEAR(Pic().width(), 42 * cell.width(), 1);
    EXPECT_NEAR(Pic().height(), 5 * cell.height(), 1);
    Click("ZoomIn");
  }
}

TEST_F(PreviewTest, TheWheelWithCtrlZooms) {
  Open();
  TurnWheel(Pic(), {0, 120}, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), kFirstZoom + kZoomStep);
}

TEST_F(PreviewTest, BestFitTakesTheLargestSizeAtWhichThePageFits) {
  const ReportSnapshot wide =
      WritePages(folder_ / "wide.rpt", {std::vector<std::string>(66, std::string(132, 'w'))}, 132);
  for (const QSize size : {QSize(1280, 720), QSize(900, 500), QSize(900, 300)}) {
    Open(wide, size);
    Click("Best Fit");
    const QWidget& view = Find("fme");
    EXPECT_LE(Pic().width(), view.width());
    EXPECT_LE(Pic().height(), view.height());
    const QSize larger = Pic().PageSizeAt(Pic().FontSize() + kBestFitStep);
    EXPECT_TRUE(larger.width() > view.width() || larger.height() > view.height());
    EXPECT_EQ(std::fmod(kBestFitStart - Pic().FontSize(), kBestFitStep), 0);
  }
}

TEST_F(PreviewTest, TheWindowsPartsLieAsPublished) {
  Open();
  const auto place = [&](const char* name) {
    const QWidget& control = Find(name);
    return QRect(control.mapTo(window_.get(), QPoint()), control.size());
  };
  const QRect toolbar = place("tbrPV");
  const QRect view = place("fme");
  const QRect vertical = place("VS");
  const QRect horizontal = place("HS");
  EXPECT_EQ(toolbar, QRect(0, 0, 1280, toolbar.height()));
  EXPECT_EQ(view, QRect(0, toolbar.height(), 1280 - vertical.width(),
                        720 - toolbar.height() - horizontal.height()));
  EXPECT_EQ(vertical, QRect(view.right() + 1, view.top(), vertical.width(), view.height()));
  EXPECT_EQ(horizontal, QRect(0, view.bottom() + 1, view.width(), horizontal.height()));
  EXPECT_EQ(place("picAnimate"),
            QRect(vertical.left(), horizontal.top(), vertical.width(), horizontal.height()));
}

TEST_F(PreviewTest, ASmallPageIsCentredAndItsBarsAreFixed) {
  Open();
  const QWidget& view = Find("fme");
  EXPECT_EQ(VS().minimum(), -1);
  EXPECT_EQ(VS().maximum(), -1);
  EXPECT_EQ(HS().maximum(), -1);
  EXPECT_NEAR(Pic().x(), (view.width() - Pic().width()) / 2.0, 1);
  EXPECT_NEAR(Pic().y(), (view.height() - Pic().height()) / 2.0, 1);
  const QPoint before = Pic().pos();
  for (const auto key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_PageDown, Qt::Key_End}) Press(key);
  EXPECT_EQ(Pic().pos(), before);
}

TEST_F(PreviewTest, TheShadowStandsALittleRightOfAndBelowThePage) {
  Open();
  const QWidget& border = Find("Border");
  EXPECT_EQ(border.size(), Pic().size());
  EXPECT_EQ(border.pos() - Pic().pos(), QPoint(2, 1));
  Click("ZoomIn");
  EXPECT_EQ(border.size(), Pic().size());
  EXPECT_EQ(border.pos() - Pic().pos(), QPoint(2, 1));
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
  const int most = VS().maximum();
  Press(Qt::Key_Down);
  EXPECT_EQ(VS().value(), 0);
  EXPECT_EQ(Pic().y(), 0);
  Press(Qt::Key_PageDown);
  EXPECT_EQ(VS().value(), VS().pageStep());
  EXPECT_NEAR(Pic().y(), -VS().value() * kPixelsPerUnit, 1);
  EXPECT_NEAR(VS().pageStep() * kPixelsPerUnit, Find("fme").height(), kPixelsPerUnit);
  Press(Qt::Key_Up);
  EXPECT_EQ(VS().value(), VS().pageStep() - 1);
  for (int i = 0; i < 9; ++i) Press(Qt::Key_PageDown);
  EXPECT_EQ(VS().value(), most);
  Press(Qt::Key_Down);
  EXPECT_EQ(VS().value(), most);
  Press(Qt::Key_Home);
  EXPECT_EQ(VS().value(), -1);
  Press(Qt::Key_PageUp);
  EXPECT_EQ(VS().value(), -1);
  Press(Qt::Key_Right);
  EXPECT_EQ(HS().value(), std::min(HS().pageStep() - 1, HS().maximum()));
  EXPECT_NEAR(Pic().x(), -HS().value() * kPixelsPerUnit, 1);
  Press(Qt::Key_Left);
  EXPECT_EQ(HS().value(), -1);
  EXPECT_EQ(Find("Border").pos() - Pic().pos(), QPoint(2, 1));
}

TEST_F(LargePageTest, KeysMoveThePageAndTheCursorOfTheBoxThatHasTheFocus) {
  Type(FindBox(), "xy");
  Press(Qt::Key_Home);
  EXPECT_EQ(FindBox().cursorPosition(), 0);
  Press(Qt::Key_Right);
  EXPECT_EQ(FindBox().cursorPosition(), 1);
  EXPECT_EQ(HS().value(), std::min(HS().pageStep() - 1, HS().maximum()));
  Press(Qt::Key_End);
  EXPECT_EQ(FindBox().cursorPosition(), 2);
  EXPECT_EQ(VS().value(), VS().maximum());
  Press(Qt::Key_PageUp);
  EXPECT_EQ(VS().value(), VS().maximum() - VS().pageStep());
}

TEST_F(LargePageTest, KeysMoveThePageAlsoWhileAButtonHasTheFocus) {
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

TEST_F(LargePageTest, AMatchIsScrolledIntoView) {
  SearchFor("needle");
  const QSizeF cell = Pic().Cell();
  const QRect match =
      QRectF(251 * cell.width(), 60 * cell.height(), 6 * cell.width(), cell.height())
          .toAlignedRect()
          .translated(Pic().pos());
  EXPECT_TRUE(Find("fme").rect().contains(match));
}

TEST_F(LargePageTest, AMatchTooFarRightToBeDrawnIsScrolledToNevertheless) {
  Pages pages(1, std::vector<std::string>(120, "x"));
  pages[0][110] = std::string(40000, 'x') + "Needle";
  window_->ShowReport(WritePages(report_.page_file, pages, 300));
  SearchFor("needle");
  EXPECT_GT(VS().value(), 0);
  EXPECT_EQ(HS().value(), HS().maximum());
}

TEST_F(LargePageTest, ZoomingBackCentresThePageAgain) {
  Press(Qt::Key_End);
  while (IsEnabled("ZoomOut")) Click("ZoomOut");
  ASSERT_EQ(VS().maximum(), -1);
  EXPECT_NEAR(Pic().y(), (Find("fme").height() - Pic().height()) / 2.0, 1);
  Click("ZoomIn");
  Click("ZoomIn");
  Click("ZoomIn");
  ASSERT_GT(VS().maximum(), 0);
  EXPECT_NEAR(Pic().y(), -VS().value() * kPixelsPerUnit, 1);
}

}  // namespace
}  // namespace kel::testing
