#include "keldll/setup_command.h"

#include "common/error.h"
#include "engine/CPrint.h"
#include "keldll/arguments.h"
#include "keldll/screen.h"
#include "platform/qt/qt_host.h"

namespace kel::command {

void RunSetup(std::span<const std::string> words) {
  if (!words.empty()) throw UsageError("unexpected \"" + words[0] + "\"");
  DropQtWarnings();
  RequireScreen("setup");
  InstallQtHost();
  CPrint print;
  if (!print.LastError()) print.ShowSetup();
  if (print.LastError()) throw Error(*print.LastError());
}

}  // namespace kel::command
