#include "keldll/browse_table.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <utility>

#include "common/error.h"
#include "common/text_cells.h"
#include "data/csv.h"
#include "data/read_only_driver.h"
#include "keldll/file_rows.h"
#include "keldll/grid_json.h"

namespace kel::command {
namespace {

void Open(BrowseTable& table, Connection connection, const std::string& sql, CursorType cursor,
          LockType lock) {
  table.connection = std::make_shared<Connection>(std::move(connection));
  table.records = std::make_shared<Recordset>();
  table.records->FetchesInSlices(true);
  table.records->Open(sql, *table.connection, cursor, lock);
}

void OpenFile(BrowseTable& table, OpenRows rows) {
  Open(table, Connection(ReadOnlyDriver(std::move(rows))), "", CursorType::kStatic,
       LockType::kReadOnly);
}

std::vector<GridAlignment> AlignmentsOf(MemoryGrid& grid) {
  std::vector<GridAlignment> alignments;
  alignments.reserve(static_cast<std::size_t>(grid.Cols()));
  for (std::int32_t col = 0; col < grid.Cols(); ++col) {
    alignments.push_back(grid.ColAlignment(col) == kAlignLeft ? gridLeft : gridRight);
  }
  return alignments;
}

void OpenGridFile(BrowseTable& table, const std::filesystem::path& path) {
  auto file = std::make_shared<JsonGrid>(ReadGridJson(path));
  if (file->caption) table.caption = *file->caption;
  table.alignments = AlignmentsOf(file->grid);
  OpenFile(table, [path, file]() mutable {
    // What was read for the caption serves the first time, too.
    const auto read = std::exchange(file, nullptr);
    return TableRows(OpenGrid(read ? std::move(read->grid) : ReadGridJson(path).grid));
  });
}

void OpenStatement(BrowseTable& table, const BrowseOptions& options) {
  const Access access = options.active.empty() ? Access::kRead : Access::kReadWrite;
  Open(table, OpenDatabase(options.source, access), options.source.sql, CursorType::kKeyset,
       LockType::kOptimistic);
}

void RequireEditable(const BrowseOptions& options) {
  if (options.active.empty() || !options.source.IsFile()) return;
  throw Error(error_number::kInvalidProcedureCall,
              "--active: " + options.source.name + " cannot be edited, only tables of a --db can");
}

void RequireColumns(const BrowseOptions& options, int count) {
  const auto refuse = [&](const std::string& what) {
    throw Error(error_number::kSubscriptOutOfRange,
                what + ", but " + options.source.name + " has " + std::to_string(count) +
                    (count == 1 ? " column" : " columns, counted from 0"));
  };
  const auto require = [&](const char* option, std::int32_t column) {
    if (column >= count) refuse(option + (" names column " + std::to_string(column)));
  };
  for (const std::int32_t column : options.active) require("--active", column);
  for (const std::int32_t column : options.sums) require("--sums", column);
  for (const auto& [column, format] : options.formats) require("--formats", column);
  const std::size_t aligned = options.alignments.size();
  if (aligned > static_cast<std::size_t>(count)) {
    refuse("--align names " + std::to_string(aligned) + " columns");
  }
}

}  // namespace

BrowseTable OpenTable(const BrowseOptions& options) {
  RequireEditable(options);
  BrowseTable table;
  table.caption = CaptionOf(options.source);
  switch (options.source.kind) {
    case SourceKind::kGridFile:
      OpenGridFile(table, options.source.name);
      break;
    case SourceKind::kCsvFile:
      OpenFile(table, [path = options.source.name] { return TableRows(OpenCsv(path)); });
      break;
    case SourceKind::kDatabaseFile:
    case SourceKind::kServer:
      OpenStatement(table, options);
      break;
  }
  RequireColumns(options, table.records->FieldCount());
  if (options.caption) table.caption = *options.caption;
  const auto& given = options.alignments;
  if (table.alignments.size() < given.size()) table.alignments.resize(given.size());
  std::copy(given.begin(), given.end(), table.alignments.begin());
  return table;
}

}  // namespace kel::command
