// The page of the setup window that holds the printer and what it prints with.
#pragma once

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QWidget>
#include <vector>

#include "engine/system_printer.h"
#include "setup/frmSetupFont.h"
#include "setup/setup_values.h"

namespace kel {

/// cmbPrinter and its port; below, in text mode the character set and the printer's code page, in
/// Windows mode font and orientation. A stored printer, port, character set or code page that is
/// not there is kept and shown.
class SetupPrinter : public QWidget {
  Q_OBJECT

 public:
  SetupPrinter(const SetupValues& values, std::vector<PrinterName> printers);

  /// Lists the stored character sets; the chosen one stays chosen unless it was listed and is not
  /// there any more.
  void ListSets();
  void Show(const SetupValues& values);
  void TakeInto(SetupValues& values) const;
  /// What a missing font is chosen with in the mode of the values.
  QWidget& FontControl(const SetupValues& values) const;

 signals:
  /// Another character set, font or orientation is chosen.
  void RoomChanged();

 private:
  void AddPrinters(const SetupValues& values);
  void ShowPortOf(int printer, const PrinterName& stored);
  void AddTextModeRows(const QString& stored_code_page);
  void AddWindowsRows();
  void EditSets();
  void ChooseSet(const QString& name);

  std::vector<PrinterName> printers_;
  QString own_port_;     // stored or typed, not told by a printer
  int listed_sets_ = 0;  // the first items of cmbFont_; one that is not stored stands behind
  QFormLayout* rows_;    // children
  QComboBox* cmbPrinter_;
  QLineEdit* lbl_;
  QComboBox* cmbFont_;
  QComboBox* cmbCodePage_;
  SetupFont* font_;
  QRadioButton* OptPortrait_;
  QRadioButton* OptLandscape_;
};

}  // namespace kel
