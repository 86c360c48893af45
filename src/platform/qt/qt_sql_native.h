// What client libraries know about a result and Qt's drivers keep to themselves.
#pragma once

#include <QSqlQuery>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kel {

/// A result of libpq behind a query of Qt's PostgreSQL driver. It gives the server's own text of
/// every cell, where Qt cuts times to milliseconds, shifts them by the local time zone and knows
/// neither "infinity" nor years beyond its calendar.
class PostgresResult {
 public:
  /// Nothing for a query of another driver, and where libpq is not a library of its own.
  /// For a forward-only query; good until its next row.
  static std::optional<PostgresResult> Of(const QSqlQuery& query);

  /// Whether there is one for every query of Qt's PostgreSQL driver.
  static bool IsKnown();

  /// 0 for a column that is no column of a table.
  std::uint32_t TableOf(int column) const;
  /// The column's number in that table, from 1.
  int NumberInTable(int column) const;
  /// Of the current row; nothing for Null.
  std::optional<std::string_view> Cell(int column) const;

 private:
  explicit PostgresResult(const void* result) : result_(result) {}

  const void* result_;
};

/// The name that a column of an ODBC result has in its table; empty where that is not known.
std::string OdbcBaseColumn(const QSqlQuery& query, int column);

}  // namespace kel
