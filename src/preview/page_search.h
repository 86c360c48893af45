// Finding a text in the lines of a page file.
#pragma once

#include <cstddef>
#include <optional>

#include "common/text_cells.h"
#include "engine/page_file_reader.h"
#include "preview/search_text.h"

namespace kel {

/// Bytes of a file that are looked at together: few enough to stay in the cache meanwhile.
inline constexpr std::size_t kSearchBlockSize = std::size_t{256} * 1024;

/// A place where a searched text stands.
struct Match {
  LineNumber line = 0;  // of the file, from 1
  Cells column = 0;     // of the line as it is drawn, from 1
  Cells cells = 0;      // at least 1
};

/// The first match at or after `line`, the reader's next line being no later than that; on the
/// line `line` itself only matches whose column is greater than `after_column` count. ESC "E",
/// ESC "F", ESC "-1", ESC "-0" and Chr(1) are no part of a line's text; a form feed and any other
/// ESC are, but take no cell. Reads the file in blocks and looks at single lines only where
/// something may stand. Throws Error when the file cannot be read.
std::optional<Match> FindMatch(PageFileReader& reader, const SearchText& text, LineNumber line,
                               Cells after_column, std::size_t block_size = kSearchBlockSize);

}  // namespace kel
