// A running statement on a database of Qt's.
#pragma once

#include <QSqlQuery>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/driver.h"
#include "data/row_store.h"
#include "platform/qt/qt_sql_cells.h"
#include "platform/qt/qt_sql_connection.h"

namespace kel {

class QtSqlStatement final : public Statement {
 public:
  /// REQUIRES a query that has run. `sql` is for error messages.
  QtSqlStatement(SharedQtSql connection, QSqlQuery query, std::string sql);
  ~QtSqlStatement() override;
  QtSqlStatement(const QtSqlStatement&) = delete;
  QtSqlStatement& operator=(const QtSqlStatement&) = delete;

  int ColumnCount() const override { return static_cast<int>(columns_.size()); }
  const ColumnInfo& Column(int column) const override {
    return columns_.at(static_cast<std::size_t>(column));
  }
  bool Step() override;
  CellView Cell(int column) const override;

  /// Of a statement that changes records.
  std::int64_t RecordsAffected() const;
  /// For what only the driver knows of the columns.
  const QSqlQuery& Query() const noexcept { return query_; }
  std::vector<ColumnInfo>& Columns() noexcept { return columns_; }
  /// Takes the rows that are still to come into memory; the current row's cells stay where they
  /// are.
  void ReadRest();

 private:
  /// The rows that ReadRest took.
  struct Rest {
    RowStore rows;
    std::size_t next = 0;
    std::optional<Error> failure = {};  // of the row behind the last one
  };

  bool Fetch(QtRow& row);
  bool StepInRest();

  SharedQtSql connection_;
  QSqlQuery query_;
  QtTypeCodes codes_;
  std::string sql_;  // on one line
  std::vector<ColumnInfo> columns_;
  QtRow row_;
  std::optional<Rest> rest_;
  std::uint64_t rows_ = 0;
  bool finished_ = false;
};

}  // namespace kel
