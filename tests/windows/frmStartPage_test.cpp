#include "engine/frmStartPage.h"

#include <gtest/gtest.h>

#include <QTest>
#include <tuple>
#include <vector>

#include "support/modal_window.h"

namespace kel {
namespace {

TEST(FrmStartPageTest, TheShownNumberIsTypedOverAndTakenByOkOrEnterOnly) {
  const std::vector<std::tuple<Qt::Key, Qt::KeyboardModifiers, PageNumber>> ways = {
      {Qt::Key_Return, Qt::NoModifier, 20},
      {Qt::Key_O, Qt::AltModifier, 20},
      {Qt::Key_Escape, Qt::NoModifier, 7},
      {Qt::Key_unknown, Qt::NoModifier, 7}};  // closed by its frame
  for (const auto& [key, modifiers, after] : ways) {
    SCOPED_TRACE(key);
    JobValues job;
    job.first_page = 7;
    job.start_page_changed = true;  // of the time before
    frmStartPage dialog(job);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    testing::SavePicture(dialog, "frmStartPage");
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "txtPageNo");
    EXPECT_EQ(testing::Child<QLineEdit>(dialog, "txtPageNo").selectedText(), "7");
    QTest::keyClicks(QApplication::focusWidget(), "20");
    if (key == Qt::Key_unknown) {
      dialog.close();
    } else {
      QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }));
    EXPECT_EQ(std::tuple(job.first_page, job.start_page_changed), std::tuple(after, after == 20));
  }
}

}  // namespace
}  // namespace kel
