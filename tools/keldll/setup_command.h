// `keldll setup`: the printer setup dialog.
#pragma once

#include <span>
#include <string>

namespace kel::command {

/// Returns when the dialog is closed. Throws UsageError or Error.
void RunSetup(std::span<const std::string> words);

}  // namespace kel::command
