#include "platform/qt/qt_desktop.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>
#include <QTest>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "common/host.h"
#include "controls/widget_object.h"
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

TEST(QtDesktopTest, AControlsRectangleIsThatOnTheScreen) {
  QtDesktop desktop;
  QWidget form;
  QLineEdit control(&form);
  control.setGeometry(30, 40, 120, 20);
  form.setGeometry(100, 200, 300, 100);
  const std::shared_ptr<Object> object = WidgetObject(control);
  EXPECT_FALSE(desktop.ScreenRect(*object).has_value());
  form.show();
  ASSERT_TRUE(desktop.ScreenRect(*object).has_value());
  EXPECT_EQ(ToQRect(*desktop.ScreenRect(*object)),
            QRect(form.geometry().topLeft() + QPoint(30, 40), QSize(120, 20)));
}

TEST(QtDesktopTest, TheWorkAreaIsWhatTheScreenLeavesFree) {
  EXPECT_EQ(ToQRect(QtDesktop().WorkArea()), QGuiApplication::primaryScreen()->availableGeometry());
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
}

TEST(QtDesktopTest, TheWireFrameIsDrawnOnlyWithStepsAndOnlyOnTheScreen) {
  WireFrameWatch watch;
  QtDesktop desktop;
  desktop.DrawWireRects({0, 0, 10, 10}, {50, 50, 100, 100}, 0, 1ms);
  desktop.DrawWireRects({0, 0, 10, 10}, {50, 50, 100, 100}, -3, 1ms);
  EXPECT_TRUE(watch.outlines.empty());
  const QRect screens = QGuiApplication::primaryScreen()->virtualGeometry();
  desktop.DrawWireRects({0, 0, 10, 10}, {-2'000'000'000, 5, 2'000'000'000, 2'000'000'000}, 3, 0ms);
  desktop.DrawWireRects({-90, -90, -50, -50}, {-40, -40, -20, -20}, 2, 0ms);
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
class FirstWindowTest : public ::testing::Test {
 protected:
  using Variables = std::vector<std::pair<QString, QString>>;
  struct Output {
    bool ended_well = false;
    QString printed;
    QString errors;
  };

  static Output Run(const Variables& variables, const QStringList& arguments = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const name :
         {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME"}) {
      environment.remove(name);
    }
    for (const auto& [name, value] : variables) environment.insert(name, value);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(KELDLL_FIRST_WINDOW, arguments);
    const bool ended = program.waitForFinished();
    Output output;
    output.ended_well =
        ended && program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0;
    output.printed = program.readAllStandardOutput();
    output.errors = program.readAllStandardError();
    return output;
  }
};

TEST_F(FirstWindowTest, WithoutADisplayTheMessageIsWrittenAndTheProgramGoesOn) {
  const std::vector<Variables> cases = {{},
                                        {{"DISPLAY", ":987"}},
                                        {{"WAYLAND_DISPLAY", "wayland-987"}},
                                        {{"QT_QPA_PLATFORM", "no-such-platform"}},
                                        {{"QT_QPA_PLATFORM", "xcb"}, {"DISPLAY", ":987"}},
                                        {{"DISPLAY", ":987"}, {"QT_QPA_PLATFORMTHEME", "gtk3"}}};
  for (const Variables& variables : cases) {
    const Output output = Run(variables);
    EXPECT_TRUE(output.ended_well) << output.errors.toStdString();
    EXPECT_TRUE(output.printed.startsWith("yes \napplication made\nplatform offscreen\nscreen 0\n"))
        << output.printed.toStdString();
    EXPECT_TRUE(output.errors.contains("Information: Day closed\n"));
  }
}

TEST_F(FirstWindowTest, AnOffscreenWindowThatWasAskedForIsShown) {
  const Output output = Run({{"QT_QPA_PLATFORM", "offscreen"}});
  EXPECT_TRUE(output.ended_well);
  EXPECT_TRUE(output.printed.startsWith("no \napplication made\n"));  // it closed by itself
  EXPECT_FALSE(output.errors.contains("Day closed"));
}

TEST_F(FirstWindowTest, LocaleAndEnvironmentStayAsTheProgramHasThem) {
  const Output output = Run({{"LC_ALL", "C.UTF-8"}, {"DISPLAY", ":987"}});
  EXPECT_TRUE(output.printed.endsWith("locale C\nQT_QPA_PLATFORM unset\n"));
}

TEST_F(FirstWindowTest, AThreadThatEndsBeforeTheProgramDoesNotGetTheApplication) {
  const Output output = Run({{"QT_QPA_PLATFORM", "offscreen"}}, {"thread"});
  EXPECT_TRUE(output.ended_well);
  EXPECT_TRUE(output.printed.startsWith("yes \napplication none\n"));
  EXPECT_TRUE(output.errors.contains("Information: Day closed\n"));
}

TEST_F(FirstWindowTest, AProgramMayEndWithItsWaitWindowOpen) {
  const Output output = Run({{"QT_QPA_PLATFORM", "offscreen"}}, {"wait"});
  EXPECT_TRUE(output.ended_well) << output.errors.toStdString();
}

TEST_F(FirstWindowTest, BesideAnApplicationWithoutWidgetsMessagesAreWritten) {
  for (const QString& kind : {QString("core"), QString("gui")}) {
    const Output output = Run({{"QT_QPA_PLATFORM", "offscreen"}}, {kind});
    EXPECT_TRUE(output.ended_well);
    EXPECT_TRUE(output.printed.startsWith("yes \n"));
    EXPECT_TRUE(output.errors.contains("Information: Day closed\n"));
  }
}

}  // namespace
}  // namespace kel
