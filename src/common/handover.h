// Files that are handed to other programs to open.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kel {

/// A name that no one else has taken: "rad", five hexadecimal digits, ".tmp" (GetTempName).
std::string TempName();

/// The path of a new file `extension` (with its dot) in the sub-folder "handover" of the temporary
/// folder. Emptying the temporary folder leaves what is there alone for a week. Nothing stands
/// there yet. Throws Error when the folder cannot be made.
std::filesystem::path HandoverPath(std::string_view extension);

/// The path of a file of exactly that name in a new folder of its own in there. What a file name
/// cannot have ("/", control characters) is "_" in it; a name too long for the system is cut before
/// its extension.
std::filesystem::path HandoverPathNamed(std::string_view name);

}  // namespace kel
