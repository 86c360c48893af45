// Types and cells of Qt's databases as those of drivers.
#pragma once

#include <QSqlField>
#include <QSqlQuery>
#include <string>
#include <vector>

#include "data/driver.h"

namespace kel {

/// Whose numbers QSqlField::typeID gives.
enum class QtTypeCodes { kPostgres, kOdbc, kMySql, kQtOnly };

QtTypeCodes TypeCodesOf(const QSqlQuery& query);

/// Name, type and comparability of a column; the table as far as Qt tells it.
ColumnInfo QtColumn(const QSqlField& field, QtTypeCodes codes);

/// The cells of one row. They stay good until the next Read.
class QtRow {
 public:
  /// REQUIRES a query on a row; `columns` are those of its result. Reads the cells in their order,
  /// as ODBC wants it.
  void Read(QSqlQuery& query, const std::vector<ColumnInfo>& columns, QtTypeCodes codes);

  const std::vector<CellView>& Cells() const noexcept { return cells_; }

 private:
  std::vector<CellView> cells_;
  std::vector<std::string> texts_;
};

}  // namespace kel
