// A running statement of SQLite.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/error.h"
#include "data/driver.h"

namespace kel {

/// Statements share the database, so that it closes after the last of them.
using SqliteDatabase = std::shared_ptr<sqlite3>;

struct SqliteFinalizer {
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using SqliteHandle = std::unique_ptr<sqlite3_stmt, SqliteFinalizer>;

/// What failed and SQLite's own words for the reason.
Error SqliteError(const std::string& what_failed, std::string_view reason);

/// Gives a statement copies of the values for its "?". Throws Error when there are not as many.
void BindParameters(sqlite3* database, sqlite3_stmt* statement,
                    std::span<const Parameter> parameters);

class SqliteStatement final : public Statement {
 public:
  /// `sql` is for error messages. A statement with a result takes its first step, whose row the
  /// first Step hands out.
  SqliteStatement(SqliteDatabase database, SqliteHandle handle, std::string sql);

  int ColumnCount() const override { return static_cast<int>(columns_.size()); }
  const ColumnInfo& Column(int column) const override {
    return columns_.at(static_cast<std::size_t>(column));
  }
  bool Step() override;
  CellView Cell(int column) const override;
  bool MayChangeThread() const override { return true; }

 private:
  ColumnInfo DescribeColumn(int column) const;
  std::string_view Bytes(sqlite3_value* value, const void* bytes) const;

  SqliteDatabase database_;
  SqliteHandle handle_;
  std::string sql_;  // on one line
  std::vector<ColumnInfo> columns_;
  std::uint64_t rows_ = 0;
  bool first_row_waits_ = false;
  bool finished_ = false;
};

}  // namespace kel
