// Grids written down as JSON.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine/memory_grid.h"

namespace kel::command {

/// What a grid file holds. Its caption is not yet the grid's own.
struct JsonGrid {
  MemoryGrid grid{""};
  std::optional<std::string> caption;
  std::optional<std::vector<std::int32_t>> widths;
  std::vector<std::string> titles;
};

/// Reads a file such as
///
///     {
///       "Caption": "Trial Balance",
///       "TextMatrix": [["Code", "Account"], ["1001", "Cash in hand"]],
///       "ColWidth": [6, 24],
///       "ColAlignment": [1, 1],
///       "FixedRows": 1,
///       "CellFontBold": [[1, 1]],
///       "CellFontUnderline": [[1, 0]],
///       "ReportTitle": ["ACME Traders", "2026-27"]
///     }
///
/// Only TextMatrix is required; members come in any order, cells are named [row, column]. A cell
/// may also be a number, true or false, which stand for their text, or null, which is empty. Bytes
/// that are not UTF-8 pass unchanged and a byte order mark is skipped. Throws Error 321 naming
/// file, line and column (counted in bytes) for text that is not JSON, members it does not know or
/// that have the wrong type, a grid without cells, and marked cells that it does not have.
JsonGrid ReadGridJson(const std::filesystem::path& path);

}  // namespace kel::command
