// The tool bar on screens of every size: nothing of it is ever out of reach.
#include <QAccessible>
#include <ostream>
#include <set>

#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

struct Screen {
  const char* name;
  QSize window;
  int font_scale;
  Qt::LayoutDirection direction;
};

void PrintTo(const Screen& screen, std::ostream* out) { *out << screen.name; }

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

  const QFont font_ = QApplication::font();
};

class ToolbarOnScreenTest : public ToolbarTest, public ::testing::WithParamInterface<Screen> {};

TEST_P(ToolbarOnScreenTest, EveryControlIsInsideTheWindowAndOnNoOther) {
  OpenOn(GetParam());
  ASSERT_EQ(window_->size(), GetParam().window);
  const QRect bar = PlaceOf(Find("tbrPV"));
  EXPECT_TRUE(window_->rect().contains(bar));
  std::vector<QRect> taken;
  for (const QWidget* control : ToolbarControls()) {
    SCOPED_TRACE(control->objectName().toStdString());
    const QRect place = PlaceOf(*control);
    EXPECT_TRUE(control->isVisible());
    EXPECT_TRUE(bar.contains(place));
    EXPECT_EQ(window_->childAt(place.center()), control);
    EXPECT_GE(place.width(), control->minimumSizeHint().width());
    EXPECT_GE(place.height(), control->minimumSizeHint().height());
    for (const QRect& other : taken) EXPECT_FALSE(place.intersects(other));
    taken.push_back(place);
  }
  EXPECT_TRUE(window_->grab().save(QString("frmPV_%1.png").arg(GetParam().name)));
}

TEST_P(ToolbarOnScreenTest, TabReachesEveryControlInReadingOrder) {
  OpenOn(GetParam());
  Find("Print").setFocus();
  std::set<QString> reached;
  QRect last;
  for (QWidget* at = QApplication::focusWidget(); at != &Pic(); at = QApplication::focusWidget()) {
    SCOPED_TRACE(at->objectName().toStdString());
    ASSERT_TRUE(reached.insert(at->objectName()).second);
    const QRect place = PlaceOf(*at);
    const bool in_row = place.top() <= last.bottom();
    const bool is_after = GetParam().direction == Qt::LeftToRight ? place.left() > last.right()
                                                                  : place.right() < last.left();
    EXPECT_TRUE(last.isNull() || !in_row || is_after);
    EXPECT_GT(place.bottom(), last.top());
    last = place;
    Press(Qt::Key_Tab);
  }
  for (const QWidget* control : ToolbarControls()) {
    if (qobject_cast<const QLabel*>(control) != nullptr) continue;
    EXPECT_TRUE(reached.contains(control->objectName())) << control->objectName().toStdString();
  }
}

TEST_P(ToolbarOnScreenTest, BoxesStandBesideWhatBelongsToThem) {
  OpenOn(GetParam());
  for (const QLabel* label : Find("tbrPV").findChildren<QLabel*>()) {
    const QRect box = PlaceOf(*label->buddy());
    const QRect text = PlaceOf(*label);
    EXPECT_LE(std::abs(box.center().y() - text.center().y()), 1);
    EXPECT_LE(box.united(text).width(), box.width() + text.width() + 4);
  }
  EXPECT_TRUE(IsInOneRow("BackColor", "picBack"));
  EXPECT_TRUE(IsInOneRow("ForeColor", "picFore"));
  EXPECT_TRUE(IsInOneRow("txtFind", "Find"));
}

TEST_P(ToolbarOnScreenTest, ThePageHasTheRestOfTheWindow) {
  OpenOn(GetParam());
  const QRect bar = PlaceOf(Find("tbrPV"));
  const QRect view = PlaceOf(Find("fme"));
  EXPECT_EQ(bar.topLeft(), QPoint(0, 0));
  EXPECT_EQ(bar.width(), window_->width());
  EXPECT_EQ(view.top(), bar.bottom() + 1);
  EXPECT_EQ(view.height(), window_->height() - bar.height() - HS().height());
  EXPECT_NEAR(Pic().y(), (view.height() - Pic().height()) / 2.0, 1);
  EXPECT_GT(view.height(), bar.height());
}

INSTANTIATE_TEST_SUITE_P(
    Screens, ToolbarOnScreenTest,
    ::testing::Values(Screen{"Wide", {1280, 720}, 1, Qt::LeftToRight},
                      Screen{"Small", {800, 600}, 1, Qt::LeftToRight},
                      Screen{"Scaled", {683, 384}, 1, Qt::LeftToRight},
                      Screen{"Narrow", {480, 640}, 1, Qt::LeftToRight},
                      Screen{"WideLargeFont", {1280, 720}, 2, Qt::LeftToRight},
                      Screen{"SmallLargeFont", {800, 600}, 2, Qt::LeftToRight},
                      Screen{"ScaledLargeFont", {683, 384}, 2, Qt::LeftToRight},
                      Screen{"ScaledRightToLeft", {683, 384}, 1, Qt::RightToLeft}),
    [](const auto& screen) { return std::string(screen.param.name); });

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
  OpenOn({"", {800, 600}, 1, Qt::LeftToRight});
  const QWidget& bar = Find("tbrPV");
  const int one_row = bar.height();
  QFont large = font_;
  large.setPointSizeF(2 * font_.pointSizeF());
  QApplication::setFont(large);
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar.height() > one_row; }));
  for (const QWidget* control : ToolbarControls()) {
    EXPECT_TRUE(PlaceOf(bar).contains(PlaceOf(*control))) << control->objectName().toStdString();
  }
}

TEST_F(ToolbarTest, TheWindowIsNeverTooNarrowForItsWidestGroup) {
  Open();
  window_->resize(1, 720);
  EXPECT_GT(window_->width(), 1);
  for (const QWidget* control : ToolbarControls()) {
    EXPECT_TRUE(window_->rect().contains(PlaceOf(*control))) << control->objectName().toStdString();
  }
}

TEST_F(ToolbarTest, ColourBoxesTellWhatTheyAreForAndTheirColour) {
  Open();
  const auto told = [&](const char* name, QAccessible::Text text) {
    return QAccessible::queryAccessibleInterface(&Find(name))->text(text).toStdString();
  };
  EXPECT_EQ(told("BackColor", QAccessible::Name), "Back Color");
  EXPECT_EQ(told("picBack", QAccessible::Name), "Page colour");
  EXPECT_EQ(told("picFore", QAccessible::Name), "Text colour");
  EXPECT_EQ(told("picBack", QAccessible::Description), "Window Background");
  EXPECT_EQ(told("picFore", QAccessible::Description), "Window Text");
  Find("picBack").setFocus();
  Press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(told("picBack", QAccessible::Description), "Window Text");
  Press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(told("picBack", QAccessible::Description), "White");
}

TEST_F(ToolbarTest, AColourOfTheUsersOwnIsToldByItsNumber) {
  settings_->Write("Preview", "ForeColor", "1193046");  // red 0x56, green 0x34, blue 0x12
  Open();
  EXPECT_EQ(Find("picFore").accessibleDescription(), "#563412");
}

}  // namespace
}  // namespace kel::testing
