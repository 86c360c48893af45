// The export dialog.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <memory>

#include "common/settings_store.h"
#include "controls/ProgressBar.h"
#include "controls/entry_dialog.h"
#include "engine/report_windows.h"
#include "export/export_form.h"

namespace kel {

class ExportBar;

/// Turns a prepared report into a file and hands that over, by the office of CurrentExportHost().
/// The choices stand in the settings store of CurrentHost() between runs. While an export runs,
/// Cancel, Escape and the window's own close stop it. Stopped, or failed, which is told, the dialog
/// stays open.
///
///     const QPointer<frmExport> dialog = new frmExport(report);
///     dialog->Ask();
///     delete dialog;  // unless the program has, meanwhile
class frmExport : public EntryDialog {
 public:
  /// Throws Error when the settings cannot be read.
  explicit frmExport(ReportSnapshot report);

  void reject() override;

 private:
  void MakeFields();
  QComboBox* AddChoice(const char* name, const QString& label, int row);
  void MakeNameRow(int row);
  static QLabel* WidestNameLabel();
  void MakeBar();
  void ShowName();

  void Start();
  bool Browse();
  void Export();
  void BeginWork();
  void EndWork();
  void Finish();

  ReportSnapshot report_;
  std::shared_ptr<SettingsStore> store_;
  ExportForm form_;
  QWidget* fields_;  // children
  QComboBox* cmbFormat_;
  QComboBox* cmbDestination_;
  QLabel* name_label_;
  QLineEdit* txtFilename_;
  Button* cmdBrowse_;
  ProgressBar* PB_;
  Button* OK_;
  ExportBar* running_ = nullptr;  // null unless an export runs
  QPointer<QWidget> focused_;     // before it
};

}  // namespace kel
