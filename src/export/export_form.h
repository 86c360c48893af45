// The export dialog without its window: what its controls show, and what OK does next.
#pragma once

#include <string>

#include "common/settings_store.h"
#include "engine/report_windows.h"
#include "export/export_choices.h"
#include "export/report_export.h"

namespace kel {

/// The choices of the dialog. They begin with those of the last export (section "Export"); what is
/// stored there but is no index of a list counts as its first item.
///
///     ExportForm form(*CurrentHost().settings);
///     form.Choose("/home/user/Sales");
///     if (form.OnOk() == ExportForm::Step::kExport) ExportReport(form.Order(report), ...);
class ExportForm {
 public:
  /// Keeps a reference to the store. Throws Error when that cannot be read.
  explicit ExportForm(SettingsStore& store);

  ExportFormat Format() const { return format_; }
  /// A name that ends with the extension of a format gets that of this one.
  void Format(ExportFormat format);

  ExportDestination Destination() const { return destination_; }
  /// Empties the name; for mail it becomes that of the last attachment.
  void Destination(ExportDestination destination);

  /// What the name box shows: a path, or an attachment's name.
  const std::string& Name() const { return name_; }
  /// Takes what was typed.
  void Name(std::string name) { name_ = std::move(name); }
  /// Takes a file that the user chose, and agreed to replace if there is one. The extension is put
  /// behind it where it is missing.
  void Choose(const std::string& path);

  /// The label of the name box, with its mnemonic.
  static const char* NameLabel(ExportDestination destination);
  bool IsNameEnabled() const { return destination_ != ExportDestination::kApplication; }
  bool IsNameReadOnly() const { return !IsMail(); }
  /// A path is no name for an attachment.
  bool CanBrowse() const { return !IsMail(); }

  enum class Step { kBrowse, kAskName, kExport };
  /// kBrowse also where the name is that of a file which nobody has agreed to replace.
  Step OnOk() const;

  ExportOrder Order(const ReportSnapshot& report) const;

  /// Stores the choices, and the name of a mail's attachment, for the next export. Throws Error
  /// when they cannot be written.
  void Keep();

 private:
  bool IsMail() const { return destination_ == ExportDestination::kMail; }

  SettingsStore& store_;
  ExportFormat format_;
  ExportDestination destination_;
  std::string attachment_;  // of the last mail
  std::string name_;
  std::string agreed_;  // the name whose file may be replaced
};

}  // namespace kel
