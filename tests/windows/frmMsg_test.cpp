#include "toolkit/frmMsg.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
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
  static bool IsOpen() { return QApplication::activeModalWidget() != nullptr; }

  FrameRecorder desktop_;
};

TEST_F(FrmMsgTest, ABoxWithNothingButAPromptIsAnInformationWithOneOkButton) {
  EXPECT_TRUE(Answer(Request(MessageRequest().buttons, "x"), [](QWidget& box) {
    testing::SavePicture(box, "frmMsg_plain");
    EXPECT_EQ(box.windowTitle(), "  Information");
    EXPECT_EQ(Child<QPlainTextEdit>(box, "Prompt").toPlainText(), "x");
    EXPECT_TRUE(Child(box, "OK").isVisible());
    EXPECT_FALSE(Child(box, "Cancel").isVisible());
    const QPixmap picture = Child<QLabel>(box, "Pic").pixmap();
    const QSize extent = picture.deviceIndependentSize().toSize();
    const QPixmap information = Icon("information").pixmap(extent, box.devicePixelRatioF());
    EXPECT_EQ(picture.toImage(), information.toImage());
    QTest::mouseClick(&Child(box, "OK"), Qt::LeftButton);
  }));
}

TEST_F(FrmMsgTest, TheWholeButtonsValueDecidesOnButtonsAndDefault) {
  struct Case {
    int buttons;
    QString first;
    QString second;  // empty: not shown
    QString by_enter;
  };
  const std::vector<Case> cases = {{1, "&OK", "", "OK"},
                                   {2, "&Yes", "&No", "OK"},
                                   {6, "&Yes", "&No", "OK"},
                                   {10, "&Yes", "&No", "Cancel"},
                                   {3, "&OK", "&Cancel", "OK"},
                                   {7, "&OK", "&Cancel", "OK"},
                                   {11, "&OK", "&Cancel", "Cancel"},
                                   {5, "&OK", "", "OK"},
                                   {9, "&OK", "", "OK"},
                                   {0, "&OK", "", "OK"},
                                   {99, "&OK", "&Cancel", "OK"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.buttons);
    const bool answer = Answer(Request(c.buttons), [&](QWidget& box) {
      auto& second = Child<Button>(box, "Cancel");
      EXPECT_EQ(Child<Button>(box, "OK").Caption(), c.first);
      EXPECT_EQ(second.isVisible(), !c.second.isEmpty());
      if (second.isVisible()) {
        EXPECT_EQ(second.Caption(), c.second);
      }
      EXPECT_TRUE(Child<Button>(box, c.by_enter).IsDefault());
      Press(Qt::Key_Return);
    });
    EXPECT_EQ(answer, c.by_enter == "OK");
  }
}

TEST_F(FrmMsgTest, KeysAnswerAsTheButtonsWouldAndNothingElseDoes) {
  const auto none = std::optional<bool>();
  struct Case {
    int buttons;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    std::optional<bool> answer;  // empty: the box stays
  };
  const std::vector<Case> cases = {{msgYesNo, Qt::Key_Y, Qt::NoModifier, true},
                                   {msgYesNo, Qt::Key_O, Qt::NoModifier, true},
                                   {msgYesNo, Qt::Key_Y, Qt::ShiftModifier, true},
                                   {msgYesNo, Qt::Key_N, Qt::NoModifier, false},
                                   {msgOKCancel, Qt::Key_C, Qt::NoModifier, false},
                                   {msgOKCancel, Qt::Key_Escape, Qt::NoModifier, false},
                                   {msgYesNo, Qt::Key_Y, Qt::ControlModifier, none},
                                   {msgYesNo, Qt::Key_C, Qt::MetaModifier, none},
                                   {msgYesNo, Qt::Key_O, Qt::AltModifier, none},
                                   {msgYesNo, Qt::Key_N, Qt::AltModifier, false},
                                   {msgYesNo, Qt::Key_X, Qt::NoModifier, none},
                                   {msgYesNo, Qt::Key_Space, Qt::NoModifier, true},
                                   {msgYesNo | msgDefault2, Qt::Key_Enter, Qt::NoModifier, false},
                                   {msgOK, Qt::Key_O, Qt::NoModifier, true},
                                   {msgOK, Qt::Key_Escape, Qt::NoModifier, none},
                                   {msgOK, Qt::Key_C, Qt::NoModifier, none},
                                   {msgOK, Qt::Key_N, Qt::NoModifier, none}};
  for (const Case& c : cases) {
    SCOPED_TRACE(QString("%1 key %2").arg(c.buttons).arg(c.key).toStdString());
    bool stayed = false;
    const bool answer = Answer(Request(c.buttons), [&](QWidget& box) {
      Press(c.key, c.modifiers);
      stayed = box.isVisible();
      box.close();
    });
    EXPECT_EQ(stayed, !c.answer.has_value());
    EXPECT_EQ(answer, c.answer.value_or(false));
  }
}

TEST_F(FrmMsgTest, AKeyHeldDownFromBeforeDoesNotAnswer) {
  EXPECT_FALSE(Answer(Request(msgYesNo), [](QWidget& box) {
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QApplication::sendEvent(QApplication::focusWidget(), &held);
    EXPECT_TRUE(box.isVisible());
    box.close();
  }));
}

TEST_F(FrmMsgTest, EnterPressesTheButtonThatTabWentTo) {
  EXPECT_FALSE(Answer(Request(msgYesNo), [](QWidget& box) {
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

TEST_F(FrmMsgTest, WithoutAnUnloadTimeTheCloseTimerRests) {
  Answer(Request(msgOK), [](QWidget& box) {
    EXPECT_FALSE(box.findChild<QTimer*>("utmr")->isActive());
    box.close();
  });
}

TEST_F(FrmMsgTest, ThePictureBlinksThreeTimesAndStays) {
  Answer(Request(msgOK), [](QWidget& box) {
    auto& blink = *box.findChild<QTimer*>("tmr");
    EXPECT_TRUE(blink.isActive());
    const QPoint prompt = Child(box, "Prompt").pos();
    std::vector<bool> seen;
    QObject::connect(&blink, &QTimer::timeout, &box,
                     [&] { seen.push_back(Child(box, "Pic").isVisible()); });
    blink.setInterval(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !blink.isActive(); }));
    EXPECT_EQ(seen, (std::vector<bool>{false, true, false, true, false, true}));
    EXPECT_EQ(Child(box, "Prompt").pos(), prompt);
    box.close();
  });
}

TEST_F(FrmMsgTest, APressOnTheWindowOrItsPromptSwitchesThePicture) {
  Answer(Request(msgOK), [](QWidget& box) {
    box.findChild<QTimer*>("tmr")->stop();
    QTest::mousePress(&box, Qt::LeftButton, {}, QPoint(3, 3));
    EXPECT_FALSE(Child(box, "Pic").isVisible());
    QTest::mousePress(box.windowHandle(), Qt::LeftButton, {},
                      Child(box, "Prompt").geometry().center());
    EXPECT_TRUE(Child(box, "Pic").isVisible());
    box.close();
  });
}

TEST_F(FrmMsgTest, TheImageListHasItsNinePicturesInThePublishedOrder) {
  const std::vector<std::string> keys = {"Save",     "Update",   "Delete",
                                         "Print",    "CloseAll", "Information",
                                         "Question", "Critical", "Exclamation"};
  std::vector<std::string> found;
  std::set<QByteArray> pictures;
  for (const frmMsg::ListImage& image : frmMsg::Imgs()) {
    found.emplace_back(image.key);
    const QImage picture = Icon(image.icon).pixmap(32, 32).toImage();
    pictures.insert(QByteArray(reinterpret_cast<const char*>(picture.constBits()),
                               static_cast<qsizetype>(picture.sizeInBytes())));
  }
  EXPECT_EQ(found, keys);
  EXPECT_EQ(pictures.size(), keys.size());
  EXPECT_STREQ(frmMsg::Imgs()[msgCritical - 1].key, "Critical");
}

TEST_F(FrmMsgTest, AnIconOutsideTheListShowsThatOfAnInformation) {
  for (const int icon : {0, 10, -1}) {
    MessageRequest request = Request(msgOK);
    request.icon = static_cast<IconStyles>(icon);
    Answer(request, [](QWidget& box) {
      EXPECT_EQ(Child(box, "Pic").accessibleName(), "Information");
      box.close();
    });
  }
}

TEST_F(FrmMsgTest, ThePromptIsPlainTextWithItsLinesAndCtrlCCopiesIt) {
  const QString prompt = "<b>Cash</b> & Bank\nsecond line";
  Answer(Request(msgYesNo | msgDefault2, prompt.toStdString()), [&](QWidget& box) {
    testing::SavePicture(box, "frmMsg_two_lines");
    EXPECT_EQ(Child<QPlainTextEdit>(box, "Prompt").toPlainText(), prompt);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), prompt);
    EXPECT_TRUE(box.isVisible());
    box.close();
  });
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
  constexpr std::size_t kHuge = 1'000'000;
  const auto repeated = [](const std::string& unit) {
    std::string text;
    while (text.size() < kHuge) text += unit;
    return text;
  };
  for (const char* const unit : {"word ", "x", "\n", "क", "line\n"}) {
    const std::string prompt = repeated(unit);
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
  control.show();
  const std::shared_ptr<Object> object = WidgetObject(control);
  MessageRequest request = Request(msgOK);
  request.animate = true;
  request.converge_to = object.get();
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

TEST_F(FrmMsgTest, NothingIsAnimatedWithoutAControlOnTheScreen) {
  QLineEdit hidden;
  const std::shared_ptr<Object> object = WidgetObject(hidden);
  MessageRequest request = Request(msgOK);
  request.animate = true;
  request.focus = false;
  for (Object* const control : {static_cast<Object*>(nullptr), object.get()}) {
    request.converge_to = control;
    Answer(request, [](QWidget& box) { box.close(); });
  }
  EXPECT_TRUE(desktop_.frames.empty());
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

TEST_F(FrmMsgTest, ABoxKeepsAllOtherWindowsFromInput) {
  QLineEdit control;
  control.show();
  Answer(Request(msgOK), [&](QWidget& box) {
    QTest::keyClick(control.windowHandle(), Qt::Key_A);
    EXPECT_EQ(control.text(), "");
    box.close();
  });
  EXPECT_FALSE(IsOpen());
}

}  // namespace
}  // namespace kel
