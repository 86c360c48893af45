#include "platform/qt/qt_host.h"

#include <memory>

#include "common/host.h"
#include "engine/report_windows.h"
#include "export/native_office.h"
#include "listview/list_windows.h"
#include "platform/posix/spooler_port.h"
#include "platform/posix/xdg_programs.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_list_windows.h"
#include "platform/qt/qt_report_windows.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/qt_system_printer.h"

namespace kel {

void InstallQtHost() {
  CurrentHost().settings = std::make_shared<QtSettingsStore>();
  CurrentHost().desktop = std::make_shared<QtDesktop>();
  ReportHost& report = CurrentReportHost();
  report.windows = std::make_shared<QtReportWindows>();
  report.printer_port = std::make_shared<SpoolerPort>();
  report.system_printer = std::make_shared<QtSystemPrinter>();
  CurrentExportHost().office = std::make_shared<NativeOffice>(std::make_shared<XdgPrograms>());
  CurrentListHost().windows = std::make_shared<QtListWindows>();
}

}  // namespace kel
