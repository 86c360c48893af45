// frmVoucher: the line in the panel and those in the grid.
#include <QAbstractItemView>

#include "controls/widget_object.h"
#include "toolkit/amount_in_words.h"
#include "vouchers/frmVoucher.h"

namespace ledger {
namespace {

constexpr const char* kNoAmount = "\u2013";

QTableWidgetItem* MakeCell(const QString& text, Qt::Alignment side) {
  auto* const cell = new QTableWidgetItem(text);
  cell->setTextAlignment(side | Qt::AlignVCenter);
  return cell;
}

QString Shown(const std::string& amount) {
  return amount == "0.00" ? QString(kNoAmount) : QString::fromStdString(Grouped(amount));
}

QString DifferenceText(const Totals& totals) {
  if (totals.Balance()) return frmVoucher::tr("Debits and credits agree");
  const std::string amount = totals.difference.substr(totals.CreditsExceed() ? 1 : 0);
  const QString text = totals.CreditsExceed() ? frmVoucher::tr("%1 more credited than debited")
                                              : frmVoucher::tr("%1 more debited than credited");
  return text.arg(QString::fromStdString(Grouped(amount)));
}

}  // namespace

using kel::WidgetObject;

void frmVoucher::AddLine() {
  std::optional<VoucherLine> line = TypedLine();
  if (!line) return;
  if (changed_line_) {
    line->entry_id = lines_[*changed_line_].entry_id;
    lines_[*changed_line_] = *std::move(line);
  } else {
    lines_.push_back(*std::move(line));
  }
  ClearLine();
  ShowLines();
  status_->clear();
  account_->setFocus();
}

// Nothing when the user has to correct it first.
std::optional<VoucherLine> frmVoucher::TypedLine() {
  const Control debit_box = WidgetObject(*debit_);
  if (zur_.CheckEmpty({WidgetObject(*account_)})) return std::nullopt;
  const std::optional<std::string> debit = AmountIn(debit_box);
  if (!debit) return std::nullopt;
  const std::optional<std::string> credit = AmountIn(WidgetObject(*credit_));
  if (!credit) return std::nullopt;
  if (*debit == "0.00" && *credit == "0.00") {
    zur_.CheckZero({debit_box});
    return std::nullopt;
  }
  if (*debit != "0.00" && *credit != "0.00") {
    TellAt(debit_box, "A line is either debited or credited.");
    return std::nullopt;
  }
  const kel::Value account_id = zur_.GetSelectedItemData(*WidgetObject(*account_));
  return VoucherLine{0,
                     account_id.ToInt64(),
                     account_->currentText().toStdString(),
                     *debit,
                     *credit,
                     narration_->text().trimmed().toStdString()};
}

std::optional<std::string> frmVoucher::AmountIn(const Control& box) {
  const std::string typed = box->Get(kel::Object::kDefaultMember).ToText();
  std::optional<std::string> amount = ReadAmount(typed);
  if (!amount) {
    TellAt(box, "\"" + typed + "\" is no amount in rupees and paise.");
  }
  return amount;
}

bool frmVoucher::IsLineTyped() const {
  return changed_line_ || !debit_->text().isEmpty() || !credit_->text().isEmpty() ||
         !narration_->text().isEmpty();
}

// True when nothing in the panel gets lost.
bool frmVoucher::MayLeaveLine() {
  if (!IsLineTyped()) return true;
  TellAt(WidgetObject(*account_), "The line that you are typing is not in the voucher yet.");
  return false;
}

void frmVoucher::ClearLine() {
  changed_line_.reset();
  add_line_->setText(tr("Add &line"));
  zur_.Clear(*WidgetObject(*entry_panel_));
  account_->view()->keyboardSearch({});  // letters typed from now on begin another name
}

// Takes the current line into the panel, where Enter stores it again.
void frmVoucher::ChangeLine() {
  const std::optional<std::size_t> current = CurrentLine();
  if (!current || !MayLeaveLine()) return;
  const VoucherLine& line = lines_[*current];
  const auto amount = [](const std::string& text) {
    return text == "0.00" ? "" : QString::fromStdString(text);
  };
  changed_line_ = current;
  add_line_->setText(tr("Store &line"));
  account_->setCurrentIndex(account_->findData(static_cast<int>(line.account_id)));
  debit_->setText(amount(line.debit));
  credit_->setText(amount(line.credit));
  narration_->setText(QString::fromStdString(line.narration));
  account_->setFocus();
}

void frmVoucher::RemoveLine() {
  const std::optional<std::size_t> current = CurrentLine();
  if (!current || !MayLeaveLine()) return;
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*current));
  ShowLines();
}

// The row below the lines holds the totals.
std::optional<std::size_t> frmVoucher::CurrentLine() const {
  const auto row = static_cast<std::size_t>(grid_->currentRow());
  return row < lines_.size() ? std::optional(row) : std::nullopt;
}

void frmVoucher::ShowLines() {
  const Totals totals = Sum(lines_);
  const int count = static_cast<int>(lines_.size());
  grid_->setRowCount(0);  // with the look of the totals
  grid_->setRowCount(count + 1);
  for (int row = 0; row < count; ++row) ShowLine(row, lines_[static_cast<std::size_t>(row)]);
  ShowLine(count, {0, 0, tr("Total").toStdString(), totals.debit, totals.credit, {}});
  const int below_heading = 1;
  zur_.MakeBold(*WidgetObject(*grid_), count + below_heading, true);
  grid_->scrollToBottom();
  difference_->setText(DifferenceText(totals));
  words_->setText(QString::fromStdString(kel::AmountInWords(totals.debit, kel::Style::Extended)));
}

void frmVoucher::ShowLine(int row, const VoucherLine& line) {
  grid_->setItem(row, kAccount, MakeCell(QString::fromStdString(line.account), Qt::AlignLeft));
  grid_->setItem(row, kDebit, MakeCell(Shown(line.debit), Qt::AlignRight));
  grid_->setItem(row, kCredit, MakeCell(Shown(line.credit), Qt::AlignRight));
  grid_->setItem(row, kNarration, MakeCell(QString::fromStdString(line.narration), Qt::AlignLeft));
}

}  // namespace ledger
