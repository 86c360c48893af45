#include "export/frmExportBar.h"

#include <algorithm>
#include <limits>
#include <memory>

#include "common/host.h"

namespace kel {
namespace {

constexpr std::chrono::milliseconds kBetweenRefreshes{50};
constexpr std::int64_t kMostNotches = std::numeric_limits<std::int32_t>::max();

}  // namespace

void ExportBar::Begin(std::int64_t steps) {
  done_ = 0;
  steps_per_notch_ = steps / kMostNotches + 1;
  if (bar_) bar_->Max(static_cast<std::int32_t>(steps / steps_per_notch_));
  Refresh();
}

bool ExportBar::Step(std::int64_t steps) {
  done_ += steps;
  if (std::chrono::steady_clock::now() - refreshed_ >= kBetweenRefreshes) Refresh();
  return bar_ && !stopped_;
}

void ExportBar::Refresh() {
  if (bar_ && !bar_->IsBusy()) {
    bar_->Value(static_cast<std::int32_t>(std::min(done_ / steps_per_notch_, kMostNotches)));
  }
  const std::shared_ptr<Desktop> desktop = CurrentHost().desktop;
  desktop->DoEvents();
  refreshed_ = std::chrono::steady_clock::now();
}

}  // namespace kel
