#include "common/host.h"

#include "common/headless_desktop.h"

namespace kel {

Host& CurrentHost() {
  static Host host{std::make_shared<MemorySettingsStore>(), std::make_shared<SystemClock>(),
                   std::make_shared<HeadlessDesktop>()};
  return host;
}

}  // namespace kel
