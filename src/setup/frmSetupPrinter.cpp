#include "setup/frmSetupPrinter.h"

#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>
#include <initializer_list>
#include <utility>

#include "common/host.h"
#include "controls/Button.h"
#include "engine/code_page.h"
#include "setup/character_sets.h"
#include "setup/frmDec.h"
#include "setup/frmSetupMessages.h"

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space around and between controls, in pixels at 100 %
constexpr int kPrinterCharacters = 28;
constexpr int kLeastPrinter = 16 * kStep;  // on a small screen

// Below printer and port.
constexpr int kFirstTextModeRow = 2;
constexpr int kFirstWindowsRow = 4;
constexpr int kRows = 6;

// Windows knows the port of every printer; elsewhere text mode writes to what is typed.
#ifdef Q_OS_WIN
constexpr bool kPortIsFixed = true;
#else
constexpr bool kPortIsFixed = false;
#endif

QComboBox* NamedCombo(const char* name) {
  auto* const combo = new QComboBox;
  combo->setObjectName(name);
  return combo;
}

// A row whose field is made of several controls; the label leads to the first.
void AddRow(QFormLayout& rows, const QString& label, QWidget* field, QWidget* buddy) {
  auto* const text = new QLabel(label);
  text->setBuddy(buddy);
  rows.addRow(text, field);
}

QWidget* SideBySide(std::initializer_list<QWidget*> controls) {
  auto* const both = new QWidget;
  auto* const layout = new QHBoxLayout(both);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kStep);
  for (QWidget* const control : controls) layout->addWidget(control);
  layout->addStretch();
  return both;
}

}  // namespace

SetupPrinter::SetupPrinter(const SetupValues& values, std::vector<PrinterName> printers)
    : printers_(std::move(printers)),
      own_port_(QString::fromStdString(values.port)),
      rows_(new QFormLayout(this)),
      cmbPrinter_(NamedCombo("cmbPrinter")),
      lbl_(new QLineEdit(own_port_)),
      cmbFont_(NamedCombo("cmbFont")),
      cmbCodePage_(NamedCombo("cmbCodePage")),
      font_(new SetupFont),
      OptPortrait_(new QRadioButton(tr("Po&rtrait"))),
      OptLandscape_(new QRadioButton(tr("L&andscape"))) {
  AddPrinters(values);
  lbl_->setObjectName("lbl");
  lbl_->setReadOnly(kPortIsFixed);
  lbl_->setAccessibleName(tr("Port"));

  rows_->setContentsMargins(kStep, kStep, kStep, kStep);
  rows_->setHorizontalSpacing(kStep);
  rows_->setVerticalSpacing(kStep);
  rows_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  rows_->addRow(tr("Pr&inter:"), cmbPrinter_);
  rows_->addRow(tr("Por&t:"), lbl_);
  AddTextModeRows(QString::fromStdString(values.code_page));
  AddWindowsRows();
}

void SetupPrinter::AddPrinters(const SetupValues& values) {
  const auto is_stored = [&](const PrinterName& name) { return name.device == values.printer; };
  if (!values.printer.empty() && std::none_of(printers_.begin(), printers_.end(), is_stored)) {
    printers_.insert(printers_.begin(), {values.printer, values.port});
  }
  cmbPrinter_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cmbPrinter_->setMinimumContentsLength(kPrinterCharacters);
  cmbPrinter_->setMinimumWidth(kLeastPrinter);
  for (const PrinterName& name : printers_) {
    cmbPrinter_->addItem(QString::fromStdString(name.device));
  }
  cmbPrinter_->setCurrentIndex(cmbPrinter_->findText(QString::fromStdString(values.printer)));
  const PrinterName stored{values.printer, values.port};
  connect(cmbPrinter_, &QComboBox::currentIndexChanged, this,
          [this, stored](int printer) { ShowPortOf(printer, stored); });
  connect(lbl_, &QLineEdit::textEdited, this, [this](const QString& typed) { own_port_ = typed; });
}

void SetupPrinter::ShowPortOf(int printer, const PrinterName& stored) {
  const PrinterName& chosen = printers_.at(static_cast<std::size_t>(printer));
  const std::string& port = chosen.device == stored.device ? stored.port : chosen.port;
  const bool told = kPortIsFixed || chosen.device == stored.device || !port.empty();
  lbl_->setText(told ? QString::fromStdString(port) : own_port_);
}

void SetupPrinter::AddTextModeRows(const QString& stored_code_page) {
  for (const std::string_view name : CodePage::Names()) {
    cmbCodePage_->addItem(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
  }
  if (cmbCodePage_->findText(stored_code_page, Qt::MatchFixedString) < 0) {
    cmbCodePage_->addItem(stored_code_page);
  }
  auto* const edit = new Button(tr("&Edit Sets..."));
  edit->setObjectName("cmdSets");
  connect(edit, &Button::clicked, this, &SetupPrinter::EditSets);
  connect(cmbFont_, &QComboBox::currentTextChanged, this, &SetupPrinter::RoomChanged);
  AddRow(*rows_, tr("Character &set:"), SideBySide({cmbFont_, edit}), cmbFont_);
  AddRow(*rows_, tr("Printer's code pa&ge:"), SideBySide({cmbCodePage_}), cmbCodePage_);
}

void SetupPrinter::AddWindowsRows() {
  OptPortrait_->setObjectName("OptPortrait");
  OptLandscape_->setObjectName("OptLandscape");
  connect(font_, &SetupFont::Changed, this, &SetupPrinter::RoomChanged);
  connect(OptPortrait_, &QRadioButton::toggled, this, &SetupPrinter::RoomChanged);
  AddRow(*rows_, tr("Fo&nt:"), font_, font_->ChooseButton());
  AddRow(*rows_, tr("Ori&entation:"), SideBySide({OptPortrait_, OptLandscape_}), OptPortrait_);
}

void SetupPrinter::EditSets() {
  TellFailure([this] {
    frmDec().Ask();
    ListSets();
  });
}

void SetupPrinter::ListSets() {
  const QString chosen = cmbFont_->currentText();
  const bool listed = cmbFont_->currentIndex() < listed_sets_;
  const std::vector<CharacterSet> sets = ListCharacterSets(*CurrentHost().settings);
  cmbFont_->clear();
  for (const CharacterSet& set : sets) cmbFont_->addItem(QString::fromStdString(set.name));
  listed_sets_ = cmbFont_->count();
  if (listed) {
    cmbFont_->setCurrentIndex(cmbFont_->findText(chosen));
  } else {
    ChooseSet(chosen);
  }
}

// One that is not stored is printed with the usual code.
void SetupPrinter::ChooseSet(const QString& name) {
  if (!name.isEmpty() && cmbFont_->findText(name) < 0) cmbFont_->addItem(name);
  cmbFont_->setCurrentIndex(cmbFont_->findText(name));
}

void SetupPrinter::Show(const SetupValues& values) {
  for (int row = kFirstTextModeRow; row < kRows; ++row) {
    rows_->setRowVisible(row, values.text_mode == (row < kFirstWindowsRow));
  }
  ChooseSet(QString::fromStdString(values.character_set));
  cmbCodePage_->setCurrentIndex(
      cmbCodePage_->findText(QString::fromStdString(values.code_page), Qt::MatchFixedString));
  font_->Show(values.font);
  (values.portrait ? OptPortrait_ : OptLandscape_)->setChecked(true);
}

void SetupPrinter::TakeInto(SetupValues& values) const {
  values.printer = cmbPrinter_->currentText().toStdString();
  values.port = lbl_->text().toStdString();
  values.character_set = cmbFont_->currentText().toStdString();
  values.code_page = cmbCodePage_->currentText().toStdString();
  values.font = font_->Font();
  values.portrait = OptPortrait_->isChecked();
}

QWidget& SetupPrinter::FontControl(const SetupValues& values) const {
  if (values.text_mode) return *cmbFont_;
  return *font_->ChooseButton();
}

}  // namespace kel
