// The dialog that asks for the number of the first page.
#pragma once

#include "common/job_values.h"
#include "controls/entry_dialog.h"

namespace kel {

/// txtPageNo starts with the job's first page number. cmdOk puts what was typed, and whether it
/// differed, into the job; any other way out of the dialog changes no page number.
class frmStartPage : public EntryDialog {
 public:
  /// `job` must outlive the dialog.
  explicit frmStartPage(JobValues& job);

 private:
  void Take();

  JobValues& job_;
  QLineEdit* txtPageNo_;  // a child
};

}  // namespace kel
