#include "platform/qt/qt_report_windows.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>

#include "engine/CPrint.h"
#include "engine/memory_grid.h"
#include "platform/qt/qt_host.h"
#include "preview/frmPV.h"
#include "support/modal_window.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

using testing::Child;
using testing::WhenModal;

// Previews as a program opens them: through CPrint, with the windows of the Qt host.
class QtReportWindowsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InstallQtHost(); }

  void SetUp() override {
    CurrentJob() = {};
    FillGrid(grid_, 100);
    print_.ColWidth(Value::Array{6, 20});
    print_.Lines(20);
  }
  void TearDown() override {
    if (QWidget* const preview = Preview()) preview->close();
    EXPECT_TRUE(QTest::qWaitFor([] { return Preview() == nullptr; }));
    EXPECT_FALSE(print_.LastError()) << print_.LastError()->Description();
  }

  static void FillGrid(MemoryGrid& grid, int rows) {
    grid.AddRow({"No", "Account"});
    for (int row = 1; row <= rows; ++row) grid.AddRow({std::to_string(row), "Cash in hand"});
  }

  static QWidget* Preview() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmPV" && window->isVisible()) return window;
    }
    return nullptr;
  }
  // "1/7": the page on show and how many there are.
  static QString PageBox() { return Child<QLineEdit>(*Preview(), "txtPage").text(); }
  static QString FirstOf(std::int32_t pages) { return "1/" + QString::number(pages); }

  MemoryGrid grid_{"Day Book"};
  CPrint print_;
};

TEST_F(QtReportWindowsTest, StyleZeroOpensThePreviewBesideTheProgram) {
  print_.PrintPreview(grid_);
  ASSERT_NE(Preview(), nullptr);
  EXPECT_FALSE(Preview()->isModal());
  EXPECT_FALSE(Preview()->testAttribute(Qt::WA_QuitOnClose));
  EXPECT_GT(print_.Pages(), 1);
  EXPECT_EQ(PageBox(), FirstOf(print_.Pages()));
  const QPointer<QWidget> preview = Preview();
  preview->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return preview.isNull(); })) << "a closed preview stays behind";
}

TEST_F(QtReportWindowsTest, StyleOneReturnsWhenThePreviewIsClosed) {
  bool shown = false;
  WhenModal("frmPV", [&](QWidget& preview) {
    shown = true;
    EXPECT_EQ(preview.windowModality(), Qt::ApplicationModal);
    CPrint second;
    second.ColWidth(Value::Array{6, 20});
    second.PrintPreview(grid_, 0, 0, 5, 1, 1);  // comes into the same window
    EXPECT_EQ(PageBox(), "1/1");
    QTest::keyClick(&preview, Qt::Key_O, Qt::ControlModifier);
  });
  print_.PrintPreview(grid_, {}, {}, {}, {}, 1);
  EXPECT_TRUE(shown);
  EXPECT_EQ(Preview(), nullptr);
}

TEST_F(QtReportWindowsTest, ASecondReportComesUpInTheOpenWindow) {
  print_.PrintPreview(grid_);
  const QPointer<QWidget> first = Preview();
  const QString before = PageBox();
  MemoryGrid other("Ledger");
  FillGrid(other, 300);
  for (const int style : {0, 1}) {
    CPrint second;
    second.ColWidth(Value::Array{6, 20});
    second.PrintPreview(other, {}, {}, {}, {}, style);  // modal or not, it does not wait
    EXPECT_EQ(Preview(), first);
    EXPECT_NE(PageBox(), before);
    EXPECT_EQ(PageBox(), FirstOf(second.Pages()));
  }
}

TEST_F(QtReportWindowsTest, BesideAModalDialogThePreviewCanBeUsed) {
  print_.PrintPreview(grid_);
  QDialog dialog;
  dialog.setModal(true);
  dialog.show();
  ASSERT_EQ(QApplication::activeModalWidget(), &dialog);
  print_.PrintPreview(grid_);  // the window that is open already
  ASSERT_NE(Preview(), nullptr);
  QTest::keyClick(Preview(), Qt::Key_N, Qt::ControlModifier);
  EXPECT_TRUE(PageBox().startsWith("2/"));
  Preview()->close();
  ASSERT_TRUE(QTest::qWaitFor([] { return Preview() == nullptr; }));

  WhenModal("frmPV", [](QWidget& preview) { preview.close(); });
  print_.PrintPreview(grid_);  // a new one goes on when it is closed
  EXPECT_EQ(Preview(), nullptr);
}

TEST_F(QtReportWindowsTest, AnAskedForFirstPageNumberIsPrintedAndKept) {
  WhenModal("frmStartPage", [](QWidget& dialog) {
    Child<QLineEdit>(dialog, "txtPageNo").setText("31");
    QTest::mouseClick(&Child(dialog, "cmdOk"), Qt::LeftButton);
  });
  print_.PrintPreview(grid_, {}, {}, {}, {}, 0, true);
  EXPECT_EQ(CurrentJob().first_page, 31);
  EXPECT_EQ(print_.CurrentPage(), 30 + print_.Pages());
  EXPECT_EQ(PageBox(), FirstOf(print_.Pages()));
}

TEST_F(QtReportWindowsTest, APreviewIsClosedWithTheProgramsEventLoop) {
  print_.PrintPreview(grid_);
  const QPointer<QWidget> preview = Preview();
  QTimer::singleShot(0, qApp, &QCoreApplication::quit);
  QCoreApplication::exec();
  EXPECT_TRUE(preview.isNull() || !preview->isVisible());
}

}  // namespace
}  // namespace kel
