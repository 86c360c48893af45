#include "toolkit/frmFlash.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPainterPath>
#include <QPointer>
#include <QTest>
#include <chrono>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/modal_window.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

using namespace std::chrono_literals;
using testing::Child;

constexpr RECT kArea = {10, 20, 710, 620};

class FrmFlashTest : public ::testing::Test {
 protected:
  void TearDown() override {
    for (QWidget* const note : Notes()) note->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  static std::vector<QWidget*> Notes() {
    std::vector<QWidget*> notes;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmFlash" && window->isVisible()) notes.push_back(window);
    }
    return notes;
  }
  QWidget& Shown(const FlashRequest& request) {
    frmFlash::Show(request, kArea);
    for (QWidget* const note : Notes()) {
      if (seen_.insert(note).second) return *note;
    }
    throw std::runtime_error("no note came");
  }

  std::set<QWidget*> seen_;
};

TEST_F(FrmFlashTest, TheSubjectStandsInBoldAboveTheMessageWithinTheMargins) {
  QWidget& note = Shown({"All vouchers of the day have been posted.", "Posted"});
  testing::SavePicture(note, "frmFlash");
  auto& subject = Child<QLabel>(note, "Subject");
  auto& message = Child<QLabel>(note, "Message");
  EXPECT_EQ(subject.pos(), QPoint(10, 5));
  EXPECT_TRUE(subject.font().bold());
  EXPECT_EQ(message.pos(), QPoint(10, 5 + subject.height()));
  EXPECT_FALSE(message.font().bold());
  EXPECT_EQ(note.width(), message.width() + 20);
  EXPECT_EQ(note.height(), message.geometry().bottom() + 1 + 5);
  EXPECT_EQ(Child(Shown({"Saved", {}}), "Message").pos(), QPoint(10, 5));
}

TEST_F(FrmFlashTest, TheCornersAreRoundByFifteenPixels) {
  QWidget& note = Shown({"Saved", {}});
  QPainterPath round;
  round.addRoundedRect(QRectF(note.rect()), 7.5, 7.5);
  for (int y = 0; y < note.height(); ++y) {
    for (int x = 0; x < note.width(); ++x) {
      const QRectF pixel(x, y, 1, 1);
      const bool there = note.mask().contains(QPoint(x, y));
      EXPECT_TRUE(there || !round.contains(pixel)) << x << "," << y;
      EXPECT_TRUE(!there || round.intersects(pixel)) << x << "," << y;
    }
  }
}

TEST_F(FrmFlashTest, LongWordsBreakAndHugeMessagesStayOnTheScreen) {
  for (const std::string& message :
       {std::string(300, 'W'), std::string(1'000'000, 'x'), std::string("<b>1</b> & 2")}) {
    QWidget& note = Shown({message, std::string(1'000'000, 's')});
    const auto& label = Child<QLabel>(note, "Message");
    EXPECT_TRUE(QString::fromStdString(message).startsWith(label.text().left(12)));
    EXPECT_LE(WrappedLabel::TextSize(label.text(), label.font(), label.width()).height(),
              label.height());
    EXPECT_LE(note.width(), kArea.Right - kArea.Left);
    EXPECT_LE(note.height(), kArea.Bottom - kArea.Top);
  }
}

TEST_F(FrmFlashTest, ItStandsWhereItIsAlignedAboveEverythingAndTakesNoFocus) {
  for (const AlignObject align : {zurAlignLeftTop, zurAlignRightBottom, zurAlignCenter}) {
    QWidget& note = Shown({"Saved", {}, 3000ms, align});
    const RECT place = AlignedRect(kArea, note.width(), note.height(), align);
    EXPECT_EQ(note.pos(), QPoint(place.Left, place.Top));
    EXPECT_TRUE(note.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(note.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(note.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
  }
  EXPECT_EQ(Notes().size(), 3U);
}

TEST_F(FrmFlashTest, TheTimerTakesTheIntervalAndDestroysTheNoteAtItsFirstTick) {
  for (const auto& [interval, timer] : std::vector<std::pair<std::chrono::milliseconds, int>>{
           {3000ms, 3000}, {-5ms, 1}, {std::chrono::milliseconds::max(), 2147483647}}) {
    EXPECT_EQ(Shown({"Saved", {}, interval}).findChild<QTimer*>("tmr")->interval(), timer);
  }
  const QPointer<QWidget> note = &Shown({"Saved", {}, 1ms});
  EXPECT_TRUE(QTest::qWaitFor([&] { return note.isNull(); }));
}

}  // namespace
}  // namespace kel
