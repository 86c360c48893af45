// Verbs and options that open windows.
#pragma once

#include <string>

namespace kel::command {

/// Keeps Qt's warnings about displays, folders and fonts off standard error, where the command's
/// own one line is to stand.
void DropQtWarnings();

/// Throws Error 5, beginning with `what`, where no window can be shown.
void RequireScreen(const std::string& what);

/// From now on failures of the library's operations are shown in no message box: the command itself
/// tells what failed.
void TellFailuresAtTheEnd();

/// From now on they are shown in message boxes: a window is open.
void TellFailuresInWindows();

}  // namespace kel::command
