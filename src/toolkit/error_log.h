// The error log's file: one line per failure.
#pragma once

#include <filesystem>
#include <string_view>

namespace kel {

inline constexpr std::string_view kErrorLogName = "Error.log";

/// Appends a line to Error.log in `folder`, which is created when absent and closed right after:
///
///     15/11/2026 02:05:09 PM,[DLL.Save],5 : Invalid procedure call or argument
///
/// The time is that of the host's clock. `location` is written as it is, brackets included; line
/// breaks inside a description become blanks, commas stay. Throws Error when the line cannot be
/// written; the lines before it are then still whole. A link or anything else that is not a plain
/// file is not written to.
void AppendToErrorLog(const std::filesystem::path& folder, std::string_view location,
                      std::string_view description);

}  // namespace kel
