#include "listview/frmOption.h"

#include <QKeyEvent>
#include <QScopeGuard>
#include <QVBoxLayout>

#include "controls/top_window.h"
#include "listview/condition_text.h"
#include "listview/list_windows.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space around and between controls, in pixels at 100 %

constexpr const char* kFilterCaption = "Filter";
constexpr const char* kFindCaption = "Find";
constexpr const char* kInvalidEntry = "\rInvalid entry!!!.";
constexpr std::int32_t kNotFoundTime = 1000;  // milliseconds

}  // namespace

frmOption::frmOption(ListModel& model, QWidget* owner)
    : model_(model), owner_(owner), entries_(new OptionEntries), buttons_(new QDialogButtonBox) {
  setObjectName("frmOption");
  setAttribute(Qt::WA_QuitOnClose, false);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(2 * kStep, 2 * kStep, 2 * kStep, 2 * kStep);
  layout->setSpacing(kStep);
  layout->addWidget(entries_);
  layout->addWidget(buttons_);

  cmdOK_ = AddButton("cmdOK", "&OK", QDialogButtonBox::AcceptRole);
  cmdOK_->Default(true);
  const Button* const possible =
      AddButton("cmdPoss", "Possible &Values", QDialogButtonBox::ActionRole);
  const Button* const cancel = AddButton("cmbCancel", "&Cancel", QDialogButtonBox::RejectRole);
  connect(cmdOK_, &Button::clicked, this, [this] { Act(&frmOption::Apply); });
  connect(possible, &Button::clicked, this, [this] { Act(&frmOption::ListPossibleValues); });
  connect(cancel, &Button::clicked, this, &frmOption::reject);
  LoadFields();
}

Button* frmOption::AddButton(const char* name, const char* caption,
                             QDialogButtonBox::ButtonRole role) {
  auto* const button = new Button(caption);
  button->setObjectName(name);
  buttons_->addButton(button, role);
  return button;
}

void frmOption::LoadFields() {
  QStringList names;
  const Recordset& records = *model_.Records();
  const int fields = records.State() == ObjectState::kOpen ? records.FieldCount() : 0;
  for (int i = 0; i < fields; ++i) names << QString::fromStdString(records.Field(i).name);
  entries_->ListFields(names);
}

void frmOption::Open(OptionMode mode) {
  if (!acting_) {
    mode_ = mode;
    setWindowTitle(mode == OptionMode::kFilter ? kFilterCaption : kFindCaption);
    ShowDirection(mode == OptionMode::kFind);
  }
  if (isHidden()) {
    SetOwner(*this, owner_);
    PlaceFirst();
  }
  show();
  raise();
  activateWindow();
}

// The lists keep their height while the screen has the room.
void frmOption::ShowDirection(bool shown) {
  const int height_before = sizeHint().height();
  entries_->ShowDirection(shown);
  entries_->layout()->activate();
  layout()->activate();
  const QSize wanted = size() + QSize(0, sizeHint().height() - height_before);
  if (placed_) resize(wanted.boundedTo(RoomOnScreen(*this)));
}

// Later it is where the user left it.
void frmOption::PlaceFirst() {
  if (placed_) return;
  placed_ = true;
  resize(sizeHint().boundedTo(RoomOnScreen(owner_ ? *owner_ : *this)));
  if (owner_) move(PlaceOver(*this, *owner_));
}

void frmOption::reject() {
  if (!acting_) QDialog::reject();
}

void frmOption::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter) return QDialog::keyPressEvent(event);
  if (event->isAutoRepeat()) return event->accept();  // still held from before
  cmdOK_->click();
}

void frmOption::Act(Action action) {
  if (acting_) return;
  runner_([this, action] { Perform(action); });
}

// No failure may leave the event handling.
void frmOption::Perform(Action action) {
  const QPointer<frmOption> self(this);
  acting_ = true;
  try {
    (this->*action)();
  } catch (...) {
    const Error failure = CaughtFailure();
    if (self.isNull()) return;
    ShowError(Error(failure.Number(), failure.Description() + kInvalidEntry),
              windowTitle().toStdString());
  }
  if (!self.isNull()) acting_ = false;
}

void frmOption::Apply() {
  const std::string field = entries_->Field();
  const Recordset& records = *model_.Records();
  const std::string condition = ConditionText(field, records.Field(records.FieldIndex(field)).type,
                                              entries_->Operation(), entries_->Value());
  mode_ == OptionMode::kFilter ? Filter(condition) : Find(condition);
}

void frmOption::Filter(const std::string& condition) {
  if (!model_.ApplyFilter(condition)) return;
  emit Filtered();
  accept();
}

void frmOption::Find(const std::string& condition) {
  if (model_.Find(condition, entries_->Direction()) != ListModel::Found::kNo) return;
  const QPointer<frmOption> self(this);
  SharedToolkit().MsgBox("Pattern '" + condition + "' not found.", msgOK, kFindCaption,
                         msgInformation, false, kNotFoundTime);
  if (self.isNull()) return;
  model_.LeaveEnd();
  entries_->FocusValue();
}

// Until they are all there the value box offers what it did.
void frmOption::ListPossibleValues() {
  QStringList values;
  const int field = model_.Records()->FieldIndex(entries_->Field());
  ShowScanning(true);
  const auto shown = qScopeGuard([this] { ShowScanning(false); });
  const bool all = model_.PossibleValues(
      field, [&](const std::string& value) { values << QString::fromStdString(value); },
      [this](std::int64_t done, std::int64_t rows) { entries_->PaintBar(done, rows); });
  if (all) entries_->ListValues(values);
}

void frmOption::ShowScanning(bool scanning) {
  entries_->ShowBar(scanning);
  emit Scanning(scanning);
}

}  // namespace kel
