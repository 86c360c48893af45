// What a prepared report is called.
#pragma once

#include <filesystem>
#include <string>

#include "common/job_values.h"

namespace kel {

/// The caption in the page line of a report's first page, as far as the line had room for it; empty
/// when there is none. Throws Error when the file cannot be read.
std::string CaptionOf(const std::filesystem::path& page_file, const JobValues& job);

}  // namespace kel
