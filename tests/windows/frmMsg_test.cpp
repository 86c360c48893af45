#include "toolkit/frmMsg.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "controls/icons.h"
#include "controls/widget_object.h"
#include "platform/qt/qt_desktop.h"
#include "support/modal_window.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

using namespace std::chrono_literals;
using testing::Child;
using testing::WhenModal;

/// The real desktop, whose wire frame is written down.
class FrameRecorder : public QtDesktop {
 public:
  void DrawWireRects(const RECT& from, const RECT& to, int steps,
                     std::chrono::milliseconds /*pause*/) override {
    frames.push_back({from, to, steps, QApplication::activeModalWidget() != nullptr});
  }
  struct Frame {
    RECT from;
    RECT to;
    int steps;
    bool box_shown;
  };
  std::vector<Frame> frames;
};

class FrmMsgTest : public ::testing::Test {
 protected:
  /// Shows a box, does `act` on it when it is up, and returns its answer.
  bool Answer(const MessageRequest& request, std::function<void(QWidget& box)> act) {
    WhenModal("frmMsg", [act = std::move(act)](QWidget& box) {
      EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
      act(box);
    });
    return desktop_.ShowMessage(request);
  }
  static MessageRequest Request(int buttons, std::string prompt = "Delete this voucher?") {
    MessageRequest request;
    request.prompt = std::move(prompt);
    request.buttons = buttons;
    return request;
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }

  FrameRecorder desktop_;
};

TEST_F(FrmMsgTest, APromptAloneIsAnInformationInPlainTextThatCtrlCCopies) {
  const QString prompt = "<b>Cash</b> & Bank\nsecond line";
  EXPECT_TRUE(Answer(Request(MessageRequest().buttons, prompt.toStdString()), [&](QWidget& box) {
    testing::SavePicture(box, "frmMsg_plain");
    EXPECT_EQ(box.windowTitle(), "  Information");
    EXPECT_EQ(Child<QPlainTextEdit>(box, "Prompt").toPlainText(), prompt);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), prompt);
    EXPECT_TRUE(Child(box, "OK").isVisible());
    EXPECT_FALSE(Child(box, "Cancel").isVisible());
    const QPixmap picture = Child<QLabel>(box, "Pic").pixmap();
    const QSize extent = picture.deviceIndependentSize().toSize();
    EXPECT_EQ(picture.toImage(),
              Icon("information").pixmap(extent, box.devicePixelRatioF()).toImage());
    QTest::mouseClick(&Child(box, "OK"), Qt::LeftButton);
  }));
}

TEST_F(FrmMsgTest, TheWholeButtonsValueDecidesOnButtonsAndDefault) {
  const QString yes_no = "&Yes &No";
  const QString ok_cancel = "&OK &Cancel";
  const std::vector<std::tuple<int, QString, QString>> cases = {
      {1, "&OK", "OK"},     {5, "&OK", "OK"},          {9, "&OK", "OK"},       {0, "&OK", "OK"},
      {2, yes_no, "OK"},    {6, yes_no, "OK"},         {10, yes_no, "Cancel"}, {3, ok_cancel, "OK"},
      {7, ok_cancel, "OK"}, {11, ok_cancel, "Cancel"}, {99, ok_cancel, "OK"}};
  for (const auto& [buttons, captions, by_enter] : cases) {
    SCOPED_TRACE(buttons);
    const bool answer =
        Answer(Request(buttons), [&, &name = by_enter, &shown = captions](QWidget& box) {
          const auto& second = Child<Button>(box, "Cancel");
          EXPECT_EQ(Child<Button>(box, "OK").Caption() +
                        (second.isVisible() ? " " + second.Caption() : ""),
                    shown);
          EXPECT_TRUE(Child<Button>(box, name).IsDefault());
          Press(Qt::Key_Return);
        });
    EXPECT_EQ(answer, by_enter == "OK");
  }
}

TEST_F(FrmMsgTest, KeysAnswerAsTheButtonsWouldAndNothingElseDoes) {
  const auto none = std::optional<bool>();  // the box stays
  const std::vector<std::tuple<int, std::vector<QKeyCombination>, std::optional<bool>>> cases = {
      {msgYesNo, {Qt::Key_Y, Qt::Key_O, Qt::SHIFT | Qt::Key_Y, Qt::Key_Space}, true},
      {msgYesNo, {Qt::Key_N, Qt::ALT | Qt::Key_N}, false},
      {msgYesNo, {Qt::CTRL | Qt::Key_Y, Qt::META | Qt::Key_C, Qt::ALT | Qt::Key_O}, none},
      {msgYesNo | msgDefault2, {Qt::Key_Enter}, false},
      {msgOKCancel, {Qt::Key_C, Qt::Key_Escape}, false},
      {msgOK, {Qt::Key_O}, true},
      {msgOK, {Qt::Key_Escape, Qt::Key_C, Qt::Key_N}, none}};
  for (const auto& [buttons, keys, answer] : cases) {
    for (const QKeyCombination key : keys) {
      SCOPED_TRACE(QString("%1 key %2").arg(buttons).arg(key.toCombined()).toStdString());
      bool stayed = false;
      const bool given = Answer(Request(buttons), [&](QWidget& box) {
        Press(key.key(), key.keyboardModifiers());
        stayed = box.isVisible();
        box.close();
      });
      EXPECT_EQ(stayed, !answer.has_value());
      EXPECT_EQ(given, answer.value_or(false));
    }
  }
}

TEST_F(FrmMsgTest, EnterPressesTheButtonThatTabWentTo) {
  EXPECT_FALSE(Answer(Request(msgYesNo), [](QWidget& box) {
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QApplication::sendEvent(QApplication::focusWidget(), &held);
    EXPECT_TRUE(box.isVisible()) << "closed by a key held down from before";
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &Child(box, "Cancel"));
    EXPECT_TRUE(Child<Button>(box, "Cancel").IsDefault());
    EXPECT_FALSE(Child<Button>(box, "OK").IsDefault());
    Press(Qt::Key_Return);
  }));
}

TEST_F(FrmMsgTest, TheCloseTimerSaysNoAndClosesNoOtherBox) {
  MessageRequest timed = Request(msgYesNo, "outer");
  timed.unload_time = 1ms;
  bool inner = false;
  const bool outer = Answer(timed, [&](QWidget& box) {
    inner = Answer(Request(msgYesNo, "inner"), [&](QWidget& second) {
      EXPECT_TRUE(QTest::qWaitFor([&] { return !box.isVisible(); }));
      EXPECT_TRUE(second.isVisible());
      Press(Qt::Key_Y);
    });
  });
  EXPECT_TRUE(inner);
  EXPECT_FALSE(outer);
}

TEST_F(FrmMsgTest, ThePictureBlinksThreeTimesAndStaysUntilAPressOnTheWindowOrItsPrompt) {
  Answer(Request(msgOK), [](QWidget& box) {
    auto& blink = *box.findChild<QTimer*>("tmr");
    const QWidget& picture = Child(box, "Pic");
    const QRect prompt = Child(box, "Prompt").geometry();
    std::vector<bool> seen;
    QObject::connect(&blink, &QTimer::timeout, &box, [&] { seen.push_back(picture.isVisible()); });
    blink.setInterval(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !blink.isActive(); }));
    EXPECT_EQ(seen, (std::vector<bool>{false, true, false, true, false, true}));
    EXPECT_EQ(Child(box, "Prompt").geometry(), prompt);

    QTest::mousePress(&box, Qt::LeftButton, {}, QPoint(3, 3));
    EXPECT_FALSE(picture.isVisible());
    QTest::mousePress(box.windowHandle(), Qt::LeftButton, {}, prompt.center());
    EXPECT_TRUE(picture.isVisible());
    box.close();
  });
}

TEST_F(FrmMsgTest, TheImageListHasItsNinePicturesAndOtherNumbersShowAnInformation) {
  std::string keys;
  for (const frmMsg::ListImage& image : frmMsg::Imgs()) {
    keys += std::string(image.key) + " ";
    EXPECT_FALSE(Icon(image.icon).isNull());
  }
  EXPECT_EQ(keys, "Save Update Delete Print CloseAll Information Question Critical Exclamation ");
  for (const int icon : {0, 10, -1, static_cast<int>(msgCritical)}) {
    MessageRequest request = Request(msgOK);
    request.icon = static_cast<IconStyles>(icon);
    Answer(request, [&](QWidget& box) {
      EXPECT_EQ(Child(box, "Pic").accessibleName(),
                icon == msgCritical ? "Critical" : "Information");
      box.close();
    });
  }
}

TEST_F(FrmMsgTest, EveryLineOfAPromptThatFitsIsSeen) {
  for (const std::string& prompt :
       {std::string("one\ntwo\nthree\nfour\nfive"), std::string(60, 'W'), std::string(200, 'i'),
        std::string("Der Donaudampfschifffahrtsgesellschaftskapitän will etwas wissen")}) {
    Answer(Request(msgOK, prompt), [](QWidget& box) {
      const auto& text = Child<QPlainTextEdit>(box, "Prompt");
      EXPECT_EQ(text.verticalScrollBar()->maximum(), 0);
      QTextCursor cursor = text.textCursor();
      do {
        EXPECT_TRUE(text.viewport()->rect().contains(text.cursorRect(cursor)));
      } while (cursor.movePosition(QTextCursor::NextCharacter));
      EXPECT_TRUE(box.rect().contains(text.geometry()));
      box.close();
    });
  }
}

TEST_F(FrmMsgTest, AHugePromptScrollsInABoxThatFitsTheScreen) {
  for (const char* const unit : {"word ", "x", "\n", "क"}) {
    std::string prompt;
    while (prompt.size() < 1'000'000) prompt += unit;
    EXPECT_TRUE(Answer(Request(msgOKCancel, prompt), [&](QWidget& box) {
      EXPECT_TRUE(box.screen()->availableGeometry().contains(box.geometry()));
      Press(Qt::Key_C, Qt::ControlModifier);
      EXPECT_EQ(QApplication::clipboard()->text(), QString::fromStdString(prompt));
      auto& text = Child<QPlainTextEdit>(box, "Prompt");
      Press(Qt::Key_Tab);
      Press(Qt::Key_Tab);  // past the second button
      EXPECT_EQ(QApplication::focusWidget(), &text);
      Press(Qt::Key_PageDown);
      EXPECT_GT(text.verticalScrollBar()->value(), 0);
      Press(Qt::Key_O);
    }));
  }
}

TEST_F(FrmMsgTest, AnAnimatedBoxGrowsOutOfTheControlBeforeItIsShown) {
  QLineEdit control;
  const std::shared_ptr<Object> object = WidgetObject(control);
  MessageRequest request = Request(msgOK);
  request.animate = true;
  request.focus = false;
  for (Object* const hidden : {static_cast<Object*>(nullptr), object.get()}) {
    request.converge_to = hidden;
    Answer(request, [](QWidget& box) { box.close(); });
  }
  EXPECT_TRUE(desktop_.frames.empty()) << "there is no control on the screen";
  control.show();
  QRect shown;
  Answer(request, [&](QWidget& box) {
    shown = box.frameGeometry();
    box.close();
  });
  ASSERT_EQ(desktop_.frames.size(), 1U);
  const FrameRecorder::Frame& frame = desktop_.frames[0];
  EXPECT_FALSE(frame.box_shown);
  EXPECT_EQ(frame.from.Left, control.mapToGlobal(QPoint(0, 0)).x());
  EXPECT_EQ(frame.from.Right - frame.from.Left, control.width());
  EXPECT_EQ(QPoint(frame.to.Left, frame.to.Top), shown.topLeft());
  EXPECT_EQ(frame.to.Bottom - frame.to.Top, shown.height());
  EXPECT_EQ(frame.steps, WireSteps(frame.from, frame.to, 8));
}

TEST_F(FrmMsgTest, TheFocusGoesToTheControlOnlyWhenAskedFor) {
  QWidget form;
  QLineEdit first(&form);
  QLineEdit second(&form);
  form.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  const std::shared_ptr<Object> object = WidgetObject(second);
  for (const bool focus : {false, true}) {
    first.setFocus();
    MessageRequest request = Request(msgOK);
    request.converge_to = object.get();
    request.focus = focus;
    Answer(request, [](QWidget& box) { box.close(); });
    EXPECT_EQ(form.focusWidget(), focus ? &second : &first);
  }
}

TEST_F(FrmMsgTest, TheAnswerOutlivesTheControlAndTheWindowBelow) {
  auto form = std::make_unique<QWidget>();
  form->show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
  const std::shared_ptr<Object> object = WidgetObject(*form);
  MessageRequest request = Request(msgYesNo);
  request.converge_to = object.get();
  EXPECT_TRUE(Answer(request, [&](QWidget& box) {
    EXPECT_EQ(box.windowHandle()->transientParent(), form->windowHandle());
    form.reset();
    EXPECT_TRUE(box.isVisible());
    QTest::keyClick(&box, Qt::Key_Y);
  }));
}

}  // namespace
}  // namespace kel
