#include "toolkit/frmSplash.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "common/host.h"
#include "platform/qt/qt_desktop.h"
#include "support/modal_window.h"

namespace kel {
namespace {

using testing::Child;
using testing::WhenModal;

class FrmSplashTest : public ::testing::Test {
 protected:
  void SetUp() override {
    before_ = CurrentHost().desktop;
    CurrentHost().desktop = std::make_shared<QtDesktop>();  // asks "Stop?"
    wait_ = CurrentHost().desktop->MakeWaitWindow();
  }
  void TearDown() override {
    wait_.reset();
    EXPECT_EQ(Window(), nullptr);
    CurrentHost().desktop = before_;
  }

  /// The wait window, on the screen or not.
  static QWidget* Window() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmSplash") return window;
    }
    return nullptr;
  }
  static ProgressBar& Bar() { return Child<ProgressBar>(*Window(), "PB"); }
  static QLabel& Label() { return Child<QLabel>(*Window(), "lbl"); }
  static void ClickStop() { QTest::mouseClick(&Child(*Window(), "Pic"), Qt::LeftButton); }
  static void AnswerStop(
      bool yes, const std::function<void(QWidget&)>& look = [](QWidget&) {}) {
    WhenModal("frmMsg", [yes, look](QWidget& box) {
      look(box);
      QTest::mouseClick(&Child(box, yes ? "OK" : "Cancel"), Qt::LeftButton);
    });
  }
  /// Works on until the wait window says stop, or for a great many steps.
  bool WorkIsStopped() {
    return QTest::qWaitFor([&] { return !wait_->Step(1, std::nullopt); });
  }

  std::shared_ptr<Desktop> before_;
  std::unique_ptr<WaitWindow> wait_;
};

TEST_F(FrmSplashTest, ItIsPaintedBeforeShowReturnsAndByEachStepThatBringsACaption) {
  struct PaintCount : QObject {
    bool eventFilter(QObject* watched, QEvent* event) override {
      paints += event->type() == QEvent::Paint && watched->objectName() == "lbl" ? 1 : 0;
      return false;
    }
    int paints = 0;
  } count;
  qApp->installEventFilter(&count);
  wait_->Show({false, "Preparing Pages...", 0, 10});
  EXPECT_GT(count.paints, 0);
  EXPECT_TRUE(Window()->isVisible());
  EXPECT_EQ(Window()->windowModality(), Qt::NonModal);
  testing::SavePicture(*Window(), "frmSplash");
  for (const char* const caption : {"One", "Two", "Three"}) {
    const int before = count.paints;
    wait_->Step(1, caption);
    EXPECT_GT(count.paints, before) << caption;
  }
}

TEST_F(FrmSplashTest, LabelBarAndStopAreThereAsAskedFor) {
  for (const WaitRequest& request : std::vector<WaitRequest>{
           {false, "Reading", {}, {}}, {true, {}, 5, {}}, {true, {}, {}, 50}, {false, {}, 1, 50}}) {
    wait_->Show(request);
    const QWidget& stop = Child(*Window(), "Pic");
    EXPECT_EQ(Bar().isVisible(), request.min || request.max);
    EXPECT_EQ(Label().width(), request.stop_button ? 172 : 211);
    EXPECT_EQ(stop.isVisible(), request.stop_button);
    EXPECT_EQ(Label().text(), "Reading");  // stays until there is another
    EXPECT_EQ(Window()->windowFlags().testFlag(Qt::WindowCloseButtonHint), request.stop_button);
    EXPECT_FALSE(stop.isVisible() && Label().geometry().intersects(stop.geometry()));
  }
}

TEST_F(FrmSplashTest, ALongCaptionGrowsInHeightAndIsNeverCut) {
  for (const int points : {9, 18, 30}) {
    QFont font = QApplication::font();
    font.setPointSize(points);
    Window()->setFont(font);
    for (const std::string& caption :
         {std::string("Posting the vouchers of the year to the ledger"), std::string(40, 'W'),
          std::string(100'000, 'x')}) {
      wait_->Show({true, caption, 0, 10});
      EXPECT_EQ(Label().width(), 172);
      EXPECT_LE(WrappedLabel::TextSize(Label().text(), Label().font(), 172).height(),
                Label().height());
      EXPECT_LE(Label().geometry().bottom(), Bar().geometry().top());
      EXPECT_TRUE(Window()->rect().contains(Bar().geometry()));
    }
  }
}

TEST_F(FrmSplashTest, EveryStepMovesTheBarHoweverSeldomItIsDrawn) {
  wait_->Show({false, "Posting", 10, 1000});
  EXPECT_EQ(Bar().Value(), 10);
  for (int i = 0; i < 500; ++i) EXPECT_TRUE(wait_->Step(1, std::nullopt));
  EXPECT_EQ(Bar().Value(), 510);
  Window()->hide();
  EXPECT_TRUE(wait_->Step(-600, "Back"));
  EXPECT_TRUE(Window()->isVisible());
  EXPECT_EQ(Bar().Value(), 10);
  EXPECT_EQ(Label().text(), "Back");
  EXPECT_TRUE(wait_->Step(std::numeric_limits<std::int32_t>::max(), std::nullopt));
  EXPECT_EQ(Bar().Value(), 1000);
}

// The program does nothing but step: whatever the press needs comes about in there.
TEST_F(FrmSplashTest, StopIsSeenBySteppingAloneAsOftenAsItIsPressed) {
  wait_->Show({true, "Posting", 0, 10});
  for (const bool yes : {false, false, true}) {
    bool asked = false;
    AnswerStop(yes, [&](QWidget& box) {
      asked = true;
      EXPECT_TRUE(wait_->Step(1, std::nullopt));  // from an event of the program's
      EXPECT_FALSE(Window()->isVisible());
      EXPECT_EQ(box.windowTitle(), "Confirmation");
      EXPECT_EQ(Child<QPlainTextEdit>(box, "Prompt").toPlainText(), "Stop?");
      EXPECT_EQ(Child<Button>(box, "OK").Caption(), "&Yes");
      EXPECT_EQ(Child(box, "Pic").accessibleName(), "Question");
    });
    ClickStop();
    const QDeadlineTimer deadline(5000);
    bool goes_on = true;
    while (!asked && goes_on && !deadline.hasExpired()) goes_on = wait_->Step(1, std::nullopt);
    EXPECT_TRUE(asked);
    EXPECT_EQ(goes_on, !yes);
    EXPECT_EQ(Window()->isVisible(), !yes);
  }
  EXPECT_FALSE(wait_->Step(1, std::nullopt));
  wait_->Show({false, "Reading", {}, {}});
  EXPECT_TRUE(Window()->isVisible());
  EXPECT_TRUE(wait_->Step(1, std::nullopt));
}

TEST_F(FrmSplashTest, OnlyAWindowWithStopLetsEventsThroughAndIsClosedByItsFrame) {
  int events = 0;
  QTimer source;
  source.setSingleShot(true);
  QObject::connect(&source, &QTimer::timeout, &source, [&] { ++events; });
  for (const bool stop : {false, true}) {
    wait_->Show({stop, "Posting", 0, 10});
    source.start();
    wait_->Step(1, std::nullopt);
    EXPECT_EQ(events, stop ? 1 : 0);
    source.stop();
    if (stop) continue;
    EXPECT_FALSE(Window()->close());
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) QTest::keyClick(Window(), key);
    EXPECT_TRUE(Window()->isVisible());
    EXPECT_TRUE(wait_->Step(1, std::nullopt));
  }
}

TEST_F(FrmSplashTest, StopIsReachedByTheKeyboardAndByTheFrame) {
  const std::vector<std::function<void()>> ways = {
      [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space); },
      [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); },
      [] { QTest::keyClick(Window(), Qt::Key_Enter); }, [] { EXPECT_FALSE(Window()->close()); }};
  for (const std::function<void()>& press : ways) {
    wait_->Show({true, "Posting", 0, 1000000});
    Window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Window()));
    AnswerStop(true);
    press();
    EXPECT_TRUE(WorkIsStopped());
  }
}

TEST_F(FrmSplashTest, ItsOwnerMayDestroyItWhileItAsksAndWhileItSteps) {
  wait_->Show({true, "Posting", 0, 10});
  AnswerStop(true, [&](QWidget& /*box*/) { wait_.reset(); });
  ClickStop();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !wait_ || !wait_->Step(1, std::nullopt); }));
  EXPECT_EQ(Window(), nullptr);

  wait_ = CurrentHost().desktop->MakeWaitWindow();
  wait_->Show({true, "Posting", 0, 10});
  QTimer source;
  QObject::connect(&source, &QTimer::timeout, &source, [&] { wait_.reset(); });
  source.start();
  EXPECT_FALSE(wait_->Step(1, std::nullopt));
}

TEST_F(FrmSplashTest, StopCanBePressedWhileTheProgramsOwnWindowIsModal) {
  QDialog form;
  form.setModal(true);
  form.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  wait_->Show({true, "Posting", 0, 1000000});
  AnswerStop(true);
  auto& stop = Child(*Window(), "Pic");
  QTest::mouseClick(Window()->windowHandle(), Qt::LeftButton, {}, stop.geometry().center());
  EXPECT_TRUE(WorkIsStopped());
}

}  // namespace
}  // namespace kel
