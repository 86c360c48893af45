#include "setup/frmDec.h"

#include <QFormLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "common/host.h"
#include "setup/frmSetupMessages.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space between controls, in pixels at 100 %
constexpr int kNameCharacters = 12;

SettingsStore& Store() { return *CurrentHost().settings; }

}  // namespace

frmDec::frmDec()
    : EntryDialog("frmDec", tr("Character Sets")), cmbFont_(new QComboBox), Init_(new QLineEdit) {
  AddFields();
  const Button* const add = AddButton("Add", tr("&Add"), QDialogButtonBox::ActionRole);
  Delete_ = AddButton("Delete", tr("De&lete"), QDialogButtonBox::ActionRole);
  const Button* const cancel = AddButton("Cancel", tr("&Cancel"), QDialogButtonBox::RejectRole);
  connect(cmbFont_, &QComboBox::currentTextChanged, this, &frmDec::ShowCode);
  connect(add, &Button::clicked, this, [this] { TellFailure([this] { Add(); }); });
  connect(Delete_, &Button::clicked, this, [this] { TellFailure([this] { AskAndDelete(); }); });
  connect(cancel, &Button::clicked, this, &frmDec::reject);
  List();
  cmbFont_->setCurrentIndex(0);
  ShowCode();
}

void frmDec::AddFields() {
  cmbFont_->setObjectName("cmbFont");
  cmbFont_->setEditable(true);
  cmbFont_->setInsertPolicy(QComboBox::NoInsert);
  cmbFont_->setCompleter(nullptr);  // it would make 10 cpi of a typed 1
  cmbFont_->setMinimumContentsLength(kNameCharacters);
  cmbFont_->setAccessibleName(tr("Characters per inch"));
  Init_->setObjectName("Init");
  Init_->setAccessibleName(tr("Decimal code"));

  auto* const fields = new QFormLayout;
  fields->setHorizontalSpacing(kStep);
  fields->setVerticalSpacing(kStep);
  fields->addRow(tr("&Please enter Charecters per inch."), cmbFont_);
  fields->addRow(tr("&Decimal code after ESC:"), Init_);
  static_cast<QVBoxLayout*>(layout())->insertLayout(0, fields);
}

void frmDec::showEvent(QShowEvent* event) {
  EntryDialog::showEvent(event);
  cmbFont_->setFocus();
  cmbFont_->lineEdit()->selectAll();
}

void frmDec::List() {
  sets_ = ListCharacterSets(Store());
  const QSignalBlocker quiet(cmbFont_);
  const QString typed = cmbFont_->currentText();
  cmbFont_->clear();
  for (const CharacterSet& set : sets_) cmbFont_->addItem(QString::fromStdString(set.name));
  cmbFont_->setCurrentText(typed);
}

// The set whose name, or whose number alone, stands in the box.
const CharacterSet* frmDec::TypedSet() const {
  const std::string typed = cmbFont_->currentText().toStdString();
  const std::string name = CharacterSetName(typed);
  const auto found = std::find_if(sets_.begin(), sets_.end(), [&](const CharacterSet& set) {
    return set.name == typed || set.name == name;
  });
  return found == sets_.end() ? nullptr : &*found;
}

// The code of a set that is not stored is for the user to type: what stands there is left.
void frmDec::ShowCode() {
  const CharacterSet* const set = TypedSet();
  Delete_->setEnabled(set != nullptr);
  if (set != nullptr) Init_->setText(QString::fromStdString(set->code));
}

void frmDec::Add() {
  const std::string pitch = cmbFont_->currentText().toStdString();
  const auto fault = AddCharacterSet(Store(), pitch, Init_->text().toStdString());
  if (fault && fault->field == CharacterSetField::kPitch) return PointAt(*cmbFont_, fault->message);
  if (fault) return PointAt(*Init_, fault->message);
  List();
  cmbFont_->setCurrentText(QString::fromStdString(CharacterSetName(pitch)));
  ShowCode();
  cmbFont_->setFocus();
  cmbFont_->lineEdit()->selectAll();
}

void frmDec::AskAndDelete() {
  const CharacterSet set = *TypedSet();
  if (!SharedToolkit().MsgBox("Delete?", msgYesNo + msgDefault2, set.name, msgDelete)) return;
  DeleteCharacterSet(Store(), set.name);
  List();
  cmbFont_->setCurrentIndex(0);
  ShowCode();
  cmbFont_->setFocus();
}

}  // namespace kel
