// The window in which vouchers are typed.
#pragma once

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/wrapped_label.h"
#include "toolkit/CZURDLL.h"
#include "vouchers/books.h"
#include "vouchers/voucher_store.h"

namespace ledger {

/// A voucher: its head, a panel in which one line is typed, all lines with their totals, and the
/// total in words. Enter puts the typed line among the others and goes back to the account, so a
/// voucher is typed without the mouse.
///
/// What is typed stays on the screen until it is saved, or the user has agreed to lose it.
class frmVoucher : public QWidget {
  Q_OBJECT

 public:
  /// The books outlive the window.
  explicit frmVoucher(Books& books);

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Control = std::shared_ptr<kel::Object>;

  enum Column : int { kAccount, kDebit, kCredit, kNarration, kColumns };

  // What Save would write.
  struct Typed {
    QString number;
    QDate date;
    QString type;
    std::vector<VoucherLine> lines;

    bool operator==(const Typed&) const = default;
  };

  QLayout* FinderRow();
  QWidget* HeadPanel();
  QWidget* EntryPanel();
  QLayout* LinesPart();
  QLayout* ButtonRow();
  QPushButton* AddButton(QLayout& row, const char* name, const QString& caption,
                         void (frmVoucher::*pressed)());
  void MakeRecord();

  void New();
  void Open();
  void Save();
  void Delete();
  void StartNew();
  void SuggestNumber();
  bool MayBeSaved();
  bool MayLeave();

  void AddLine();
  void ChangeLine();
  void RemoveLine();
  std::optional<VoucherLine> TypedLine();
  std::optional<std::string> AmountIn(const Control& box);
  bool IsLineTyped() const;
  bool MayLeaveLine();
  void ClearLine();
  std::optional<std::size_t> CurrentLine() const;
  void ShowLines();
  void ShowLine(int row, const VoucherLine& line);

  Typed WhatIsTyped() const;
  void TellAt(const Control& control, const std::string& text);
  void TellFailure(const std::function<void()>& work);

  Books& books_;
  kel::CZURDLL zur_;

  QLineEdit* find_;  // children
  QWidget* head_panel_;
  QLineEdit* number_;
  QDateEdit* date_;
  QComboBox* type_;
  QWidget* entry_panel_;
  QComboBox* account_;
  QLineEdit* debit_;
  QLineEdit* credit_;
  QLineEdit* narration_;
  QPushButton* add_line_ = nullptr;
  QTableWidget* grid_;
  kel::WrappedLabel* words_;
  QLabel* difference_;
  QLabel* status_;
  QWidget record_;  // never shown: the fields of an entry, for the store to write through

  VoucherStore store_;
  std::vector<VoucherLine> lines_;
  std::optional<std::size_t> changed_line_;  // which one the panel holds; else a new one
  QString suggested_number_;
  Typed as_shown_;  // when the voucher was opened, or begun
};

}  // namespace ledger
