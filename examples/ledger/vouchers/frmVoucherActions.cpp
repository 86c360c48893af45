// frmVoucher: vouchers begun, opened, saved and deleted.
#include <QCloseEvent>

#include "common/error.h"
#include "controls/widget_object.h"
#include "vouchers/frmVoucher.h"

namespace ledger {

using kel::WidgetObject;

void frmVoucher::New() {
  if (MayLeave()) StartNew();
}

// The date and the type stay: most vouchers are like the one before.
void frmVoucher::StartNew() {
  store_.StartNew();
  lines_.clear();
  zur_.Clear(*WidgetObject(*head_panel_), {"Type"});
  zur_.FillItemData(books_.Connection(), *WidgetObject(*account_),
                    "SELECT AccountId, Name FROM Account ORDER BY Name");
  TellFailure([this] { SuggestNumber(); });
  ClearLine();
  ShowLines();
  as_shown_ = WhatIsTyped();
  date_->setFocus();
}

// A number that the user has typed is left alone.
void frmVoucher::SuggestNumber() {
  const QString shown = number_->text();
  if (!shown.isEmpty() && (!store_.IsNew() || shown != suggested_number_)) return;
  suggested_number_ = QString::fromStdString(store_.NextNumber(type_->currentText().toStdString()));
  number_->setText(suggested_number_);
}

void frmVoucher::Open() {
  if (zur_.CheckEmpty({WidgetObject(*find_)}) || !MayLeave()) return;
  TellFailure([this] {
    const QString number = find_->text().trimmed();
    auto lines = store_.Open(number.toStdString());
    if (!lines) {
      TellAt(WidgetObject(*find_), tr("There is no voucher %1.").arg(number).toStdString());
      return;
    }
    lines_ = *std::move(lines);
    ClearLine();
    ShowLines();
    as_shown_ = WhatIsTyped();
    status_->clear();
    find_->clear();
    account_->setFocus();
  });
}

void frmVoucher::Save() {
  TellFailure([this] {
    if (!MayBeSaved()) return;
    store_.Save(lines_);
    status_->setText(tr("Voucher %1 is saved.").arg(number_->text()));
    StartNew();
  });
}

bool frmVoucher::MayBeSaved() {
  if (zur_.CheckEmpty({WidgetObject(*number_), WidgetObject(*type_)})) return false;
  if (!MayLeaveLine()) return false;
  const Totals totals = Sum(lines_);
  const bool lacks_debit = totals.CreditsExceed();
  if (lines_.empty()) {
    TellAt(WidgetObject(*account_), "The voucher has no lines.");
  } else if (!totals.Balance()) {
    TellAt(WidgetObject(lacks_debit ? *debit_ : *credit_),
           "Debits " + Grouped(totals.debit) + " and credits " + Grouped(totals.credit) +
               " differ by " + Grouped(totals.difference.substr(lacks_debit ? 1 : 0)) + ".");
  } else {
    return !zur_.CheckDuplicateRows(*WidgetObject(*grid_), {kAccount, kDebit, kCredit, kNarration});
  }
  return false;
}

void frmVoucher::Delete() {
  if (store_.IsNew()) {
    TellAt(WidgetObject(*find_), "Open the voucher that is to be deleted first.");
    return;
  }
  const QString number = as_shown_.number;
  const std::string question = tr("Delete voucher %1?").arg(number).toStdString();
  if (!zur_.MsgBox(question, kel::msgYesNo + kel::msgDefault2, windowTitle().toStdString(),
                   kel::msgDelete)) {
    return;
  }
  TellFailure([&] {
    store_.Delete();
    status_->setText(tr("Voucher %1 is deleted.").arg(number));
    StartNew();
  });
}

// Whoever opens another voucher or closes the window is asked before something is lost.
bool frmVoucher::MayLeave() {
  if (!IsLineTyped() && WhatIsTyped() == as_shown_) return true;
  return zur_.MsgBox("This voucher is not saved. Leave it all the same?",
                     kel::msgYesNo + kel::msgDefault2, windowTitle().toStdString(),
                     kel::msgQuestion);
}

frmVoucher::Typed frmVoucher::WhatIsTyped() const {
  return {number_->text(), date_->date(), type_->currentText(), lines_};
}

void frmVoucher::closeEvent(QCloseEvent* event) { event->setAccepted(MayLeave()); }

// The focus goes to the control when the message is read.
void frmVoucher::TellAt(const Control& control, const std::string& text) {
  zur_.MsgBox(text, kel::msgOK, windowTitle().toStdString(), kel::msgExclamation, false, 0,
              control.get());
}

void frmVoucher::TellFailure(const std::function<void()>& work) {
  try {
    work();
  } catch (const VoucherStore::NumberTaken& refusal) {
    TellAt(WidgetObject(*number_), refusal.Description());
  } catch (const VoucherStore::ChangedMeanwhile& refusal) {
    TellAt(WidgetObject(*find_), refusal.Description());
  } catch (const kel::Error& failure) {
    zur_.ReportFailure(failure, "");
  }
}

}  // namespace ledger
