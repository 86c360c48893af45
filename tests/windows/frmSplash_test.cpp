#include "toolkit/frmSplash.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QWindow>
#include <functional>
#include <limits>
#include <memory>
#include <string>

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

TEST_F(FrmSplashTest, ItIsPaintedBeforeShowReturnsAndLeavesTheProgramItsWork) {
  struct PaintSeen : QObject {
    bool eventFilter(QObject* watched, QEvent* event) override {
      seen |= event->type() == QEvent::Paint && watched->objectName() == "lbl";
      return false;
    }
    bool seen = false;
  } paint;
  qApp->installEventFilter(&paint);
  wait_->Show({false, "Preparing Pages...", 0, 10});
  EXPECT_TRUE(paint.seen);
  EXPECT_TRUE(Window()->isVisible());
  EXPECT_EQ(Window()->windowModality(), Qt::NonModal);
  testing::SavePicture(*Window(), "frmSplash");
}

TEST_F(FrmSplashTest, LabelBarAndStopAreThereAsAskedFor) {
  struct Case {
    WaitRequest request;
    bool bar;
    int label_width;  // pixels
  };
  for (const Case& c :
       {Case{{false, "Reading", {}, {}}, false, 211}, Case{{true, {}, 5, {}}, true, 172},
        Case{{true, {}, {}, 50}, true, 172}, Case{{false, {}, 1, 50}, true, 211}}) {
    wait_->Show(c.request);
    EXPECT_EQ(Bar().isVisible(), c.bar);
    EXPECT_EQ(Label().width(), c.label_width);
    EXPECT_EQ(Child(*Window(), "Pic").isVisible(), c.request.stop_button);
    EXPECT_EQ(Label().text(), "Reading");  // stays until there is another
    const bool closable = Window()->windowFlags().testFlag(Qt::WindowCloseButtonHint);
    EXPECT_EQ(closable, c.request.stop_button);
    if (c.request.stop_button) {
      const QRect label = Label().geometry();
      EXPECT_FALSE(label.intersects(Child(*Window(), "Pic").geometry()));
    }
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
  EXPECT_TRUE(wait_->Step(-600, "Back"));
  EXPECT_EQ(Bar().Value(), 10);
  EXPECT_EQ(Label().text(), "Back");
  EXPECT_TRUE(wait_->Step(std::numeric_limits<std::int32_t>::max(), std::nullopt));
  EXPECT_EQ(Bar().Value(), 1000);
}

TEST_F(FrmSplashTest, ANewCaptionIsDrawnByTheStepThatBringsIt) {
  struct PaintCount : QObject {
    bool eventFilter(QObject* watched, QEvent* event) override {
      paints += event->type() == QEvent::Paint && watched->objectName() == "lbl" ? 1 : 0;
      return false;
    }
    int paints = 0;
  } count;
  wait_->Show({false, "Posting", 0, 10});
  Label().installEventFilter(&count);
  for (const char* const caption : {"One", "Two", "Three"}) {
    const int before = count.paints;
    wait_->Step(1, caption);
    EXPECT_GT(count.paints, before) << caption;
  }
}

// The program does nothing but step: whatever the press needs comes about in there.
TEST_F(FrmSplashTest, StopIsSeenBySteppingAloneAsOftenAsItIsPressed) {
  wait_->Show({true, "Posting", 0, 10});
  for (const bool yes : {false, false, true}) {
    bool asked = false;
    AnswerStop(yes, [&](QWidget& box) {
      asked = true;
      EXPECT_EQ(box.windowTitle(), "Confirmation");
    });
    ClickStop();
    const QDeadlineTimer deadline(5000);
    bool goes_on = true;
    while (!asked && goes_on && !deadline.hasExpired()) goes_on = wait_->Step(1, std::nullopt);
    EXPECT_TRUE(asked);
    EXPECT_EQ(goes_on, !yes);
  }
}

TEST_F(FrmSplashTest, AStepBringsAHiddenWindowBack) {
  wait_->Show({});
  Window()->hide();
  EXPECT_TRUE(wait_->Step(1, std::nullopt));
  EXPECT_TRUE(Window()->isVisible());
}

TEST_F(FrmSplashTest, OnlyAWindowWithStopLetsEventsThrough) {
  int events = 0;
  QTimer source;
  source.setSingleShot(true);
  QObject::connect(&source, &QTimer::timeout, &source, [&] { ++events; });
  wait_->Show({false, "Posting", 0, 10});
  source.start();
  wait_->Step(1, std::nullopt);
  EXPECT_EQ(events, 0);
  wait_->Show({true, "Posting", 0, 10});
  events = 0;
  source.start();
  wait_->Step(1, std::nullopt);
  EXPECT_EQ(events, 1);
}

TEST_F(FrmSplashTest, AConfirmedStopEndsTheWork) {
  wait_->Show({true, "Posting", 0, 1000000});
  AnswerStop(true, [](QWidget& box) {
    EXPECT_FALSE(Window()->isVisible());
    EXPECT_EQ(box.windowTitle(), "Confirmation");
    EXPECT_EQ(Child<QPlainTextEdit>(box, "Prompt").toPlainText(), "Stop?");
    EXPECT_EQ(Child<Button>(box, "OK").Caption(), "&Yes");
    EXPECT_EQ(Child(box, "Pic").accessibleName(), "Question");
  });
  ClickStop();
  EXPECT_TRUE(WorkIsStopped());
  EXPECT_FALSE(Window()->isVisible());
  EXPECT_FALSE(wait_->Step(1, std::nullopt));
}

TEST_F(FrmSplashTest, ADeniedStopShowsTheWindowAgainAndTheWorkGoesOn) {
  wait_->Show({true, "Posting", 0, 1000000});
  bool asked = false;
  AnswerStop(false, [&](QWidget& /*box*/) {
    asked = true;
    EXPECT_TRUE(wait_->Step(1, std::nullopt));  // from an event of the program's
    EXPECT_FALSE(Window()->isVisible());
  });
  ClickStop();
  EXPECT_TRUE(QTest::qWaitFor([&] {
    EXPECT_TRUE(wait_->Step(1, std::nullopt));
    return asked && QApplication::activeModalWidget() == nullptr;
  }));
  EXPECT_TRUE(Window()->isVisible());
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

TEST_F(FrmSplashTest, WithoutStopTheFrameDoesNotCloseIt) {
  wait_->Show({});
  EXPECT_FALSE(Window()->close());
  QTest::keyClick(Window(), Qt::Key_Return);
  QTest::keyClick(Window(), Qt::Key_Escape);
  EXPECT_TRUE(Window()->isVisible());
  EXPECT_TRUE(wait_->Step(1, std::nullopt));
}

TEST_F(FrmSplashTest, AfterAStopTheWindowCanBeShownAnew) {
  wait_->Show({true, "Posting", 0, 10});
  AnswerStop(true);
  ClickStop();
  EXPECT_TRUE(WorkIsStopped());
  wait_->Show({false, "Reading", {}, {}});
  EXPECT_TRUE(Window()->isVisible());
  EXPECT_TRUE(wait_->Step(1, std::nullopt));
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
