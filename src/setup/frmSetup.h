// The printer setup.
#pragma once

#include <QRadioButton>
#include <QTabWidget>
#include <array>

#include "controls/entry_dialog.h"
#include "controls/fitting_page.h"
#include "setup/frmSetupPage.h"
#include "setup/frmSetupPrinter.h"
#include "setup/setup_values.h"

namespace kel {

/// OptDOS and OptWindows choose the print mode whose settings are shown; cmdOk saves those, and
/// only those, to the settings store of CurrentHost() and rebuilds the print files. What is wrong
/// is pointed at and the dialog stays open. The printers are those of CurrentReportHost().
///
///     frmSetup().Ask();
class frmSetup : public EntryDialog {
 public:
  /// Throws Error when the settings cannot be read.
  frmSetup();

 private:
  QLayout* ModeChoice();
  void AddButtons();
  void FitScreen();

  void ChooseMode(bool text_mode);
  void ShowValues();
  void ShowCapacity();
  void Take();
  void PutDefaultValues();
  void Save();
  void Tell(const SetupFault& fault);

  SetupValues values_;
  QRadioButton* OptDOS_;  // children
  QRadioButton* OptWindows_;
  SetupPage* page_;
  SetupPrinter* printer_;
  std::array<FittingPage*, 2> tabs_;
  QTabWidget* tabStrip_;
};

}  // namespace kel
