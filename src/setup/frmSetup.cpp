#include "setup/frmSetup.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "common/host.h"
#include "engine/report_windows.h"
#include "setup/frmSetupFont.h"
#include "setup/frmSetupMessages.h"
#include "toolkit/frmAbout.h"

namespace kel {
namespace {

constexpr const char* kAboutTag = "SETUP";
constexpr int kStep = 8;  // of the space between controls, in pixels at 100 %

SettingsStore& Store() { return *CurrentHost().settings; }

// Printers that cannot be listed keep nobody from setting up margins.
std::vector<PrinterName> SystemPrinters() {
  std::vector<PrinterName> printers;
  if (const auto system = CurrentReportHost().system_printer) {
    TellFailure([&] { printers = system->Printers(); });
  }
  return printers;
}

QRadioButton* ModeButton(const char* name, const QString& caption, const QString& description) {
  auto* const button = new QRadioButton(caption);
  button->setObjectName(name);
  button->setAccessibleDescription(description);
  return button;
}

CellSize CellOf(const SetupValues& values) {
  return values.text_mode ? TextModeCell(values.character_set) : FontCell(values.font);
}

}  // namespace

frmSetup::frmSetup()
    : EntryDialog("frmSetup", tr("Printer Setup")),
      values_(LoadSetup(Store())),
      page_(new SetupPage),
      printer_(new SetupPrinter(values_, SystemPrinters())),
      tabs_{new FittingPage(page_), new FittingPage(printer_)},
      tabStrip_(new QTabWidget) {
  auto* const all = static_cast<QVBoxLayout*>(layout());
  all->insertLayout(0, ModeChoice());
  tabStrip_->setObjectName("tabStrip");
  tabStrip_->addTab(tabs_[0], tr("&Page"));
  tabStrip_->addTab(tabs_[1], tr("Printer and &Font"));
  all->insertWidget(1, tabStrip_);
  AddButtons();

  printer_->ListSets();
  ShowValues();
  FitScreen();
  connect(page_, &SetupPage::SizeChanged, this, &frmSetup::ShowCapacity);
  connect(printer_, &SetupPrinter::RoomChanged, this, &frmSetup::ShowCapacity);
  connect(OptDOS_, &QRadioButton::toggled, this, &frmSetup::ChooseMode);
  (values_.text_mode ? OptDOS_ : OptWindows_)->setFocus();
}

QLayout* frmSetup::ModeChoice() {
  const QString speed = tr("For Better Speed");
  const QString quality = tr("For Better Quality");
  OptDOS_ = ModeButton("OptDOS", tr("D&OS Settings"), speed);
  OptWindows_ = ModeButton("OptWindows", tr("&Windows Settings"), quality);
  (values_.text_mode ? OptDOS_ : OptWindows_)->setChecked(true);

  auto* const choice = new QGridLayout;
  choice->setHorizontalSpacing(2 * kStep);
  choice->setVerticalSpacing(kStep);
  choice->addWidget(OptDOS_, 0, 0);
  choice->addWidget(new QLabel(speed), 0, 1);
  choice->addWidget(OptWindows_, 1, 0);
  choice->addWidget(new QLabel(quality), 1, 1);
  choice->setColumnStretch(1, 1);
  return choice;
}

void frmSetup::AddButtons() {
  const Button* const ok = AddButton("cmdOk", tr("O&K"), QDialogButtonBox::AcceptRole);
  const Button* const cancel = AddButton("cmdCancel", tr("&Cancel"), QDialogButtonBox::RejectRole);
  const Button* const defaults =
      AddButton("cmdDefault", tr("&Default"), QDialogButtonBox::ResetRole);
  const Button* const about = AddButton("cmdAbout", tr("Abo&ut..."), QDialogButtonBox::HelpRole);
  connect(ok, &Button::clicked, this, &frmSetup::Save);
  connect(cancel, &Button::clicked, this, &frmSetup::reject);
  connect(defaults, &Button::clicked, this, &frmSetup::PutDefaultValues);
  connect(about, &Button::clicked, this, [this] { frmAbout::Show(kAboutTag, this); });
}

// On a small screen the tabs get what the rest of the window leaves.
void frmSetup::FitScreen() {
  QSize tab;
  for (const FittingPage* const page : tabs_) tab = tab.expandedTo(page->sizeHint());
  const QSize rest = sizeHint() - tab;
  for (FittingPage* const page : tabs_) page->Room(Room() - rest);
  tabStrip_->updateGeometry();  // it does not ask its pages again before it is shown
}

// What was typed for the other mode is there again when one comes back to it.
void frmSetup::ChooseMode(bool text_mode) {
  Take();
  values_.text_mode = text_mode;
  ShowValues();
}

void frmSetup::ShowValues() {
  page_->Show(values_);
  printer_->Show(values_);
  ShowCapacity();
}

void frmSetup::ShowCapacity() {
  SetupValues shown = values_;
  page_->TakeInto(shown);
  printer_->TakeInto(shown);
  page_->ShowCapacity(CapacityOf(shown, CellOf(shown)));
}

void frmSetup::Take() {
  page_->TakeInto(values_);
  printer_->TakeInto(values_);
}

void frmSetup::PutDefaultValues() {
  Take();
  PutDefaults(values_);
  ShowValues();
}

void frmSetup::Save() {
  Take();
  if (const auto fault = FindFault(values_, CellOf(values_))) return Tell(*fault);
  if (TellFailure([this] { SaveSetup(Store(), values_, CellOf(values_)); })) accept();
}

void frmSetup::Tell(const SetupFault& fault) {
  tabStrip_->setCurrentIndex(fault.field ? 0 : 1);
  PointAt(fault.field ? page_->Box(*fault.field) : printer_->FontControl(values_), fault.message);
}

}  // namespace kel
