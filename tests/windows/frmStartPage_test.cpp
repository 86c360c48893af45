#include "engine/frmStartPage.h"

#include <gtest/gtest.h>

#include <QTest>
#include <tuple>
#include <vector>

#include "platform/qt/qt_report_windows.h"
#include "support/modal_window.h"

namespace kel {
namespace {

using testing::Child;
using testing::WhenModal;

class FrmStartPageTest : public ::testing::Test {
 protected:
  // Types into the dialog and closes it with Enter.
  void Enter(const QString& typed) {
    frmStartPage dialog(job_);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClicks(QApplication::focusWidget(), typed);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
  }

  JobValues job_;
};

TEST_F(FrmStartPageTest, TheTypedNumberBecomesTheFirstPage) {
  struct Case {
    PageNumber before;
    QString typed;
    PageNumber after;
    bool changed;
  };
  for (const Case& entry :
       {Case{0, "", 1, true}, Case{5, "5", 5, false}, Case{5, "9999", 9999, true}}) {
    job_.first_page = entry.before;
    job_.start_page_changed = true;  // of the time before
    Enter(entry.typed);
    EXPECT_EQ(std::tuple(job_.first_page, job_.start_page_changed),
              std::tuple(entry.after, entry.changed))
        << entry.before << " " << entry.typed.toStdString();
  }
}

TEST_F(FrmStartPageTest, ItShowsTheFirstPageNumberSelected) {
  job_.first_page = 7;
  frmStartPage dialog(job_);
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  testing::SavePicture(dialog, "frmStartPage");
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "txtPageNo");
  EXPECT_EQ(Child<QLineEdit>(dialog, "txtPageNo").selectedText(), "7");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_O, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }));
}

TEST_F(FrmStartPageTest, LeavingWithoutOkChangesNothing) {
  for (const bool escape : {true, false}) {
    job_.first_page = 7;
    job_.start_page_changed = true;
    frmStartPage dialog(job_);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClicks(QApplication::focusWidget(), "20");
    if (escape) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    } else {
      dialog.close();
    }
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(std::tuple(job_.first_page, job_.start_page_changed), std::tuple(7, false));
  }
}

TEST_F(FrmStartPageTest, TheEngineAsksItModally) {
  WhenModal("frmStartPage", [](QWidget& dialog) {
    Child<QLineEdit>(dialog, "txtPageNo").setText("31");
    QTest::mouseClick(&Child(dialog, "cmdOk"), Qt::LeftButton);
  });
  QtReportWindows().AskStartPage(job_);
  EXPECT_EQ(std::tuple(job_.first_page, job_.start_page_changed), std::tuple(31, true));
}

}  // namespace
}  // namespace kel
