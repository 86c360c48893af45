// The text of a report without its control codes.
#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

namespace kel {

/// Reads a page file line by line, removes the control codes and the title mark from each line and
/// hands the lines, each ended by CR LF, to `sink` in big pieces. The Chr(12) lines stay. Throws
/// Error when the file cannot be read, and passes on what the sink throws.
void CopyWithoutCodes(const std::filesystem::path& page_file,
                      const std::function<void(std::string_view)>& sink);

}  // namespace kel
