// The command as a whole: verbs, exit statuses, and where every failure becomes one line.
#pragma once

#include <span>
#include <string>

namespace kel::command {

enum ExitStatus : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

/// Runs the command with the words after the program's name. Never throws: a failure is one line
/// on standard error.
ExitStatus Run(std::span<const std::string> words) noexcept;

}  // namespace kel::command
