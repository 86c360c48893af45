#include "platform/qt/qt_sql_connection.h"

#include <QStringDecoder>
#include <QStringList>
#include <QThread>
#include <utility>

#include "data/ado_errors.h"
#include "platform/qt/qt_sql_statement.h"

namespace kel {
/// PostgreSQL shows the place in the statement in two lines, which make no sense on one.
QString OneLineWords(const QSqlError& error) {
  const QString words = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
  QStringList kept;
  const QStringList lines = words.split('\n');
  for (qsizetype i = 0; i < lines.size(); ++i) {
    if (lines[i].startsWith("LINE ")) {
      ++i;
    } else {
      kept << lines[i];
    }
  }
  return kept.join(' ').simplified();
}

Error QtSqlError(const std::string& what_failed, const QSqlError& error) {
  return {error_number::kDatabase, what_failed + ": " + OneLineWords(error).toStdString()};
}

QString QtSqlText(std::string_view utf8) {
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString text = decoder(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
  if (decoder.hasError() || utf8.find('\0') != std::string_view::npos) {
    throw Error(error_number::kDatabase, "the database takes UTF-8 without NUL only");
  }
  return text;
}

QtSqlConnection::~QtSqlConnection() {
  if (ownership_ == Ownership::kOfProgram) return;
  const QString name = database_.connectionName();
  database_ = QSqlDatabase();
  QSqlDatabase::removeDatabase(name);
}

void QtSqlConnection::RequireUsable() const {
  if (!database_.isValid()) throw ObjectIsClosed();
  if (database_.driver()->thread() != QThread::currentThread()) {
    throw Error(error_number::kInvalidProcedureCall,
                "the database is used on the thread that opened it only");
  }
  if (database_.isOpen()) return;
  const Error closed = ObjectIsClosed();
  throw Error(closed.Number(), closed.Description() + " The database is closed, or was lost.");
}

QSqlDriver& QtSqlConnection::Driver() const {
  RequireUsable();
  return *database_.driver();
}

bool QtSqlConnection::IsNativePostgres() const { return Driver().inherits("QPSQLDriver"); }

bool QtSqlConnection::IsOdbc() const { return Driver().inherits("QODBCDriver"); }

QSqlQuery QtSqlConnection::NewQuery() {
  // SQLite's statements do each other no harm.
  const bool harmless = Driver().dbmsType() == QSqlDriver::SQLite;
  if (streaming_ != nullptr && !harmless) streaming_->ReadRest();
  QSqlQuery query(database_);
  query.setForwardOnly(true);
  query.setNumericalPrecisionPolicy(QSql::HighPrecision);
  return query;
}

}  // namespace kel
