// keldll browse: the list window on a table.
#pragma once

#include <span>
#include <string>

namespace kel::command {

/// Runs until the window is closed. Throws UsageError and Error.
void RunBrowse(std::span<const std::string> words);

}  // namespace kel::command
