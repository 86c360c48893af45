// Where a program is.
#pragma once

#include <filesystem>
#include <string_view>

namespace kel {

/// The program of that name in the first folder of PATH that has it; empty when none has. Folders
/// that PATH names relative to the current one don't count: anyone may have put something there. A
/// name with "/" is the path itself.
std::filesystem::path ProgramPath(std::string_view name);

}  // namespace kel
