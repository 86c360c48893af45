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
  TellFailuresAtTheEnd();
  CPrint print;
  // Stored texts that do not fit their type are there to be mended.
  const bool mismatch =
      print.LastError() && print.LastError()->Number() == error_number::kTypeMismatch;
  if (!print.LastError() || mismatch) {
    TellFailuresInWindows();
    print.ShowSetup();
  }
  if (print.LastError()) throw Error(*print.LastError());
}

}  // namespace kel::command
