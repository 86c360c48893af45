#include "platform/qt/qt_sql_statement.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlRecord>
#include <new>
#include <utility>

#include "platform/qt/qt_sql_native.h"

namespace kel {

QtSqlStatement::QtSqlStatement(SharedQtSql connection, QSqlQuery query, std::string sql)
    : connection_(std::move(connection)),
      query_(std::move(query)),
      codes_(TypeCodesOf(query_)),
      sql_(std::move(sql)) {
  finished_ = !query_.isSelect();
  if (finished_) return;
  connection_->Stream(*this);
  const QSqlRecord record = query_.record();
  for (int i = 0; i < record.count(); ++i) columns_.push_back(QtColumn(record.field(i), codes_));
}

QtSqlStatement::~QtSqlStatement() { connection_->Release(*this); }

bool QtSqlStatement::Step() {
  if (rest_) return StepInRest();
  if (finished_) return false;
  connection_->RequireUsable();
  return Fetch(row_);
}

/// Qt ends a result that fails or is cut off as it ends any other, but for the error it leaves.
bool QtSqlStatement::Fetch(QtRow& row) {
  if (query_.next()) {
    ++rows_;
    row.Read(query_, columns_, codes_);
    return true;
  }
  finished_ = true;
  connection_->Release(*this);
  const QSqlError error = query_.lastError();
  if (!error.isValid()) return false;
  const std::string what_failed = "cannot read row " + std::to_string(rows_ + 1) + " of " + sql_;
  if (error.databaseText().isEmpty() && connection_->IsNativePostgres()) {
    throw Error(error_number::kDatabase,
                what_failed + ": another query on the connection has taken the place of the rest");
  }
  throw QtSqlError(what_failed, error);
}

CellView QtSqlStatement::Cell(int column) const {
  const auto index = static_cast<std::size_t>(column);
  if (rest_ && rest_->next > 0) {
    return rest_->rows.Cell(static_cast<RowId>(rest_->next - 1), index);
  }
  return row_.Cells().at(index);
}

std::int64_t QtSqlStatement::RecordsAffected() const { return query_.numRowsAffected(); }

void QtSqlStatement::ReadRest() {
  if (finished_) return;
  rest_.emplace(Rest{RowStore(columns_.size())});
  try {
    // The current row stays in row_.
    for (QtRow row; Fetch(row);) rest_->rows.Append(row.Cells());
  } catch (const Error& error) {
    rest_->failure = error;
  } catch (const std::bad_alloc&) {
    rest_->failure = Error(error_number::kOutOfMemory, "out of memory for the rows of " + sql_);
  }
  rest_->rows.Seal();
  query_.finish();
}

bool QtSqlStatement::StepInRest() {
  if (rest_->next < rest_->rows.Rows()) {
    ++rest_->next;
    return true;
  }
  if (rest_->failure) throw *std::exchange(rest_->failure, std::nullopt);
  return false;
}

}  // namespace kel
