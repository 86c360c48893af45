#include "keldll/screen.h"

#include <QString>
#include <QtGlobal>
#include <cstdint>
#include <cstdio>

#include "common/error.h"
#include "platform/qt/qt_application.h"
#include "toolkit/CZURDLL.h"

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

void TellFailuresAtTheEnd() {
  SharedToolkit().OnError([](std::int32_t& /*Number*/, std::string& /*Description*/,
                             bool& Response) { Response = false; });
}

void TellFailuresInWindows() { SharedToolkit().OnError(nullptr); }

}  // namespace kel::command
