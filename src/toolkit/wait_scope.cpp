#include "toolkit/wait_scope.h"

#include "toolkit/CZURDLL.h"

namespace kel {

WaitScope::WaitScope(bool stop_button, const std::string& caption, std::optional<std::int32_t> min,
                     std::optional<std::int32_t> max) {
  SharedToolkit().ShowWait(stop_button, caption, min, max);
}

WaitScope::~WaitScope() { SharedToolkit().UnloadWait(); }

bool WaitScope::Step(std::int32_t steps) const {
  SharedToolkit().StepWait(steps);
  return !SharedToolkit().WaitWasStopped();
}

}  // namespace kel
