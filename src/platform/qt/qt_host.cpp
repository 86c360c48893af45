#include "platform/qt/qt_host.h"

#include <memory>

#include "common/host.h"
#include "engine/report_windows.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_report_windows.h"
#include "platform/qt/qt_settings_store.h"

namespace kel {

void InstallQtHost() {
  CurrentHost().settings = std::make_shared<QtSettingsStore>();
  CurrentHost().desktop = std::make_shared<QtDesktop>();
  CurrentReportHost().windows = std::make_shared<QtReportWindows>();
}

}  // namespace kel
