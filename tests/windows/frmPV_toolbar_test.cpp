// The tool bar on screens of every size: nothing of it is ever out of reach.
#include <set>

#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

struct Screen {
  const char* name;
  QSize window;
  int font_scale = 1;
  Qt::LayoutDirection direction = Qt::LeftToRight;
};

const std::vector<Screen> kScreens = {{"Wide", {1280, 720}},
                                      {"Narrow", {480, 640}},
                                      {"ScaledLargeFont", {683, 384}, 2},
                                      {"ScaledRightToLeft", {683, 384}, 1, Qt::RightToLeft}};

class ToolbarTest : public PreviewTest {
 protected:
  void TearDown() override {
    PreviewTest::TearDown();
    QApplication::setFont(font_);
    QApplication::setLayoutDirection(Qt::LeftToRight);
  }

  void OpenOn(const Screen& screen) {
    QFont font = font_;
    font.setPointSizeF(screen.font_scale * font_.pointSizeF());
    QApplication::setFont(font);
    QApplication::setLayoutDirection(screen.direction);
    Open(report_, screen.window);
    Click("Next");  // so that no button is disabled
  }

  QRect PlaceOf(const QWidget& control) {
    return {control.mapTo(window_.get(), QPoint()), control.size()};
  }
  bool IsInOneRow(const char* first, const char* second) {
    const QRect a = PlaceOf(Find(first));
    return a.top() <= PlaceOf(Find(second)).center().y() &&
           PlaceOf(Find(second)).center().y() <= a.bottom();
  }

  void ExpectEveryControlInside() {
    const QRect bar = PlaceOf(Find("tbrPV"));
    EXPECT_TRUE(window_->rect().contains(bar));
    for (const QWidget* control : ToolbarControls()) {
      EXPECT_TRUE(bar.contains(PlaceOf(*control))) << control->objectName().toStdString();
    }
  }

  void ExpectControlsSideBySide() {
    ExpectEveryControlInside();
    std::vector<QRect> taken;
    for (const QWidget* control : ToolbarControls()) {
      SCOPED_TRACE(control->objectName().toStdString());
      const QRect place = PlaceOf(*control);
      EXPECT_EQ(window_->childAt(place.center()), control);
      EXPECT_EQ(place.size().expandedTo(control->minimumSizeHint()), place.size());
      for (const QRect& other : taken) EXPECT_FALSE(place.intersects(other));
      taken.push_back(place);
    }
    for (const QLabel* label : Find("tbrPV").findChildren<QLabel*>()) {
      const QRect box = PlaceOf(*label->buddy());
      const QRect text = PlaceOf(*label);
      EXPECT_LE(std::abs(box.center().y() - text.center().y()), 1);
      EXPECT_LE(box.united(text).width(), box.width() + text.width() + 4);
    }
    EXPECT_TRUE(IsInOneRow("BackColor", "picBack"));
    EXPECT_TRUE(IsInOneRow("ForeColor", "picFore"));
    EXPECT_TRUE(IsInOneRow("txtFind", "Find"));
    EXPECT_GT(Find("fme").height(), Find("tbrPV").height()) << "the page has the most of it";
  }

  void ExpectTabInReadingOrder(Qt::LayoutDirection direction) {
    Find("Print").setFocus();
    std::set<const QWidget*> reached;
    QRect last;
    for (QWidget* at = QApplication::focusWidget(); at != &Pic();
         at = QApplication::focusWidget()) {
      SCOPED_TRACE(at->objectName().toStdString());
      ASSERT_TRUE(reached.insert(at).second);
      const QRect place = PlaceOf(*at);
      const bool is_after =
          direction == Qt::LeftToRight ? place.left() > last.right() : place.right() < last.left();
      EXPECT_TRUE(last.isNull() || place.top() > last.bottom() || is_after);
      EXPECT_GT(place.bottom(), last.top());
      last = place;
      Press(Qt::Key_Tab);
    }
    for (const QWidget* control : ToolbarControls()) {
      const bool is_label = qobject_cast<const QLabel*>(control) != nullptr;
      EXPECT_TRUE(is_label || reached.contains(control)) << control->objectName().toStdString();
    }
  }

  const QFont font_ = QApplication::font();
};

TEST_F(ToolbarTest, EveryControlIsInsideTheWindowOnNoOtherAndReachedByTabInReadingOrder) {
  for (const Screen& screen : kScreens) {
    SCOPED_TRACE(screen.name);
    OpenOn(screen);
    ASSERT_EQ(window_->size(), screen.window);
    ExpectControlsSideBySide();
    ExpectTabInReadingOrder(screen.direction);
    EXPECT_TRUE(window_->grab().save(QString("frmPV_%1.png").arg(screen.name)));
  }
}

TEST_F(ToolbarTest, BoxesAreNarrowedBeforeAnotherRowBegins) {
  Open();
  const QWidget& bar = Find("tbrPV");
  const int one_row = bar.height();
  const int whole = FindBox().width();
  EXPECT_GE(whole, FindBox().fontMetrics().horizontalAdvance(FindBox().placeholderText()));
  window_->resize(800, 600);
  EXPECT_EQ(bar.height(), one_row);
  EXPECT_LT(FindBox().width(), whole);
  window_->resize(480, 600);
  EXPECT_GT(bar.height(), one_row);
  EXPECT_EQ(FindBox().width(), whole);
  EXPECT_EQ(Find("fme").y() + bar.height(), PlaceOf(Find("fme")).top());
  window_->resize(1280, 600);
  EXPECT_EQ(bar.height(), one_row);
  EXPECT_EQ(FindBox().width(), whole);
}

TEST_F(ToolbarTest, AFontThatGrowsUnderAnOpenWindowMovesNothingOutOfReach) {
  OpenOn({"", {800, 600}});
  const QWidget& bar = Find("tbrPV");
  const int one_row = bar.height();
  QFont large = font_;
  large.setPointSizeF(2 * font_.pointSizeF());
  QApplication::setFont(large);
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar.height() > one_row; }));
  ExpectEveryControlInside();
}

TEST_F(ToolbarTest, TheWindowIsNeverTooNarrowForItsWidestGroup) {
  Open();
  window_->resize(1, 720);
  EXPECT_GT(window_->width(), 1);
  ExpectEveryControlInside();
}

}  // namespace
}  // namespace kel::testing
