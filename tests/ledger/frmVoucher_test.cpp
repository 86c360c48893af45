#include "vouchers/frmVoucher.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QStyleFactory>
#include <QTest>
#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ledger/voucher_books.h"
#include "platform/qt/qt_host.h"
#include "support/modal_window.h"
#include "vouchers/voucher_lines.h"

namespace ledger {
namespace {

using kel::testing::Child;
using testing::VoucherBooks;

class frmVoucherTest : public ::testing::TestWithParam<VoucherBooks::Kind> {
 protected:
  void SetUp() override {
    kel::InstallQtHost();
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    Show();
  }

  void Show() {
    window_ = std::make_unique<frmVoucher>(opened_);
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  }

  /// Where the focus is. A window manager gives it back to the window below a closed message box.
  static QWidget* Focused() {
    if (QApplication::activeWindow() == nullptr) {
      for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "frmVoucher") window->activateWindow();
      }
    }
    const bool some = QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; });
    if (!some) throw std::runtime_error("nothing has the focus");
    return QApplication::focusWidget();
  }
  static void Press(Qt::Key key) { QTest::keyClick(Focused(), key); }
  /// A button that is pressed by its mnemonic stays down for a moment and acts when it comes up.
  static void PressAlt(Qt::Key key) {
    QTest::keyClick(Focused(), key, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([] {
      const QWidgetList widgets = QApplication::allWidgets();
      return std::none_of(widgets.begin(), widgets.end(), [](const QWidget* widget) {
        const auto* const button = qobject_cast<const QPushButton*>(widget);
        return button != nullptr && button->isDown();
      });
    }));
  }
  static void Type(const QString& text) { QTest::keyClicks(Focused(), text); }
  void Click(const char* name) { QTest::mouseClick(&Child(*window_, name), Qt::LeftButton); }
  static std::string Focus() { return Focused()->objectName().toStdString(); }

  /// What the message boxes say that come while `act` runs; each is answered by the next key.
  static std::vector<std::string> Messages(const std::function<void()>& act,
                                           const std::vector<Qt::Key>& keys) {
    std::vector<std::string> told;
    std::function<void()> wait = [&] {
      kel::testing::WhenModal("frmMsg", [&](QWidget& box) {
        const Qt::Key key = keys[told.size()];
        told.push_back(Child<QPlainTextEdit>(box, "Prompt").toPlainText().toStdString());
        if (told.size() < keys.size()) wait();
        QTest::keyClick(&box, key);
      });
    };
    wait();
    act();
    return told;
  }
  static std::string Message(const std::function<void()>& act, Qt::Key key = Qt::Key_O) {
    const std::vector<std::string> told = Messages(act, {key});
    return told.empty() ? "" : told.front();
  }

  std::string Shown(const char* name) {
    return Child<QLineEdit>(*window_, name).text().toStdString();
  }
  std::string Label(const char* name) { return Child<QLabel>(*window_, name).text().toStdString(); }
  std::string Cell(int row, int column) {
    return Child<QTableWidget>(*window_, "Lines").item(row, column)->text().toStdString();
  }

  /// From the account box on, as a person does; `account` chooses what begins with it.
  static void TypeLine(const QString& account, const QString& debit, const QString& credit,
                       const QString& narration) {
    ASSERT_EQ(Focus(), "AccountId");
    Type(account);
    Press(Qt::Key_Return);
    Type(debit);
    Press(Qt::Key_Tab);
    Type(credit);
    Press(Qt::Key_Tab);
    Type(narration);
    Press(Qt::Key_Return);
  }

  void TypeVoucher(const QString& number) {
    PressAlt(Qt::Key_B);
    QTest::keyClick(Focused(), Qt::Key_A, Qt::ControlModifier);
    Type(number);
    PressAlt(Qt::Key_A);
    Type("05032027");
    PressAlt(Qt::Key_C);
    TypeLine("O'B", "1,00,000.10", "", "Rent of \"O'Brien\"");
    TypeLine("Zz", "0.20", "", "");
  }

  VoucherBooks books_{GetParam()};
  Books opened_{books_.Address()};
  std::unique_ptr<frmVoucher> window_;
};

INSTANTIATE_TEST_SUITE_P(Databases, frmVoucherTest,
                         ::testing::Values(VoucherBooks::Kind::kSqlite,
                                           VoucherBooks::Kind::kPostgres),
                         [](const auto& tested) {
                           return tested.param == VoucherBooks::Kind::kSqlite ? "Sqlite"
                                                                              : "Postgres";
                         });

TEST_P(frmVoucherTest, VoucherIsTypedSavedFoundChangedAndDeletedByTheKeyboard) {
  const int vouchers = books_.Count("Voucher");
  const int entries = books_.Count("Entry");
  EXPECT_EQ(Shown("Number").substr(0, 7), "JRN-000");
  PressAlt(Qt::Key_F);  // then Tab in reading order, through day, month and year
  for (const char* const control :
       {"txtFind", "Open", "Number", "Date", "Date", "Date", "Type", "AccountId", "Debit", "Credit",
        "Narration", "AddLine", "Lines", "ChangeLine", "RemoveLine", "New", "Save", "Delete"}) {
    EXPECT_EQ(Focus(), control);
    Press(Qt::Key_Tab);
  }
  TypeVoucher("J/7'a");
  EXPECT_EQ(Label("Difference"), "1,00,000.30 more debited than credited");
  EXPECT_EQ(Message([] { PressAlt(Qt::Key_S); }),
            "Debits 1,00,000.30 and credits 0.00 differ by 1,00,000.30.");
  EXPECT_EQ(Focus(), "Credit") << "where the rest is missing";
  EXPECT_EQ(books_.Count("Voucher"), vouchers);

  PressAlt(Qt::Key_C);
  Type("Zz");
  Press(Qt::Key_End);  // a name in another script
  PressAlt(Qt::Key_R);
  Type("100000.305");
  EXPECT_EQ(Message([] { Press(Qt::Key_Return); }),
            "\"100000.305\" is no amount in rupees and paise.");
  EXPECT_EQ(Focus(), "Credit");
  Press(Qt::Key_Backspace);
  EXPECT_EQ(Message([] { PressAlt(Qt::Key_S); }),
            "The line that you are typing is not in the voucher yet.");
  PressAlt(Qt::Key_R);
  Press(Qt::Key_Return);
  EXPECT_EQ(Label("Difference"), "Debits and credits agree");
  EXPECT_EQ(Label("Words"), "One Lakh(s) Rupee(s) Thirty Paise");
  EXPECT_EQ(Cell(2, 0), "હરિ ટ્રેડર્સ");
  EXPECT_EQ(Cell(3, 1), "1,00,000.30");
  EXPECT_EQ(Cell(3, 2), "1,00,000.30");
  kel::testing::SavePicture(*window_, "frmVoucher");
  PressAlt(Qt::Key_S);
  EXPECT_EQ(Label("Status"), "Voucher J/7'a is saved.");
  EXPECT_EQ(Shown("Number").substr(0, 7), "JRN-000") << "ready for the next";

  const QString number = "J/7''a";
  EXPECT_EQ(books_.Count("Voucher WHERE Number = 'J/7''a' AND Date = '2027-03-05'"
                         " AND Type = 'Journal' AND PartyId IS NULL"),
            1);
  EXPECT_EQ(books_.Lines(number), 3);
  EXPECT_TRUE(books_.HasLine(number, 1,
                             "AccountId = 901 AND Debit = 100000.10 AND Credit = 0"
                             " AND Narration = 'Rent of \"O''Brien\"'"));
  EXPECT_TRUE(books_.HasLine(number, 2, "AccountId = 902 AND Debit = 0.20 AND Credit = 0"));
  EXPECT_TRUE(books_.HasLine(number, 3, "AccountId = 903 AND Debit = 0 AND Credit = 100000.30"));

  EXPECT_EQ(Message([this] {
              PressAlt(Qt::Key_F);
              Type("no such");
              Click("Open");
            }),
            "There is no voucher no such.");
  QTest::keyClick(Focused(), Qt::Key_A, Qt::ControlModifier);
  Type("J/7'a");
  Press(Qt::Key_Return);
  EXPECT_EQ(Shown("Number"), "J/7'a");
  EXPECT_EQ(Child<QDateEdit>(*window_, "Date").date(), QDate(2027, 3, 5));
  EXPECT_EQ(Cell(0, 1), "1,00,000.10");
  EXPECT_EQ(Cell(1, 0), "Zz Cash");
  EXPECT_EQ(Cell(3, 2), "1,00,000.30");

  // The third line goes to two accounts.
  PressAlt(Qt::Key_U);
  for (int row = 0; row < 3; ++row) Press(Qt::Key_Down);
  EXPECT_EQ(Child<QTableWidget>(*window_, "Lines").currentRow(), 2);
  PressAlt(Qt::Key_H);
  EXPECT_EQ(Shown("Credit"), "100000.30");
  PressAlt(Qt::Key_R);
  Type("100000");
  Press(Qt::Key_Return);
  TypeLine("O'B", "", ".3", "");
  PressAlt(Qt::Key_S);
  EXPECT_EQ(Label("Status"), "Voucher J/7'a is saved.");
  EXPECT_EQ(books_.Lines(number), 4);
  EXPECT_TRUE(books_.HasLine(number, 3, "AccountId = 903 AND Credit = 100000"));
  EXPECT_TRUE(books_.HasLine(number, 4, "AccountId = 901 AND Credit = 0.30"));
  EXPECT_EQ(books_.Count("Voucher"), vouchers + 1);
  EXPECT_EQ(books_.Count("Entry"), entries + 4);

  PressAlt(Qt::Key_F);
  Type("J/7'a");
  Click("Open");
  EXPECT_EQ(Message([] { PressAlt(Qt::Key_E); }, Qt::Key_N), "Delete voucher J/7'a?");
  EXPECT_EQ(books_.Count("Voucher"), vouchers + 1);
  EXPECT_EQ(Message([] { PressAlt(Qt::Key_E); }, Qt::Key_Y), "Delete voucher J/7'a?");
  EXPECT_EQ(Label("Status"), "Voucher J/7'a is deleted.");
  EXPECT_EQ(books_.Count("Voucher"), vouchers);
  EXPECT_EQ(books_.Count("Entry"), entries);
}

TEST_P(frmVoucherTest, FailureInTheMiddleOfSavingWritesNothingAndKeepsWhatWasTyped) {
  const int vouchers = books_.Count("Voucher");
  const int entries = books_.Count("Entry");
  books_.BreakAtSecondLine();
  TypeVoucher("X1");
  TypeLine("O'B", "", "100000.30", "");
  EXPECT_NE(Message([] { PressAlt(Qt::Key_S); }), "");
  EXPECT_EQ(books_.Count("Voucher"), vouchers);
  EXPECT_EQ(books_.Count("Entry"), entries);
  EXPECT_EQ(Shown("Number"), "X1");
  EXPECT_EQ(Cell(2, 2), "1,00,000.30");
  EXPECT_EQ(Message([this] { window_->close(); }, Qt::Key_N),
            "This voucher is not saved. Leave it all the same?");
  EXPECT_TRUE(window_->isVisible());

  books_.Mend();
  PressAlt(Qt::Key_S);
  EXPECT_EQ(Label("Status"), "Voucher X1 is saved.");
  EXPECT_EQ(books_.Lines("X1"), 3);

  books_.Run("INSERT INTO Account (AccountId, Code, Name, GroupId) VALUES (904, 'T4', 'Zy', 1)");
  PressAlt(Qt::Key_N);  // fills the accounts again
  TypeVoucher("X1");
  TypeLine("Zy", "", "100000.30", "");
  EXPECT_EQ(Message([] { PressAlt(Qt::Key_S); }), "There is a voucher of this number already.");
  EXPECT_EQ(Focus(), "Number");
  Press(Qt::Key_End);
  Type("b");
  books_.Run("DELETE FROM Account WHERE AccountId = 904");
  EXPECT_NE(Message([] { PressAlt(Qt::Key_S); }), "");
  EXPECT_EQ(books_.Count("Voucher"), vouchers + 1) << "the account is gone";
  EXPECT_EQ(books_.Count("Entry"), entries + 3);
  EXPECT_EQ(Cell(2, 0), "Zy");
  EXPECT_NE(Message([this] { Click("New"); }, Qt::Key_Y), "");
}

TEST_P(frmVoucherTest, VoucherThatSomebodyElseHasChangedMeanwhileIsNotOverwritten) {
  TypeVoucher("X1");
  TypeLine("O'B", "", "100000.30", "");
  PressAlt(Qt::Key_S);
  PressAlt(Qt::Key_F);
  Type("X1");
  Press(Qt::Key_Return);
  books_.Run("UPDATE Entry SET Narration = 'theirs' WHERE Line = 2 AND AccountId = 902");
  const std::string changed = "Somebody else has changed this voucher since it was opened.";
  EXPECT_EQ(Message([] { PressAlt(Qt::Key_S); }).substr(0, changed.size()), changed);
  EXPECT_EQ(Shown("Number"), "X1") << "still there";
  const auto told = Messages([] { PressAlt(Qt::Key_E); }, {Qt::Key_Y, Qt::Key_O});
  EXPECT_EQ(told.back().substr(0, changed.size()), changed);
  EXPECT_TRUE(books_.HasLine("X1", 2, "Narration = 'theirs'"));

  PressAlt(Qt::Key_F);
  Type("X1");
  Press(Qt::Key_Return);
  EXPECT_EQ(Cell(1, 3), "theirs");
  Child<QTableWidget>(*window_, "Lines").setCurrentCell(1, 0);
  PressAlt(Qt::Key_V);
  Child<QTableWidget>(*window_, "Lines").setCurrentCell(1, 0);
  PressAlt(Qt::Key_H);
  PressAlt(Qt::Key_R);
  Type("100000.10");
  Press(Qt::Key_Return);
  PressAlt(Qt::Key_S);
  EXPECT_EQ(books_.Lines("X1"), 2);
  EXPECT_TRUE(books_.HasLine("X1", 2, "AccountId = 901 AND Credit = 100000.10"));
}

TEST(VoucherLines, AmountsAreReadToThePaisaOrNotAtAll) {
  const std::array<std::pair<const char*, const char*>, 14> table = {
      {{"", "0.00"},
       {" ", "0.00"},
       {"5", "5.00"},
       {".5", "0.50"},
       {"12,34,567.5", "1234567.50"},
       {"1.250", "1.25"},
       {"999999999999.99", "999999999999.99"},
       {"1000000000000", nullptr},
       {"0.001", nullptr},
       {"-1", nullptr},
       {"1e3", nullptr},
       {"ten", nullptr},
       {"1.2.3", nullptr},
       {"0", "0.00"}}};
  for (const auto& [typed, amount] : table) {
    EXPECT_EQ(ReadAmount(typed),
              amount == nullptr ? std::nullopt : std::optional<std::string>(amount))
        << typed;
  }
  EXPECT_EQ(Grouped("999.00"), "999.00");
  EXPECT_EQ(Grouped("-1000.50"), "-1,000.50");
  EXPECT_EQ(Grouped("123456789012.34"), "1,23,45,67,89,012.34");
  EXPECT_EQ(NextNumber("JRN-", ""), "JRN-00001");
  EXPECT_EQ(NextNumber("JRN-", "JRN-99999"), "JRN-100000");
  EXPECT_EQ(NextNumber("JRN-", "JRN-1A"), "JRN-00002");
}

}  // namespace
}  // namespace ledger
