#include "keldll/screen.h"

#include <QString>
#include <QtGlobal>
#include <cstdio>

#include "common/error.h"
#include "platform/qt/qt_application.h"

namespace kel::command {
namespace {

void DropWarnings(QtMsgType type, const QMessageLogContext& /*place*/, const QString& text) {
  if (type != QtCriticalMsg && type != QtFatalMsg) return;
  std::fprintf(stderr, "%s\n", qUtf8Printable(text));  // NOLINT(*-vararg)
}

}  // namespace

void DropQtWarnings() { qInstallMessageHandler(DropWarnings); }

void RequireScreen(const std::string& what) {
  if (CanShowWindows()) return;
  throw Error(error_number::kInvalidProcedureCall,
              what + " needs a screen: there is none at DISPLAY or WAYLAND_DISPLAY");
}

}  // namespace kel::command
