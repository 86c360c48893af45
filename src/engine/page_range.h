// The page-range copy.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "engine/page_format.h"

namespace kel {

/// Copies pages `from` to `to`, counted from 1 at the start of `page_file`, into a new file in the
/// same format. A range that begins below 1 begins at the top, one that ends beyond the last page
/// ends with it, one that ends before it begins is empty. `page_offsets` tells where pages stand
/// and may be shorter than the file or empty. Throws Error when a file cannot be read or written.
void CopyPages(const std::filesystem::path& page_file, const std::filesystem::path& range_file,
               PageNumber from, PageNumber to, std::int32_t page_length,
               std::span<const std::uint64_t> page_offsets);

}  // namespace kel
