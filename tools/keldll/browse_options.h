// What a `browse` command line asks for.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "keldll/source_options.h"
#include "listview/list_columns.h"  // GridAlignment

namespace kel::command {

/// Columns are counted from 0; whether the table has them shows when it is open.
struct BrowseOptions {
  SourceOptions source;
  std::optional<std::string> caption;
  std::vector<std::int32_t> active;
  std::vector<std::int32_t> sums;
  std::map<std::int32_t, std::string> formats;
  std::vector<GridAlignment> alignments;  // of the first columns
};

/// Throws UsageError for a wrong command line.
BrowseOptions ReadBrowseOptions(std::span<const std::string> words);

}  // namespace kel::command
