#include "engine/frmPrint.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include "platform/qt/qt_host.h"
#include "platform/qt/qt_report_windows.h"
#include "support/modal_window.h"

namespace kel {
namespace {

using testing::Child;
using testing::WhenModal;

constexpr std::int32_t kPages = 12;

class FrmPrintTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InstallQtHost(); }

  void SetUp() override {
    dialog_.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog_));
  }

  QLineEdit& From() { return Child<QLineEdit>(dialog_, "txtFrom"); }
  QLineEdit& To() { return Child<QLineEdit>(dialog_, "txtTo"); }
  static void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  static void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  static QString Focused() { return QApplication::focusWidget()->objectName(); }

  frmPrint dialog_{kPages};
};

TEST_F(FrmPrintTest, EnterTakesTheWholeReportThatItStartsWith) {
  testing::SavePicture(dialog_, "frmPrint");
  EXPECT_EQ(dialog_.windowTitle(), "Print (Pages-12)");
  EXPECT_EQ(Focused(), "txtFrom");
  EXPECT_EQ(From().selectedText(), "1");
  EXPECT_EQ(To().text(), "12");
  EXPECT_TRUE(dialog_.Cancelled());
  Press(Qt::Key_Return);
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_FALSE(dialog_.Cancelled());
  EXPECT_EQ(dialog_.Range(), (PageRange{1, kPages}));
}

TEST_F(FrmPrintTest, AKeyStillHeldFromBeforeDoesNotPrint) {
  for (const char* const name : {"txtFrom", "cmdPrint"}) {
    QWidget& focused = Child(dialog_, name);
    for (const auto key : {Qt::Key_Return, Qt::Key_Space}) {
      focused.setFocus();
      QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
      QApplication::sendEvent(&focused, &held);
      QTest::keyRelease(&focused, key);
    }
  }
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_TRUE(dialog_.Cancelled());
}

TEST_F(FrmPrintTest, AnInvalidRangeIsToldAndMayBeTypedAgain) {
  Type("13");
  Press(Qt::Key_Tab);
  bool told = false;
  WhenModal("frmMsg", [&](QWidget& message) {
    told = true;
    testing::SavePicture(message, "frmPrint_invalid");
    EXPECT_TRUE(Child(message, "OK").isVisible());
    EXPECT_FALSE(Child(message, "Cancel").isVisible());
    QTest::keyClick(&message, Qt::Key_Return);
  });
  Press(Qt::Key_Return);
  EXPECT_TRUE(told);
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_TRUE(dialog_.Cancelled());
  ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
  EXPECT_EQ(Focused(), "txtFrom");
  EXPECT_EQ(From().selectedText(), "13") << "typing replaces what was wrong";
  Type("4");
  To().setText("4");
  Press(Qt::Key_Enter);
  EXPECT_EQ(dialog_.Range(), (PageRange{4, 4}));
}

TEST_F(FrmPrintTest, EveryOtherWayOutCancels) {
  for (const int way : {0, 1, 2, 3, 4}) {
    frmPrint dialog(kPages);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Type("3");
    QWidget& cancel = Child(dialog, "cmdCancel");
    if (way == 0) QTest::mouseClick(&cancel, Qt::LeftButton);
    if (way == 1) QTest::keyClick(&cancel, Qt::Key_Return);
    if (way == 2) Press(Qt::Key_Escape);
    if (way == 3) Press(Qt::Key_C, Qt::AltModifier);
    if (way == 4) dialog.close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); })) << way;
    EXPECT_TRUE(dialog.Cancelled()) << way;
    EXPECT_EQ(dialog.Range(), std::nullopt) << way;
  }
}

TEST_F(FrmPrintTest, TabGoesInReadingOrderAndMnemonicsReachTheBoxes) {
  for (const char* const name : {"txtFrom", "txtTo", "cmdPrint", "cmdCancel", "txtFrom"}) {
    EXPECT_EQ(Focused(), name);
    Press(Qt::Key_Tab);
  }
  Press(Qt::Key_T, Qt::AltModifier);
  EXPECT_EQ(Focused(), "txtTo");
  EXPECT_EQ(To().selectedText(), "12");
  Press(Qt::Key_F, Qt::AltModifier);
  EXPECT_EQ(Focused(), "txtFrom");
}

TEST_F(FrmPrintTest, NoTextIsCutInALargeFont) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPointSize(before.pointSize() * 2);
  QApplication::setFont(large);
  frmPrint dialog(1'000'000);
  dialog.show();
  for (const QWidget* child : dialog.findChildren<QWidget*>()) {
    const QPoint place = child->mapTo(&dialog, QPoint(0, 0));
    EXPECT_TRUE(dialog.rect().contains({place, child->size()}))
        << child->objectName().toStdString();
    EXPECT_EQ(child->size().expandedTo(child->minimumSizeHint()), child->size());
  }
  const QLineEdit& to = Child<QLineEdit>(dialog, "txtTo");
  EXPECT_GT(to.width(), to.fontMetrics().horizontalAdvance("1000000"));
  QApplication::setFont(before);
}

TEST_F(FrmPrintTest, TheEngineGetsTheRangeOrNothing) {
  dialog_.close();
  QtReportWindows windows;
  WhenModal("frmPrint", [](QWidget& dialog) {
    QTest::keyClicks(&Child(dialog, "txtFrom"), "2");  // over the selected text
    QTest::mouseClick(&Child(dialog, "cmdPrint"), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_EQ(windows.AskPageRange(3), (PageRange{2, 3}));
  WhenModal("frmPrint", [](QWidget& dialog) { dialog.close(); });
  EXPECT_EQ(windows.AskPageRange(3), std::nullopt);
}

}  // namespace
}  // namespace kel
