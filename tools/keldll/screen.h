// Verbs and options that open windows.
#pragma once

#include <string>

namespace kel::command {

/// Keeps Qt's warnings about displays, folders and fonts off standard error, where the command's
/// own one line is to stand.
void DropQtWarnings();

/// Throws Error 5, beginning with `what`, where no window can be shown.
void RequireScreen(const std::string& what);

}  // namespace kel::command
