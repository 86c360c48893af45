#include "platform/qt/qt_host.h"

#include <memory>

#include "common/host.h"
#include "platform/qt/qt_settings_store.h"

namespace kel {

void InstallQtHost() { CurrentHost().settings = std::make_shared<QtSettingsStore>(); }

}  // namespace kel
