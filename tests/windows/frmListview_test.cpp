#include "listview/frmListview.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>
#include <memory>
#include <string>

#include "common/host.h"
#include "controls/widget_object.h"
#include "data/sqlite.h"
#include "listview/CListView.h"
#include "platform/qt/qt_host.h"
#include "support/modal_window.h"
#include "support/recording_desktop.h"
#include "support/sqlite_file.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::Child;
using testing::WhenModal;

constexpr int kRecords = 20'000;

// A list window as a program opens it, over a real database, driven by mouse and keyboard.
class ListviewTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InstallQtHost(); }

  void SetUp() override {
    CurrentHost().desktop = desktop_;
    CurrentHost().settings = settings_;
    const auto file = testing::WriteDatabase(
        folder_ / "books.db",
        "CREATE TABLE Ledger (Id INTEGER PRIMARY KEY, Name TEXT, Amount DOUBLE, Dt DATE, Remarks "
        "MEMO);"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
            std::to_string(kRecords) +
            ") INSERT INTO Ledger SELECT i, 'Account ' || (i * 7919 % 20011), i * 1.5, "
            "date('2026-04-01', i || ' days'), CASE i % 3 WHEN 0 THEN NULL ELSE 'line one' || "
            "char(13, 10) || 'line two' END FROM n;"
            "CREATE TRIGGER guard BEFORE UPDATE ON Ledger WHEN new.Amount < 0 BEGIN "
            "SELECT RAISE(ABORT, 'no negative amounts'); END;");
    connection_ = std::make_shared<Connection>(OpenSqlite(file.string(), Access::kReadWrite));
    OpenRecords("SELECT * FROM Ledger");
    list_.Caption("Ledger");
    list_.ActiveCols(";1;2;4;");
    list_.ColFormats(Value::Array{"", "", "#,##0.00", "dd/mm/yyyy"});
    list_.ColSums("");
    list_.RDSet(records_);
    list_.Cnn(connection_);
  }
  void TearDown() override {
    if (Window() != nullptr) Window()->close();
    EXPECT_TRUE(QTest::qWaitFor([] { return Window() == nullptr; }));
    EXPECT_FALSE(list_.LastError());
  }

  void OpenRecords(const std::string& sql) {
    records_->FetchesInSlices(true);
    records_->Open(sql, *connection_, CursorType::kKeyset, LockType::kOptimistic);
  }
  static QWidget* Window() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmListview" && window->isVisible()) return window;
    }
    return nullptr;
  }
  void Show() {
    list_.ShowListView();
    ASSERT_NE(Window(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(Window()));
  }
  void ShowAll() {
    Show();
    ASSERT_TRUE(QTest::qWaitFor([] { return !Position().contains("so far"); }));
  }

  static QTableView& Grid() { return Child<QTableView>(*Window(), "Grid"); }
  static QScrollBar& Bar() { return Child<QScrollBar>(*Window(), "VS"); }
  static QString Position() { return Child<QLabel>(*Window(), "lblPosition").text(); }
  static QString Cell(int row, int column) {
    return Grid().model()->index(row, column).data().toString();
  }
  static QString Heading(int column) {
    return Grid().model()->headerData(column, Qt::Horizontal).toString();
  }
  static QAction& Item(const char* name) { return *Window()->findChild<QAction*>(name); }
  static void Click(const char* button) {
    QTest::mouseClick(&Child(*Window(), button), Qt::LeftButton);
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    QCoreApplication::processEvents();
  }
  static void Type(const QString& text) {  // the first character may open an editor
    for (const QChar c : text) QTest::keyClicks(QApplication::focusWidget(), c);
  }
  static void ClickCell(int row, int column) {
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, CellPlace(row, column));
  }
  static QPoint CellPlace(int row, int column) {
    return Grid().visualRect(Grid().model()->index(row, column)).center();
  }
  static QPoint HeadingPlace(int column) {
    const QHeaderView& header = *Grid().horizontalHeader();
    return {header.sectionViewportPosition(column) + header.sectionSize(column) / 2,
            header.height() / 2};
  }
  static void ClickHeading(int column, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(Grid().horizontalHeader()->viewport(), Qt::LeftButton, modifiers,
                      HeadingPlace(column));
  }
  std::string LastMessage() {
    return desktop_->messages.empty() ? "" : desktop_->messages.back().prompt;
  }

  testing::TestFolder folder_;
  std::shared_ptr<testing::RecordingDesktop> desktop_ =
      std::make_shared<testing::RecordingDesktop>();
  std::shared_ptr<SettingsStore> settings_ = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Recordset> records_ = std::make_shared<Recordset>();
  CListView list_;
};

TEST_F(ListviewTest, TheFirstScreenIsThereBeforeAllRowsAreAndTheRestComesWhileIdle) {
  Show();
  EXPECT_EQ(records_->RecordCount(), -1);
  EXPECT_TRUE(Position().startsWith("Record 1 of ") && Position().endsWith(" so far..."));
  EXPECT_EQ(Cell(0, 2), "1.50");
  EXPECT_EQ(Cell(0, 3), "02/04/2026");
  EXPECT_EQ(Cell(0, 4), "line one line two");
  EXPECT_EQ(Cell(2, 4), "");
  EXPECT_EQ(Heading(1), "Name*");
  EXPECT_EQ(Heading(3), "Dt");
  EXPECT_LT(Grid().model()->rowCount(), 60) << "rows that are not in view";
  ASSERT_TRUE(QTest::qWaitFor([] { return Position() == "Record 1 of 20,000"; }));
  testing::SavePicture(*Window(), "frmListview");

  Press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(Position(), "Record 20,000 of 20,000");
  const int last = Grid().currentIndex().row();
  EXPECT_EQ(Cell(last, 0), "20000");
  EXPECT_EQ(Bar().value(), Bar().maximum());
  EXPECT_LE(Grid().visualRect(Grid().currentIndex()).bottom(), Grid().viewport()->height());
  Press(Qt::Key_PageUp);
  Press(Qt::Key_Up);
  EXPECT_EQ(records_->AbsolutePosition(), kRecords - last - 2 + (last - Bar().pageStep() + 1));
  Bar().setValue(0);  // scrolling goes nowhere
  EXPECT_EQ(Cell(0, 0), "1");
  EXPECT_FALSE(Grid().currentIndex().isValid());
  ClickCell(3, 1);
  EXPECT_EQ(Position(), "Record 4 of 20,000");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Grid().currentIndex().column(), 2);
  Press(Qt::Key_End);
  Press(Qt::Key_Tab);
  EXPECT_EQ(Position(), "Record 5 of 20,000");
  EXPECT_EQ(Grid().currentIndex().column(), 0);
  Click("First");
  EXPECT_EQ(records_->AbsolutePosition(), 1);
  Press(Qt::Key_Backtab);  // out of the grid, before its first cell
  EXPECT_NE(QApplication::focusWidget(), &Grid());
}

TEST_F(ListviewTest, HeadingsSelectColumnsAndClicksOnThemSort) {
  ShowAll();
  ClickHeading(1);
  EXPECT_EQ(records_->Sort(), "[Name] ASC");
  EXPECT_EQ(Grid().horizontalHeader()->sortIndicatorSection(), 1);
  ClickHeading(1);
  EXPECT_EQ(records_->Sort(), "[Name] DESC");
  EXPECT_EQ(Grid().horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);

  QWidget* const header = Grid().horizontalHeader()->viewport();
  QTest::mouseClick(header, Qt::LeftButton, {}, HeadingPlace(1));
  const QPointF place = HeadingPlace(1);
  QMouseEvent again(QEvent::MouseButtonDblClick, place, header->mapToGlobal(place), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(header, &again);
  QTest::mouseRelease(header, Qt::LeftButton, {}, HeadingPlace(1));
  EXPECT_EQ(records_->Sort(), "[Name] DESC") << "two clicks, however quick";
  QTest::mousePress(header, Qt::LeftButton, {}, HeadingPlace(0));
  QTest::mouseMove(header, HeadingPlace(1));
  QTest::mouseMove(header, HeadingPlace(2));
  QTest::mouseRelease(header, Qt::LeftButton, {}, HeadingPlace(2));
  EXPECT_EQ(records_->Sort(), "[Name] DESC") << "a drag only selects";
  Click("Asc");
  EXPECT_EQ(records_->Sort(), "[Id] ASC,[Name] ASC,[Amount] ASC");
  ClickHeading(1, Qt::ShiftModifier);  // shrinks what is selected, then sorts
  EXPECT_EQ(records_->Sort(), "[Id] ASC,[Name] ASC");
  ClickCell(0, 3);
  Click("Dsc");
  EXPECT_EQ(records_->Sort(), "[Dt] DESC");
  Press(Qt::Key_Right, Qt::ShiftModifier | Qt::ControlModifier);
  Click("Dsc");
  EXPECT_EQ(records_->Sort(), "[Dt] DESC,[Remarks] DESC");
  Press(Qt::Key_F5);
  EXPECT_EQ(records_->Sort(), "");
  EXPECT_EQ(Grid().horizontalHeader()->sortIndicatorSection(), -1);
}

TEST_F(ListviewTest, CellsAreEditedAndWhatIsRefusedIsTold) {
  ShowAll();
  ClickCell(1, 2);
  Type("12.25");
  Press(Qt::Key_Return);
  ASSERT_TRUE(QTest::qWaitFor([] { return Cell(1, 2) == "12.25"; }));
  Press(Qt::Key_F2);
  EXPECT_EQ(qobject_cast<QLineEdit*>(QApplication::focusWidget())->text(), "12.25");
  for (const char* const refused : {"-1", "many"}) {
    desktop_->messages.clear();
    Type(refused);
    Press(Qt::Key_Tab);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !desktop_->messages.empty(); }));
    EXPECT_EQ(desktop_->messages.size(), 1U);
    EXPECT_EQ(desktop_->messages.back().title, "Ledger");
    EXPECT_EQ(desktop_->messages.back().unload_time, std::chrono::milliseconds(4000));
    EXPECT_EQ(Cell(1, 2), "12.25");
    EXPECT_EQ(Grid().currentIndex().column(), 3);
    ClickCell(1, 2);
  }
  Type("99");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Cell(1, 2), "12.25");
  ASSERT_NE(Window(), nullptr) << "Escape in a cell closes the window";

  ClickCell(0, 3);  // locked
  Type("1");
  EXPECT_EQ(QApplication::focusWidget(), &Grid());

  ClickCell(0, 4);
  QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, CellPlace(0, 4));
  auto* const box = qobject_cast<QPlainTextEdit*>(QApplication::focusWidget());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->toPlainText(), "line one\nline two");
  Press(Qt::Key_End, Qt::ControlModifier);
  Press(Qt::Key_Return, Qt::ShiftModifier);
  Type("three");
  testing::SavePicture(*Window(), "frmListview-edit");
  Press(Qt::Key_Return);
  EXPECT_EQ(records_->FieldValue("Remarks").ToText(), "line one\r\nline two\r\nthree");
  Recordset stored;
  stored.Open("SELECT Amount, Remarks FROM Ledger WHERE Id IN (1, 2) ORDER BY Id DESC",
              *connection_);
  EXPECT_EQ(stored.FieldText(0), "12.25");

  ClickCell(2, 1);
  Press(Qt::Key_F2);
  QApplication::focusWidget()->setProperty("text", QString::fromUtf8("حساب النقدية 12"));
  Press(Qt::Key_Tab);
  EXPECT_EQ(records_->FieldValue("Name").ToText(), "حساب النقدية 12");
}

TEST_F(ListviewTest, TheMenuOffersWhatTheColumnUnderTheMouseHas) {
  ShowAll();
  ClickCell(0, 2);
  struct Case {
    int column;
    bool hides, totals;
  };
  QString seen;
  const auto right_click = [&](QPoint place, const std::function<void(QMenu&)>& act) {
    seen.clear();
    QTimer::singleShot(0, Window(), [&] {
      auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (menu == nullptr) return;
      for (const QAction* const item : menu->actions()) {
        if (item->isVisible() && !item->isSeparator()) seen += item->text() + "|";
      }
      act(*menu);
      menu->close();
    });
    QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, place);
  };
  const QString common =
      "Sort &Ascending|Sort &Descending|Move &First|Move &Last|&Total Records|&Find|Filt&er|"
      "&Refresh|&Align Grid|";
  for (const Case& c :
       {Case{0, true, true}, {1, true, false}, {2, true, true}, {-1, false, false}}) {
    const QPoint place =
        c.column < 0 ? QPoint(Grid().viewport()->width() - 3, 5) : CellPlace(0, c.column);
    right_click(place, [](QMenu&) {});
    EXPECT_EQ(seen, common + (c.totals ? "Print &Column Total|" : "") + "&Print|Print Previe&w|" +
                        (c.hides ? "&Hide Column|" : "") + "&About|")
        << c.column;
    EXPECT_FALSE(Item("mnuHideColumn").isVisible());
  }
  const auto toggle = [&](QMenu& menu) {
    menu.setActiveAction(&Item("mnuPrintColumnTotal")), QTest::keyClick(&menu, Qt::Key_Return);
  };
  right_click(CellPlace(0, 0), toggle);  // acts on the current column, which is 2
  EXPECT_EQ(list_.ColSums().ToText(), ";2;");
  right_click(CellPlace(0, 2), [&](QMenu& menu) {
    EXPECT_TRUE(Item("mnuPrintColumnTotal").isChecked());
    toggle(menu);
  });
  EXPECT_EQ(list_.ColSums().ToText(), "");

  Item("mnuTotalRecords").trigger();
  EXPECT_EQ(LastMessage(), "Total number of Records : 20000");
  EXPECT_EQ(desktop_->messages.back().title, "Records");
  Item("mnuHideColumn").trigger();
  EXPECT_TRUE(Grid().isColumnHidden(2));
  EXPECT_EQ(Grid().currentIndex().column(), 3);
  Click("Print");  // without a PG
  EXPECT_EQ(desktop_->messages.back().title, "Ledger");
}

TEST_F(ListviewTest, ColumnsAreAlignedToTheTextsInView) {
  records_->Close();
  OpenRecords("SELECT Id, printf('%.80c', 'W') AS Name, 1 AS [A heading that is long] FROM Ledger");
  ShowAll();
  const int forty = Grid().fontMetrics().horizontalAdvance(QString(40, 'W'));
  EXPECT_LT(Grid().columnWidth(1), forty + 30);
  Grid().setColumnWidth(2, 30);
  Click("Last");
  Click("Align");
  EXPECT_GT(Grid().columnWidth(1), 2 * forty);
  QFont bold = Grid().font();
  bold.setBold(true);
  EXPECT_GT(Grid().columnWidth(2), QFontMetrics(bold).horizontalAdvance("A heading that is long"));
  EXPECT_EQ(records_->AbsolutePosition(), kRecords);
}

TEST_F(ListviewTest, TheGridFollowsWhatTheProgramDoesToTheRecordset) {
  ShowAll();
  records_->Sort("[Id] DESC");
  records_->AbsolutePosition(5000);
  QCoreApplication::processEvents();
  EXPECT_EQ(Position(), "Record 5,000 of 20,000");
  EXPECT_EQ(Grid().currentIndex().siblingAtColumn(0).data(), "15001");
  records_->Filter("[Id] <= 3");
  QCoreApplication::processEvents();
  EXPECT_EQ(Position(), "Record 1 of 3");
  EXPECT_EQ(Grid().model()->rowCount(), 3);
  records_->MovePrevious();
  QCoreApplication::processEvents();
  EXPECT_EQ(Position(), "3 records");
  Press(Qt::Key_Down);
  EXPECT_EQ(records_->AbsolutePosition(), 1);

  Press(Qt::Key_F2);
  Type("1");
  records_->Close();  // under an open edit
  EXPECT_TRUE(Window()->grab().width() > 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(Grid().model()->rowCount(), 0);
  Click("Refresh");
  EXPECT_FALSE(desktop_->messages.empty());
  OpenRecords("SELECT Name FROM Ledger WHERE Id = 7");
  QCoreApplication::processEvents();
  EXPECT_EQ(Grid().model()->columnCount(), 1);
  EXPECT_EQ(Position(), "Record 1 of 1");
  EXPECT_EQ(Cell(0, 0), "Account " + QString::number(7 * 7919 % 20011));
}

TEST_F(ListviewTest, TheWindowBearsWhatTheProgramTakesAway) {
  ShowAll();
  QApplication::setWheelScrollLines(500);  // a page at a time
  QWheelEvent turn({50, 50}, Grid().viewport()->mapToGlobal(QPointF(50, 50)), {}, {0, -120}, {}, {},
                   Qt::NoScrollPhase, false);
  QApplication::sendEvent(Grid().viewport(), &turn);
  EXPECT_EQ(Bar().value(), Bar().pageStep());

  list_.RDSet(nullptr);
  bool total_offered = false;
  QTimer::singleShot(0, Window(), [&] {
    total_offered = Item("mnuPrintColumnTotal").isVisible();
    if (QApplication::activePopupWidget() != nullptr) QApplication::activePopupWidget()->close();
  });
  QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, CellPlace(0, 2));
  EXPECT_TRUE(total_offered);
  list_.RDSet(records_);

  records_->Close();
  records_->Open("SELECT * FROM Ledger", *connection_, CursorType::kForwardOnly);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !desktop_->messages.empty(); }));
  EXPECT_EQ(Grid().model()->rowCount(), 0);
  records_->Close();
  OpenRecords("SELECT * FROM Ledger");  // is read on, although the one before could not be
  EXPECT_TRUE(QTest::qWaitFor([] { return Position() == "Record 1 of 20,000"; }));
}

TEST_F(ListviewTest, AFailureWhileLoadingIsToldOnceAndKeepsTheRowsThatAreThere) {
  records_->Close();
  OpenRecords(
      "SELECT CASE Id WHEN 15000 THEN abs(-9223372036854775807 - 1) ELSE Id END AS Id "
      "FROM Ledger");
  Show();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !desktop_->messages.empty(); }));
  EXPECT_NE(LastMessage().find("integer overflow"), std::string::npos) << LastMessage();
  EXPECT_EQ(Position(), "Record 1 of 14,999");
  Bar().setValue(Bar().maximum());
  EXPECT_EQ(Cell(Bar().pageStep() - 1, 0), "14999");
  EXPECT_EQ(desktop_->messages.size(), 1U);
}

TEST_F(ListviewTest, ClosingKeepsThePlaceAndLetsPrintGo) {
  settings_->Write("ListView", "Left", "1500");
  settings_->Write("ListView", "Top", "1200");
  settings_->Write("ListView", "Height", "6000");
  settings_->Write("ListView", "Width", "nonsense");
  list_.PG(std::make_shared<CPrint>());
  Show();
  EXPECT_EQ(Window()->pos(), QPoint(100, 80));
  EXPECT_EQ(Window()->size(), QSize(800, 400));
  Window()->resize(640, 300);
  Press(Qt::Key_Escape);
  EXPECT_EQ(Window(), nullptr);
  EXPECT_EQ(list_.PG(), nullptr);
  EXPECT_EQ(settings_->Read("ListView", "Width", ""), "9600");
  EXPECT_EQ(settings_->Read("ListView", "Height", ""), "4500");

  settings_->Write("ListView", "Left", "-900000");  // of a screen that is gone
  Show();
  EXPECT_TRUE(Window()->screen()->geometry().contains(Window()->geometry()));
  Window()->showMaximized();
  Window()->close();
  EXPECT_EQ(settings_->Read("ListView", "Left", ""), "-900000");
}

TEST_F(ListviewTest, StyleOneWaitsAndASecondListComesUpInTheOpenWindow) {
  QWidget form;
  form.show();
  const auto parent = WidgetObject(form);
  bool closed = false;
  WhenModal("frmListview", [&](QWidget& window) {
    EXPECT_EQ(window.windowHandle()->transientParent(), form.windowHandle());
    EXPECT_EQ(window.windowTitle(), "Ledger");
    CListView second;
    second.Caption("Other");
    second.ShowListView();  // does not wait
    EXPECT_EQ(Window(), &window);
    EXPECT_EQ(window.windowTitle(), "Other");
    window.close();
    closed = true;
  });
  list_.ShowListView(1, parent.get());
  EXPECT_TRUE(closed);
  EXPECT_EQ(Window(), nullptr);

  list_.RDSet(records_);  // which the second object has let go
  Show();
  const QPointer<QWidget> beside = Window();
  EXPECT_FALSE(beside->isModal());
  QTimer::singleShot(0, beside, [&] { beside->close(); });
  list_.ShowListView(1);
  EXPECT_TRUE(beside.isNull()) << "a closed list stays behind";
}

}  // namespace
}  // namespace kel
