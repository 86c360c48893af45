#include "listview/frmOption.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <string>
#include <tuple>
#include <vector>

#include "common/host.h"
#include "data/sqlite.h"
#include "support/modal_window.h"
#include "support/recording_desktop.h"
#include "support/sqlite_file.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::Child;

constexpr const char* kParties =
    "CREATE TABLE Party (Name TEXT, Amount DOUBLE, Remarks TEXT);"
    "INSERT INTO Party VALUES ('abd', 10, NULL), ('ABC', 20, 'x'), (NULL, 30, 'y'), ('abc', 40, "
    "NULL), ('zed', 50, 'x');";

class FrmOptionTest : public ::testing::Test {
 protected:
  void SetUp() override { CurrentHost().desktop = desktop_; }
  void TearDown() override {
    dialog_.reset();
    CurrentList() = {};
    CurrentHost() = host_;
  }

  frmOption& Show(OptionMode mode, bool in_slices = false,
                  const std::string& sql = "SELECT * FROM Party") {
    records_->FetchesInSlices(in_slices);
    records_->Open(sql, books_, CursorType::kStatic);
    CurrentList().caption = "Parties";
    CurrentList().rdset = records_;
    model_.LoadCaption();
    model_.Bind(Value());
    dialog_ = std::make_unique<frmOption>(model_, nullptr);
    Open(mode);
    return *dialog_;
  }
  void Open(OptionMode mode) {
    dialog_->Open(mode);
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
  }

  /// Picks in the lists by typing there, and types the value.
  void Enter(const QString& field, int operation, const QString& value) {
    QTest::keyClicks(&Child(*dialog_, "lstFields"), field);
    Child<QListWidget>(*dialog_, "lstOp").setCurrentRow(operation);
    ValueBox().lineEdit()->selectAll();
    QTest::keyClicks(&ValueBox(), value);
  }
  void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
  void Click(const char* button) { QTest::mouseClick(&Child(*dialog_, button), Qt::LeftButton); }
  QComboBox& ValueBox() { return Child<QComboBox>(*dialog_, "cmbValue"); }
  QStringList Values() {
    QStringList values;
    for (int i = 0; i < ValueBox().count(); ++i) values << ValueBox().itemText(i);
    return values;
  }

  const testing::TestFolder folder_;
  Host host_ = CurrentHost();
  std::shared_ptr<testing::RecordingDesktop> desktop_ =
      std::make_shared<testing::RecordingDesktop>();
  Connection books_{
      OpenSqlite(testing::WriteDatabase(folder_ / "books.db", kParties), Access::kRead)};
  std::shared_ptr<Recordset> records_ = std::make_shared<Recordset>();
  ListModel model_;
  std::unique_ptr<frmOption> dialog_;
};

TEST_F(FrmOptionTest, TheFilterIsSetByEnterAndTheEntriesAreThereNextTime) {
  frmOption& dialog = Show(OptionMode::kFilter);
  int filtered = 0;
  QObject::connect(&dialog, &frmOption::Filtered, [&] { ++filtered; });
  EXPECT_EQ(dialog.windowTitle(), "Filter");
  EXPECT_FALSE(Child(dialog, "opt0").isVisible());
  Enter("am", 2, "30");  // Amount >= 30
  testing::SavePicture(dialog, "frmOption_filter");
  Press(Qt::Key_Return);
  EXPECT_EQ(std::tuple(dialog.isVisible(), filtered, records_->RecordCount()),
            std::tuple(false, 1, 3));
  EXPECT_EQ(model_.Caption(), "Parties - ([Amount] >= 30)");

  Open(OptionMode::kFilter);
  model_.Bind(Value());
  dialog.LoadFields();  // the same ones
  EXPECT_EQ(ValueBox().currentText(), "30");
  ValueBox().setEditText("50");
  Press(Qt::Key_Escape);
  EXPECT_EQ(std::tuple(dialog.isVisible(), filtered, records_->RecordCount()),
            std::tuple(false, 1, 3));

  // Nothing of an expression is changed.
  Open(OptionMode::kFilter);
  Enter("na", 8, "[Amount] > 5 AND [Amount] < 25");
  Click("cmdOK");
  EXPECT_EQ(records_->RecordCount(), 2);

  records_->Close();
  records_->Open("SELECT Remarks FROM Party", books_, CursorType::kStatic);
  dialog.LoadFields();
  EXPECT_EQ(Child<QListWidget>(dialog, "lstFields").currentItem()->text(), "Remarks");
  EXPECT_EQ(ValueBox().currentText(), "");
}

TEST_F(FrmOptionTest, ASearchStaysOpenAndTellsWhatIsNotThere) {
  frmOption& dialog = Show(OptionMode::kFind);
  EXPECT_EQ(dialog.windowTitle(), "Find");
  Enter("remarks", 0, "x");
  testing::SavePicture(dialog, "frmOption_find");
  constexpr int kBegin = -2;  // the place before the first record
  const std::vector<std::tuple<Qt::Key, int, std::size_t>> searches = {
      {Qt::Key_F, 2, 0}, {Qt::Key_N, 5, 0}, {Qt::Key_N, 1, 1},  // beyond the end: the first record
      {Qt::Key_L, 5, 1}, {Qt::Key_P, 2, 1}, {Qt::Key_P, kBegin, 2}};
  for (const auto& [option, place, messages] : searches) {
    QTest::keyClick(&dialog, option, Qt::AltModifier);
    Press(Qt::Key_Return);
    EXPECT_EQ(std::tuple(records_->AbsolutePosition(), desktop_->messages.size()),
              std::tuple(place, messages))
        << static_cast<char>(option);
    EXPECT_TRUE(dialog.isVisible());
  }
  const MessageRequest& message = desktop_->messages.back();
  EXPECT_EQ(message.prompt, "Pattern '[Remarks] = 'x'' not found.");
  EXPECT_EQ(std::tuple(message.title, message.unload_time.count()),
            std::tuple(std::optional<std::string>("Find"), 1000));
  EXPECT_TRUE(ValueBox().hasFocus());
}

TEST_F(FrmOptionTest, WhatIsRefusedIsToldAndStays) {
  frmOption& dialog = Show(OptionMode::kFilter);
  Enter("na", 0, "O'Brien");
  desktop_->on_call = [](std::string_view call) {
    if (call == "message") throw Error(5, "no screen");
  };
  Click("cmdOK");
  const MessageRequest& message = desktop_->messages.at(0);
  EXPECT_TRUE(QString::fromStdString(message.prompt).endsWith("\rInvalid entry!!!."));
  EXPECT_EQ(std::tuple(message.title, message.unload_time.count()),
            std::tuple(std::optional<std::string>("Filter"), 4000));
  EXPECT_EQ(std::tuple(dialog.isVisible(), ValueBox().currentText()), std::tuple(true, "O'Brien"));
}

TEST_F(FrmOptionTest, IsNullNeedsNoValueAndTheDialogKeepsItsSize) {
  frmOption& dialog = Show(OptionMode::kFilter);
  const QSize before = dialog.size();
  Enter("remarks", 7, "");
  QApplication::processEvents();
  testing::SavePicture(dialog, "frmOption_null");
  EXPECT_EQ(std::tuple(ValueBox().isVisible(), dialog.size()), std::tuple(false, before));
  Click("cmdOK");
  EXPECT_EQ(records_->RecordCount(), 2);
}

TEST_F(FrmOptionTest, PossibleValuesAreOfferedOnceAndWhatWasTypedStays) {
  frmOption& dialog = Show(OptionMode::kFilter);
  Enter("na", 0, "typed");
  std::vector<bool> scanning;
  QObject::connect(&dialog, &frmOption::Scanning, [&](bool now) {
    EXPECT_EQ(Child(dialog, "PBR").isVisible(), now);
    scanning.push_back(now);
  });
  Click("cmdPoss");
  testing::SavePicture(dialog, "frmOption_values");
  EXPECT_EQ(Values(), QStringList({"ABC", "abd", "zed"}));
  EXPECT_EQ(ValueBox().currentText(), "typed");
  EXPECT_EQ(records_->Sort(), "[Name]");
  EXPECT_EQ(scanning, std::vector<bool>({true, false}));
  EXPECT_EQ(std::tuple(desktop_->calls.front(), desktop_->calls.back()),
            std::tuple("hourglass", "pointer"));
}

// Reading on shows a wait window, which lets keys through.
TEST_F(FrmOptionTest, WhileItWorksItTakesNoOtherOrder) {
  frmOption& dialog = Show(OptionMode::kFilter, true);
  Enter("am", 2, "30");
  int waits = 0;
  desktop_->on_call = [&](std::string_view call) {
    waits += call.substr(0, 4) == "wait" ? 1 : 0;
    if (call.substr(0, 4) != "step") return;
    Click("cmdPoss");
    Press(Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
  };
  dialog.RunThrough([](const auto& /*action*/) {});  // the list window is at work
  Click("cmdOK");
  EXPECT_EQ(waits, 0);
  dialog.RunThrough([](const auto& action) { action(); });
  Click("cmdOK");
  EXPECT_EQ(std::tuple(waits, dialog.isVisible(), records_->Sort()), std::tuple(1, false, ""));
}

TEST_F(FrmOptionTest, TabGoesInReadingOrderAndLabelsLeadToTheirLists) {
  frmOption& dialog = Show(OptionMode::kFind);
  QStringList names;
  for (int i = 0; i < 7; ++i, Press(Qt::Key_Tab))
    names << QApplication::focusWidget()->objectName();
  EXPECT_EQ(names, QStringList({"lstFields", "lstOp", "cmbValue", "opt0", "cmdOK", "cmdPoss",
                                "cmbCancel"}));
  for (const auto& [key, name] : {std::tuple(Qt::Key_T, "lstOp"),
                                  {Qt::Key_X, "cmbValue"},
                                  {Qt::Key_P, "opt2"},
                                  {Qt::Key_D, "lstFields"}}) {
    QTest::keyClick(&dialog, key, Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), name);
  }
}

TEST_F(FrmOptionTest, TenTimesAsManyValuesTakeAboutTenTimesAsLong) {
  const auto time = [&](const char* rows) {
    records_ = std::make_shared<Recordset>();
    Show(OptionMode::kFilter, false,
         std::string("WITH RECURSIVE N(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM N WHERE i < ") +
             rows + ") SELECT 'value ' || i AS Name FROM N");
    QElapsedTimer clock;
    clock.start();
    Click("cmdPoss");
    ValueBox().showPopup();
    ValueBox().hidePopup();
    QTest::keyClick(&ValueBox(), Qt::Key_Tab);
    return static_cast<double>(clock.nsecsElapsed());
  };
  const double few = time("30000");
  EXPECT_LT(time("300000"), 40 * few);
  EXPECT_EQ(ValueBox().count(), 300'000);
}

}  // namespace
}  // namespace kel
