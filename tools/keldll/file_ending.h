// What a file's name says about what is in it.
#pragma once

#include <string>
#include <string_view>

namespace kel::command {

/// From the last point of the file's name on; ".txt" is all ending.
std::string FileEnding(const std::string& path);

/// In any case of letters.
bool EndsAs(const std::string& path, std::string_view ending);

}  // namespace kel::command
