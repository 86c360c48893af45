// The dialog that asks which pages to print.
#pragma once

#include <cstdint>
#include <optional>

#include "controls/entry_dialog.h"
#include "engine/page_range_entry.h"

namespace kel {

/// txtFrom and txtTo start with the whole report. cmdPrint takes a valid range and closes the
/// dialog; an invalid one is told in a message box and the dialog stays.
///
///     frmPrint dialog(print.Pages());
///     dialog.Ask();
///     if (!dialog.Cancelled()) Print(*dialog.Range());
class frmPrint : public EntryDialog {
 public:
  explicit frmPrint(std::int32_t page_count);

  /// True until a valid range has been confirmed.
  bool Cancelled() const { return !range_; }
  /// Nothing when cancelled.
  const std::optional<PageRange>& Range() const { return range_; }

 private:
  void Print();

  std::int32_t page_count_;
  std::optional<PageRange> range_;
  QLineEdit* txtFrom_;  // children
  QLineEdit* txtTo_;
};

}  // namespace kel
