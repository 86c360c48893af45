#include "keldll/setup_command.h"

#include "common/error.h"
#include "engine/CPrint.h"
#include "keldll/arguments.h"
#include "keldll/screen.h"
#include "platform/qt/qt_host.h"
#include "toolkit/CZURDLL.h"

namespace kel::command {

void RunSetup(std::span<const std::string> words) {
  if (!words.empty()) throw UsageError("unexpected \"" + words[0] + "\"");
  DropQtWarnings();
  RequireScreen("setup");
  InstallQtHost();
  // The command itself says why the window cannot open.
  SharedToolkit().OnError([](std::int32_t& /*Number*/, std::string& /*Description*/,
                             bool& Response) { Response = false; });
  CPrint print;
  // Stored texts that do not fit their type are there to be mended.
  const bool mismatch =
      print.LastError() && print.LastError()->Number() == error_number::kTypeMismatch;
  if (!print.LastError() || mismatch) {
    SharedToolkit().OnError(nullptr);
    print.ShowSetup();
  }
  if (print.LastError()) throw Error(*print.LastError());
}

}  // namespace kel::command
