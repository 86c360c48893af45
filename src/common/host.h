// The ports through which the library reaches the world around it.
#pragma once

#include <memory>

#include "common/clock.h"
#include "common/desktop.h"
#include "common/settings_store.h"

namespace kel {

/// One set of ports for the process. A fresh process has a headless desktop, the computer's clock
/// and a settings store in memory; a desktop program installs its host (InstallQtHost) before it
/// creates the first object of the library.
struct Host {
  std::shared_ptr<SettingsStore> settings;
  std::shared_ptr<Clock> clock;
  std::shared_ptr<Desktop> desktop;
};

/// The ports in use. Change them only while no other thread uses the library.
Host& CurrentHost();

}  // namespace kel
