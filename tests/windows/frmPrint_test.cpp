#include "engine/frmPrint.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QTest>
#include <vector>

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
    Child(dialog_, name).setFocus();
    for (const int key : {Qt::Key_Return, Qt::Key_Space}) {
      QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
      QApplication::sendEvent(QApplication::focusWidget(), &held);
      QTest::keyRelease(QApplication::focusWidget(), static_cast<Qt::Key>(key));
    }
  }
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_TRUE(dialog_.Cancelled());
}

TEST_F(FrmPrintTest, ATypedRangeIsTakenByTheRulesForNumbers) {
  struct Case {
    QString from;
    QString to;
    PageRange range;
  };
  for (const Case& typed : {Case{"3", "5", {3, 5}}, Case{"12", "12", {12, 12}},
                            Case{"7", "2", {7, 2}}, Case{"2abc", " 9", {2, 9}}}) {
    frmPrint dialog(kPages);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Type(typed.from);  // over the selected text
    Press(Qt::Key_Tab);
    Type(typed.to);
    QTest::mouseClick(&Child(dialog, "cmdPrint"), Qt::LeftButton);
    EXPECT_EQ(dialog.Range(), typed.range) << typed.from.toStdString();
    EXPECT_FALSE(dialog.isVisible());
  }
}

TEST_F(FrmPrintTest, AnInvalidRangeIsToldAndMayBeTypedAgain) {
  const std::vector<std::pair<QString, QString>> invalid = {
      {"0", "5"}, {"-1", "5"}, {"13", "12"}, {"1", "13"}, {"1", "0"}, {"abc", "5"}, {"1", ""}};
  for (const auto& [from, to] : invalid) {
    From().setFocus();
    From().selectAll();
    Type(from);
    To().setFocus();
    To().selectAll();
    Press(Qt::Key_Delete);
    Type(to);
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
    EXPECT_TRUE(dialog_.isVisible()) << from.toStdString() << "-" << to.toStdString();
    EXPECT_TRUE(dialog_.Cancelled());
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    EXPECT_EQ(Focused(), "txtFrom");
    EXPECT_EQ(From().selectedText(), from) << "typing replaces what was wrong";
  }
  Type("4");
  To().setText("4");
  Press(Qt::Key_Enter);
  EXPECT_EQ(dialog_.Range(), (PageRange{4, 4}));
}

TEST_F(FrmPrintTest, EveryOtherWayOutCancels) {
  const std::vector<std::function<void(frmPrint&)>> ways = {
      [](frmPrint& dialog) { QTest::mouseClick(&Child(dialog, "cmdCancel"), Qt::LeftButton); },
      [](frmPrint& /*dialog*/) { Press(Qt::Key_Escape); }, [](frmPrint& dialog) { dialog.close(); },
      [](frmPrint& /*dialog*/) { Press(Qt::Key_C, Qt::AltModifier); },
      [](frmPrint& dialog) {
        Child(dialog, "cmdCancel").setFocus();
        Press(Qt::Key_Return);
      }};
  for (std::size_t way = 0; way < ways.size(); ++way) {
    frmPrint dialog(kPages);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Type("3");
    ways[way](dialog);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); })) << way;
    EXPECT_TRUE(dialog.Cancelled()) << way;
    EXPECT_EQ(dialog.Range(), std::nullopt) << way;
  }
}

TEST_F(FrmPrintTest, TabGoesInReadingOrderAndMnemonicsReachTheBoxes) {
  std::vector<QString> order;
  for (int i = 0; i < 4; ++i) {
    order.push_back(Focused());
    Press(Qt::Key_Tab);
  }
  EXPECT_EQ(order, (std::vector<QString>{"txtFrom", "txtTo", "cmdPrint", "cmdCancel"}));
  EXPECT_EQ(Focused(), "txtFrom");
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
  {
    frmPrint dialog(1'000'000);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    for (const QWidget* child : dialog.findChildren<QWidget*>()) {
      EXPECT_TRUE(dialog.rect().contains(
          child->geometry().translated(child->parentWidget()->mapTo(&dialog, QPoint(0, 0)))))
          << child->objectName().toStdString();
      EXPECT_GE(child->width(), child->minimumSizeHint().width());
      EXPECT_GE(child->height(), child->minimumSizeHint().height());
    }
    const QLineEdit& to = Child<QLineEdit>(dialog, "txtTo");
    EXPECT_GT(to.width(), to.fontMetrics().horizontalAdvance("1000000"));
    testing::SavePicture(dialog, "frmPrint_large_font");
  }
  QApplication::setFont(before);
}

TEST_F(FrmPrintTest, TheEngineGetsTheRangeOrNothing) {
  dialog_.close();
  QtReportWindows windows;
  WhenModal("frmPrint", [](QWidget& dialog) {
    Child<QLineEdit>(dialog, "txtFrom").setText("2");
    QTest::mouseClick(&Child(dialog, "cmdPrint"), Qt::LeftButton);
  });
  EXPECT_EQ(windows.AskPageRange(3), (PageRange{2, 3}));
  WhenModal("frmPrint", [](QWidget& dialog) { dialog.close(); });
  EXPECT_EQ(windows.AskPageRange(3), std::nullopt);
}

}  // namespace
}  // namespace kel
