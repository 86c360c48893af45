// The editor of the printer's character sets.
#pragma once

#include <QComboBox>
#include <vector>

#include "controls/entry_dialog.h"
#include "setup/character_sets.h"

namespace kel {

/// cmbFont takes the characters per inch, Init the decimal code; choosing a stored set shows its
/// code. Add and Delete change the stored sets at once.
///
///     frmDec().Ask();
class frmDec : public EntryDialog {
 public:
  /// Throws Error when the stored sets cannot be read.
  frmDec();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void AddFields();
  void List();
  const CharacterSet* TypedSet() const;
  void ShowCode();
  void Add();
  void AskAndDelete();

  std::vector<CharacterSet> sets_;
  QComboBox* cmbFont_;  // children
  QLineEdit* Init_;
  Button* Delete_;
};

}  // namespace kel
