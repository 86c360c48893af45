// The condition dialog of the list window.
#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QPointer>
#include <functional>
#include <string>
#include <utility>

#include "controls/Button.h"
#include "listview/frmOptionEntries.h"
#include "listview/list_model.h"

namespace kel {

/// Its caption tells which: "Filter" or "Find".
enum class OptionMode { kFilter, kFind };

/// Lets the user pick a field, an operation and a value, or type a whole condition, and filters or
/// searches by it. What was entered is still there when it is opened again; it is only hidden, not
/// unloaded, when it closes.
///
///     frmOption dialog(model, this);
///     connect(&dialog, &frmOption::Filtered, this, &frmListview::ShowCaption);
///     dialog.Open(OptionMode::kFind);
class frmOption : public QDialog {
  Q_OBJECT

 public:
  /// The model is bound and outlives it; the dialog stays above `owner`, which is no parent.
  frmOption(ListModel& model, QWidget* owner);

  /// Shows it beside the list window.
  void Open(OptionMode mode);
  /// Fills the list of fields anew, when the model was bound to another recordset. What was entered
  /// stays when the fields are the same.
  void LoadFields();

  /// Runs an action, or does not while another one is under way: their wait windows let the user's
  /// events through.
  using Runner = std::function<void(const std::function<void()>& action)>;
  /// The list window's runner, so that the two windows have one action at a time between them.
  void RunThrough(Runner runner) { runner_ = std::move(runner); }

  /// Hides it, but not while something that it was asked for is under way.
  void reject() override;

 signals:
  /// A filter was set, and the model's caption with it.
  void Filtered();
  /// Possible values are looked for from now on (true), or no more: the grid is hidden meanwhile.
  void Scanning(bool scanning);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  using Action = void (frmOption::*)();

  Button* AddButton(const char* name, const char* caption, QDialogButtonBox::ButtonRole role);
  void ShowDirection(bool shown);
  void PlaceFirst();

  void Act(Action action);
  void Perform(Action action);
  void Apply();
  void Filter(const std::string& condition);
  void Find(const std::string& condition);
  void ListPossibleValues();
  void ShowScanning(bool scanning);

  ListModel& model_;
  const QPointer<QWidget> owner_;
  OptionMode mode_ = OptionMode::kFilter;
  bool placed_ = false;
  bool acting_ = false;
  Runner runner_ = [](const std::function<void()>& action) { action(); };
  OptionEntries* entries_;  // children
  QDialogButtonBox* buttons_;
  Button* cmdOK_;
};

}  // namespace kel
