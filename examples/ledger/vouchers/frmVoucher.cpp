#include "vouchers/frmVoucher.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "controls/widget_object.h"

namespace ledger {
namespace {

using kel::WidgetObject;

constexpr int kStep = 8;  // of the space between controls, in pixels at 100 %
constexpr int kAmountCharacters = 16;
constexpr int kNumberCharacters = 12;
constexpr int kNarrationCharacters = 30;
constexpr int kLeastRows = 7;

QLineEdit* MakeLine(const char* name, int characters) {
  auto* const line = new QLineEdit;
  line->setObjectName(name);
  line->setMinimumWidth(line->fontMetrics().averageCharWidth() * characters);
  return line;
}

QLineEdit* MakeAmount(const char* name) {
  QLineEdit* const amount = MakeLine(name, kAmountCharacters);
  amount->setAlignment(Qt::AlignRight);
  return amount;
}

QComboBox* MakeList(const char* name) {
  auto* const list = new QComboBox;
  list->setObjectName(name);
  return list;
}

// What a check of the toolkit tells in place of its own words.
void SetComplaint(QWidget& control, const QString& text) {
  control.setProperty(kel::kTagProperty, text);
}

// The label's "&" is the mnemonic of its field.
QLabel* LabelOf(QWidget& field, const QString& text) {
  auto* const label = new QLabel(text);
  label->setBuddy(&field);
  field.setAccessibleName(QString(text).remove('&').remove(':'));
  return label;
}

void AddField(QGridLayout& layout, int column, const QString& text, QWidget& field) {
  layout.addWidget(LabelOf(field, text), 0, column);
  layout.addWidget(&field, 1, column);
}

}  // namespace

frmVoucher::frmVoucher(Books& books)
    : books_(books),
      find_(MakeLine("txtFind", kNumberCharacters)),
      head_panel_(new QGroupBox(tr("Voucher"))),
      number_(MakeLine("Number", kNumberCharacters)),
      date_(new QDateEdit(QDate::currentDate())),
      type_(MakeList("Type")),
      entry_panel_(new QGroupBox(tr("Line"))),
      account_(MakeList("AccountId")),
      debit_(MakeAmount("Debit")),
      credit_(MakeAmount("Credit")),
      narration_(MakeLine("Narration", kNarrationCharacters)),
      grid_(new QTableWidget(0, kColumns)),
      words_(new kel::WrappedLabel),
      difference_(new QLabel),
      status_(new QLabel),
      store_(books, WidgetObject(*head_panel_), WidgetObject(record_)) {
  setObjectName("frmVoucher");
  setWindowTitle(tr("Vouchers"));
  MakeRecord();
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(2 * kStep, 2 * kStep, 2 * kStep, 2 * kStep);
  layout->setSpacing(kStep);
  layout->addLayout(FinderRow());
  layout->addWidget(HeadPanel());
  layout->addWidget(EntryPanel());
  layout->addLayout(LinesPart(), 1);
  layout->addLayout(ButtonRow());
  StartNew();
}

QLayout* frmVoucher::FinderRow() {
  auto* const row = new QHBoxLayout;
  row->setSpacing(kStep);
  row->addWidget(LabelOf(*find_, tr("&Find number:")));
  row->addWidget(find_);
  AddButton(*row, "Open", tr("&Open"), &frmVoucher::Open);
  row->addStretch();
  SetComplaint(*find_, tr("Type the number of the voucher to open."));
  connect(find_, &QLineEdit::returnPressed, this, &frmVoucher::Open);
  return row;
}

// Its controls are named as the fields of the table Voucher.
QWidget* frmVoucher::HeadPanel() {
  head_panel_->setObjectName("Head");
  auto* const voucher_id = new QLineEdit(head_panel_);
  voucher_id->setObjectName("VoucherId");
  voucher_id->hide();
  date_->setObjectName("Date");
  date_->setDisplayFormat("dd/MM/yyyy");
  date_->setCalendarPopup(true);
  type_->addItems({"Sales", "Purchase", "Receipt", "Payment", "Journal", "Contra"});
  type_->setCurrentText("Journal");
  SetComplaint(*number_, tr("A voucher needs a number."));

  auto* const fields = new QGridLayout(head_panel_);
  fields->setSpacing(kStep);
  AddField(*fields, 0, tr("Num&ber:"), *number_);
  AddField(*fields, 1, tr("D&ate:"), *date_);
  AddField(*fields, 2, tr("&Type:"), *type_);
  fields->setColumnStretch(3, 1);
  connect(type_, &QComboBox::activated, this, [this] { TellFailure([this] { SuggestNumber(); }); });
  return head_panel_;
}

QWidget* frmVoucher::EntryPanel() {
  entry_panel_->setObjectName("Line");
  account_->setMinimumContentsLength(2 * kNumberCharacters);
  account_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  account_->installEventFilter(this);
  SetComplaint(*account_, tr("Choose the account of the line."));
  SetComplaint(*debit_, tr("A line needs an amount, debit or credit."));

  auto* const fields = new QGridLayout(entry_panel_);
  fields->setSpacing(kStep);
  AddField(*fields, 0, tr("A&ccount:"), *account_);
  AddField(*fields, 1, tr("&Debit:"), *debit_);
  AddField(*fields, 2, tr("C&redit:"), *credit_);
  AddField(*fields, 3, tr("Narrat&ion:"), *narration_);
  fields->setColumnStretch(0, 3);
  fields->setColumnStretch(3, 3);
  auto* const button = new QHBoxLayout;
  add_line_ = AddButton(*button, "AddLine", {}, &frmVoucher::AddLine);
  fields->addLayout(button, 1, 4);
  for (QLineEdit* const field : {debit_, credit_, narration_}) {
    connect(field, &QLineEdit::returnPressed, this, &frmVoucher::AddLine);
  }
  return entry_panel_;
}

QLayout* frmVoucher::LinesPart() {
  grid_->setObjectName("Lines");
  grid_->setHorizontalHeaderLabels({tr("Account"), tr("Debit"), tr("Credit"), tr("Narration")});
  grid_->verticalHeader()->hide();
  grid_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);  // names may wrap
  grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
  grid_->setSelectionMode(QAbstractItemView::SingleSelection);
  grid_->setTabKeyNavigation(false);  // Tab leaves it
  grid_->setMinimumHeight(grid_->verticalHeader()->defaultSectionSize() * kLeastRows);
  QHeaderView* const columns = grid_->horizontalHeader();
  columns->setSectionResizeMode(QHeaderView::Stretch);
  columns->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  for (const int amount : {kDebit, kCredit}) {
    columns->setSectionResizeMode(amount, QHeaderView::ResizeToContents);
    grid_->horizontalHeaderItem(amount)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  connect(grid_, &QTableWidget::cellActivated, this, &frmVoucher::ChangeLine);

  difference_->setObjectName("Difference");
  difference_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  words_->setObjectName("Words");
  auto* const below = new QHBoxLayout;
  below->setSpacing(kStep);
  AddButton(*below, "ChangeLine", tr("C&hange line"), &frmVoucher::ChangeLine);
  AddButton(*below, "RemoveLine", tr("Remo&ve line"), &frmVoucher::RemoveLine);
  below->addStretch();
  below->addWidget(difference_);

  auto* const part = new QVBoxLayout;
  part->setSpacing(kStep);
  part->addWidget(LabelOf(*grid_, tr("Lines of the vo&ucher:")));
  part->addWidget(grid_, 1);
  part->addWidget(words_);
  part->addLayout(below);
  return part;
}

QLayout* frmVoucher::ButtonRow() {
  status_->setObjectName("Status");
  auto* const row = new QHBoxLayout;
  row->setSpacing(kStep);
  row->addWidget(status_);
  row->addStretch();
  AddButton(*row, "New", tr("&New"), &frmVoucher::New);
  AddButton(*row, "Save", tr("&Save"), &frmVoucher::Save);
  AddButton(*row, "Delete", tr("D&elete"), &frmVoucher::Delete);
  return row;
}

QPushButton* frmVoucher::AddButton(QLayout& row, const char* name, const QString& caption,
                                   void (frmVoucher::*pressed)()) {
  auto* const button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAutoDefault(true);  // Enter presses the one that has the focus
  row.addWidget(button);
  connect(button, &QPushButton::clicked, this, pressed);
  return button;
}

void frmVoucher::MakeRecord() {
  for (const char* const field :
       {"EntryId", "VoucherId", "Line", "AccountId", "Debit", "Credit", "Narration"}) {
    (new QLineEdit(&record_))->setObjectName(field);
  }
}

// Enter goes on from the account to the amounts.
bool frmVoucher::eventFilter(QObject* watched, QEvent* event) {
  if (watched == account_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      debit_->setFocus();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace ledger
