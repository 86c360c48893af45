#include "platform/qt/qt_desktop.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QtWidgets>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "common/error.h"
#include "common/host.h"
#include "platform/qt/qt_application.h"
#include "platform/qt/qt_host.h"
#include "support/modal_window.h"
#include "toolkit/CZURDLL.h"
#include "toolkit/frmAbout.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

using namespace std::chrono_literals;
using testing::Child;
using testing::WhenModal;

QRect ToQRect(const RECT& rect) {
  return {rect.Left, rect.Top, rect.Right - rect.Left, rect.Bottom - rect.Top};
}

/// Writes down the outline of every wire frame that is painted.
class WireFrameWatch : public QObject {
 public:
  WireFrameWatch() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Paint || watched->objectName() != "WireFrame") return false;
    const auto& frame = static_cast<const QWidget&>(*watched);
    const QRect outline = frame.mask().boundingRect().translated(frame.pos());
    hollow = hollow && !frame.mask().contains(frame.mask().boundingRect().center());
    transparent = transparent && frame.windowFlags().testFlag(Qt::WindowTransparentForInput);
    if (outlines.empty() || outlines.back() != outline) outlines.push_back(outline);
    return false;
  }
  std::vector<QRect> outlines;
  bool hollow = true;
  bool transparent = true;
};

TEST(QtDesktopTest, TheHourglassIsSetOnceAndTakenAwayWithoutTouchingTheProgramsPointer) {
  QtDesktop desktop;
  QApplication::setOverrideCursor(Qt::CrossCursor);
  desktop.SetMousePointer(MousePointer::kDefault);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 3; ++i) desktop.SetMousePointer(MousePointer::kHourglass);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    for (int i = 0; i < 3; ++i) desktop.SetMousePointer(MousePointer::kDefault);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
  }
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(QtDesktopTest, TheWireFrameDrawsEveryStepAsAnOutlineAndIsGoneAfterwards) {
  WireFrameWatch watch;
  const RECT from = {10, 20, 60, 50};
  const RECT to = {100, 200, 400, 350};
  QtDesktop().DrawWireRects(from, to, 5, 1ms);
  ASSERT_EQ(watch.outlines.size(), 5U);
  for (int step = 1; step <= 5; ++step) {
    EXPECT_EQ(watch.outlines[static_cast<std::size_t>(step) - 1],
              ToQRect(WireRect(from, to, step, 5)));
  }
  EXPECT_TRUE(watch.hollow);
  EXPECT_TRUE(watch.transparent);
  for (const QWidget* const window : QApplication::topLevelWidgets()) {
    EXPECT_NE(window->objectName(), "WireFrame");
  }

  watch.outlines.clear();
  QtDesktop().DrawWireRects(from, to, -3, 1ms);
  EXPECT_TRUE(watch.outlines.empty());
  const QRect screens = QGuiApplication::primaryScreen()->virtualGeometry();
  QtDesktop().DrawWireRects(from, {-2'000'000'000, 5, 2'000'000'000, 2'000'000'000}, 3, 0ms);
  QtDesktop().DrawWireRects({-90, -90, -50, -50}, {-40, -40, -20, -20}, 2, 0ms);
  for (const QRect& outline : watch.outlines) EXPECT_TRUE(screens.contains(outline));
}

TEST(QtDesktopTest, AnotherThreadGetsItsAnswerWithoutAWindow) {
  QtDesktop desktop;
  std::thread([&] {
    EXPECT_FALSE(EnsureApplication());
    MessageRequest request;
    request.prompt = "from another thread";
    EXPECT_TRUE(desktop.ShowMessage(request));
    const std::unique_ptr<WaitWindow> wait = desktop.MakeWaitWindow();
    wait->Show({true, "Posting", 0, 10});
    EXPECT_TRUE(wait->Step(1, std::nullopt));
    desktop.Flash({"Saved", {}});
    desktop.SetMousePointer(MousePointer::kHourglass);
    desktop.DoEvents();
    desktop.DrawWireRects({}, {0, 0, 50, 50}, 5, 1ms);
    EXPECT_EQ(desktop.WorkArea().Right, 0);
  }).join();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_TRUE(EnsureApplication());
  EXPECT_FALSE(HasScreen());  // the platform of the tests
}

TEST(QtDesktopTest, WindowsOfTheLibraryDoNotEndTheProgram) {
  const std::shared_ptr<Desktop> before = CurrentHost().desktop;
  CurrentHost().desktop = std::make_shared<QtDesktop>();
  QApplication::setQuitOnLastWindowClosed(true);
  constexpr int kOwnEnd = 7;
  QTimer::singleShot(0, [] {
    SharedToolkit().MsgBox("x", msgOK, {}, msgInformation, false, 1);
    SharedToolkit().ShowWait(false, "Posting");
    SharedToolkit().UnloadWait();
    SharedToolkit().Flash("Saved", {}, 1);
    WhenModal("frmAbout", [](QWidget& about) { about.close(); });
    frmAbout::Show("frmPV");
    QTimer::singleShot(20, [] { QApplication::exit(kOwnEnd); });
  });
  EXPECT_EQ(QApplication::exec(), kOwnEnd);
  QApplication::setQuitOnLastWindowClosed(false);
  CurrentHost().desktop = before;
}

TEST(FrmAboutTest, ItNamesTheProductAndWhereToWriteTo) {
  WhenModal("frmAbout", [](QWidget& about) {
    testing::SavePicture(about, "frmAbout");
    EXPECT_EQ(about.property("Tag").toString(), "frmPV");
    EXPECT_EQ(Child<QLabel>(about, "lblCaption").text(), "KELDLL");
    EXPECT_TRUE(Child<QLabel>(about, "lblMail").text().contains("mailto:support@keldll.example"));
    QTest::mouseClick(&Child(about, "OK"), Qt::LeftButton);
  });
  frmAbout::Show("frmPV");
}

/// What a program without an application object of its own prints when its first message comes up.
struct FirstWindowCase {
  std::vector<std::pair<QString, QString>> variables;
  QStringList arguments;
  QString printed;  // the beginning, or with a star the end
  bool written;     // the message, on standard error
};

TEST(FirstWindowTest, MessagesAreShownOrWrittenAndTheProgramGoesOnAsItWas) {
  const std::pair<QString, QString> offscreen = {"QT_QPA_PLATFORM", "offscreen"};
  const std::pair<QString, QString> display = {"DISPLAY", ":987"};
  const QString no_display = "yes \napplication made\nplatform offscreen\nscreen 0\n";
  const std::vector<FirstWindowCase> cases = {
      {{}, {}, no_display, true},
      {{display}, {}, no_display, true},
      {{{"WAYLAND_DISPLAY", "wayland-987"}}, {}, no_display, true},
      {{{"QT_QPA_PLATFORM", "no-such-platform"}}, {}, no_display, true},
      {{{"QT_QPA_PLATFORM", "xcb"}, display}, {}, no_display, true},
      {{display, {"QT_QPA_PLATFORMTHEME", "gtk3"}}, {}, no_display, true},
      {{{"LC_ALL", "C.UTF-8"}, display}, {}, "*locale C\nQT_QPA_PLATFORM unset\n", true},
      // An offscreen window that was asked for is shown, and closes by itself.
      {{offscreen}, {}, "no \napplication made\n", false},
      // A thread that ends before the program does not get the application.
      {{offscreen}, {"thread"}, "yes \napplication none\n", true},
      // The wait window is open when the program ends.
      {{offscreen}, {"wait"}, {}, false},
      // Applications without widgets.
      {{offscreen}, {"core"}, "yes \n", true},
      {{offscreen}, {"gui"}, "yes \n", true}};
  for (const auto& [variables, arguments, printed, written] : cases) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const name :
         {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME"}) {
      environment.remove(name);
    }
    for (const auto& [name, value] : variables) environment.insert(name, value);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(KELDLL_FIRST_WINDOW, arguments);
    ASSERT_TRUE(program.waitForFinished());
    const QString out = program.readAllStandardOutput();
    const QString errors = program.readAllStandardError();
    SCOPED_TRACE((out + errors).toStdString());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_TRUE(printed.startsWith('*') ? out.endsWith(printed.mid(1)) : out.startsWith(printed));
    EXPECT_EQ(errors.contains("Information: Day closed\n"), written);
  }
}

TEST(QtDesktopTest, SentKeysAreTypedIntoTheWindowThatHasTheFocus) {
  QDialog form;
  auto* const layout = new QVBoxLayout(&form);
  auto* const first = new QLineEdit;
  auto* const second = new QLineEdit;
  auto* const save = new QPushButton("Save");
  for (QWidget* const widget :
       {static_cast<QWidget*>(first), static_cast<QWidget*>(second), static_cast<QWidget*>(save)}) {
    layout->addWidget(widget);
  }
  form.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  first->setFocus();
  QtDesktop desktop;
  const auto send = [&](int code, int shift = 0) {
    desktop.SendKey(code, shift);
    desktop.DoEvents();
  };
  for (const int code : {65, 97, 190, 219, 53}) send(code);
  for (const int code : {65, 219, 53}) send(code, 1);
  EXPECT_EQ(first->text(), "a1.[5A{%");
  send('A', 2);  // all of it
  send(46);
  EXPECT_EQ(first->text(), "");
  send(9);
  EXPECT_TRUE(second->hasFocus());
  send(9, 1);
  EXPECT_TRUE(first->hasFocus());
  QSignalSpy saved(save, &QPushButton::clicked);
  send(13);
  EXPECT_EQ(saved.count(), 1) << "the default button";
  EXPECT_THROW(desktop.SendKey(255, 0), Error);
  send(27);
  EXPECT_FALSE(form.isVisible());
  send('A');  // no window at all
}

TEST(QtDesktopTest, AWindowStaysOnTopUnderItsHandleAndADelayKeepsWindowsAlive) {
  QtDesktop desktop;
  QWidget window;
  QLineEdit edit(&window);
  window.show();
  const WId handle = window.winId();
  desktop.ShowTopMost(static_cast<std::int64_t>(handle));
  EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_TRUE(window.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(window.winId(), handle);
  EXPECT_THROW(desktop.ShowTopMost(0x7fffffff), Error);

  bool alive = false;
  QTimer::singleShot(1ms, &window, [&] { alive = true; });
  const auto start = std::chrono::steady_clock::now();
  desktop.Delay(20ms);
  EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);
  EXPECT_TRUE(alive);
}

}  // namespace
}  // namespace kel
