// The progress of an export, shown on a bar.
#pragma once

#include <QPointer>
#include <chrono>
#include <cstdint>

#include "controls/ProgressBar.h"
#include "export/export_progress.h"

namespace kel {

/// Lets pending window events run while the export goes on; these may destroy the bar, which stops
/// the export.
class ExportBar : public ExportProgress {
 public:
  explicit ExportBar(ProgressBar& bar) : bar_(&bar) {}

  void Begin(std::int64_t steps) override;
  bool Step(std::int64_t steps) override;
  /// The user wants no more of it.
  void Stop() { stopped_ = true; }

 private:
  void Refresh();

  QPointer<ProgressBar> bar_;
  std::int64_t steps_per_notch_ = 1;  // a bar has no more notches than fit 32 bits
  std::int64_t done_ = 0;
  bool stopped_ = false;
  std::chrono::steady_clock::time_point refreshed_;
};

}  // namespace kel
