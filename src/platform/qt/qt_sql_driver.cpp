#include "platform/qt/qt_sql_driver.h"

#include <QSqlField>
#include <QSqlIndex>
#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "data/ado_errors.h"
#include "data/sql_rewrite.h"
#include "data/sql_text.h"
#include "data/sql_tokens.h"
#include "platform/qt/postgres_catalog.h"
#include "platform/qt/qt_sql.h"
#include "platform/qt/qt_sql_native.h"
#include "platform/qt/qt_sql_parameters.h"
#include "platform/qt/qt_sql_statement.h"

namespace kel {
namespace {

class QtSqlDriver : public Driver {
 public:
  explicit QtSqlDriver(SharedQtSql connection);

  using Driver::Execute;
  using Driver::Prepare;
  std::unique_ptr<Statement> Prepare(std::string_view sql,
                                     std::span<const Parameter> parameters) override;
  std::int64_t Execute(std::string_view sql, std::span<const Parameter> parameters) override;
  std::vector<std::string> KeyOf(const std::string& table) override;
  bool HasReturning() const override;
  std::string QuotedName(std::string_view name) const override;
  std::string EqualsParameter(const std::string& quoted, const ColumnInfo& column) const override;

 private:
  std::unique_ptr<QtSqlStatement> Run(std::string_view sql, std::span<const Parameter> parameters);
  QString TextFor(std::string_view sql, std::span<const Parameter> parameters);
  bool Start(QSqlQuery& query, const QString& text, std::span<const Parameter> parameters) const;
  void ForgetNames(std::string_view sql);
  void TellOrigins(QtSqlStatement& statement);
  void TellPostgresOrigins(QtSqlStatement& statement, const PostgresResult& result);
  std::string Quoted(std::string_view name) const;

  SharedQtSql connection_;
  QSqlDriver::DbmsType dbms_;
  bool native_postgres_;
  bool odbc_;
  SqlDialect dialect_;
  std::optional<PostgresCatalog> catalog_;  // of PostgreSQL
};

SqlDialect DialectOf(const QSqlDriver& driver, bool odbc) {
  SqlDialect dialect;
  if (odbc) dialect.dates = DateLiterals::kEscaped;
  const QString quoted = driver.escapeIdentifier("x", QSqlDriver::TableName);
  if (!quoted.isEmpty() && (quoted[0] == '`' || quoted[0] == '"')) {
    dialect.name_quote = quoted[0].toLatin1();
  }
  switch (driver.dbmsType()) {
    case QSqlDriver::PostgreSQL:
      dialect.dates = DateLiterals::kTyped;
      dialect.like_needs_text = true;
      dialect.has_subscripts = true;
      break;
    case QSqlDriver::MSSqlServer:
      dialect.knows_brackets = true;
      break;
    case QSqlDriver::SQLite:
      dialect.knows_brackets = true;
      dialect.dates = DateLiterals::kText;
      break;
    case QSqlDriver::MySqlServer:
      dialect.dates = DateLiterals::kText;
      break;
    default:
      if (!odbc) dialect.dates = DateLiterals::kTyped;
      break;
  }
  return dialect;
}

QtSqlDriver::QtSqlDriver(SharedQtSql connection)
    : connection_(std::move(connection)),
      dbms_(connection_->Driver().dbmsType()),
      native_postgres_(connection_->IsNativePostgres()),
      odbc_(connection_->IsOdbc()),
      dialect_(DialectOf(connection_->Driver(), odbc_)) {
  if (dbms_ == QSqlDriver::PostgreSQL) catalog_.emplace(*connection_);
}

std::unique_ptr<Statement> QtSqlDriver::Prepare(std::string_view sql,
                                                std::span<const Parameter> parameters) {
  std::unique_ptr<QtSqlStatement> statement = Run(sql, parameters);
  TellOrigins(*statement);
  return statement;
}

std::int64_t QtSqlDriver::Execute(std::string_view sql, std::span<const Parameter> parameters) {
  const std::unique_ptr<QtSqlStatement> statement = Run(sql, parameters);
  std::int64_t rows = 0;
  while (statement->Step()) ++rows;
  if (statement->ColumnCount() == 0) return std::max<std::int64_t>(statement->RecordsAffected(), 0);
  // With RETURNING each record affected is a row.
  const SqlToken verb = SqlTokenizer(sql).Next();
  const bool changes = verb.Is("INSERT") || verb.Is("UPDATE") || verb.Is("DELETE");
  return changes ? rows : 0;
}

std::unique_ptr<QtSqlStatement> QtSqlDriver::Run(std::string_view sql,
                                                 std::span<const Parameter> parameters) {
  connection_->RequireUsable();
  const std::string one_line = OneLineSql(sql);
  const std::string what_failed = "cannot run " + one_line;
  QString text;
  try {
    text = TextFor(sql, parameters);
  } catch (const Error& error) {
    throw Error(error.Number(), what_failed + ": " + error.Description());
  }
  if (native_postgres_) catalog_->Require();
  QSqlQuery query = connection_->NewQuery();
  if (!Start(query, text, parameters)) throw QtSqlError(what_failed, query.lastError());
  ForgetNames(sql);
  return std::make_unique<QtSqlStatement>(connection_, std::move(query), one_line);
}

/// Texts of more than one statement would hide what becomes of the second. The bodies of what is
/// created hold semicolons of their own.
void RefuseSeveral(std::string_view sql, SqlSyntax syntax) {
  SqlTokenizer tokens(sql, syntax);
  SqlToken token = tokens.Next();
  while (token.Is(';')) token = tokens.Next();
  if (token.kind == SqlToken::Kind::kEnd) {
    throw Error(error_number::kDatabase, "there is no statement");
  }
  for (const char* const verb : {"CREATE", "ALTER", "DECLARE", "BEGIN"}) {
    if (token.Is(verb)) return;
  }
  bool ended = false;
  for (; token.kind != SqlToken::Kind::kEnd; token = tokens.Next()) {
    if (ended && !token.Is(';')) {
      throw Error(error_number::kDatabase, "there is more than one statement");
    }
    ended = ended || token.Is(';');
  }
}

QString QtSqlDriver::TextFor(std::string_view sql, std::span<const Parameter> parameters) {
  std::function<std::string(std::string_view)> spelled;
  if (catalog_) spelled = [this](std::string_view name) { return catalog_->Spelling(name); };
  const std::string text = RewriteSql(sql, dialect_, spelled);
  RefuseSeveral(text, {.nested_comments = dbms_ == QSqlDriver::PostgreSQL,
                       .backslash_texts = dbms_ == QSqlDriver::MySqlServer});
  return QtSqlText(native_postgres_ ? WithPostgresLiterals(text, parameters) : text);
}

BoundValues BoundFor(QSqlDriver::DbmsType dbms) {
  switch (dbms) {
    case QSqlDriver::PostgreSQL:
      return BoundValues::kTexts;
    case QSqlDriver::SQLite:
    case QSqlDriver::MySqlServer:
      return BoundValues::kTextDates;
    default:
      return BoundValues::kTyped;
  }
}

bool QtSqlDriver::Start(QSqlQuery& query, const QString& text,
                        std::span<const Parameter> parameters) const {
  if (native_postgres_ || parameters.empty()) return query.exec(text);
  if (!query.prepare(text)) return false;
  BindValues(query, parameters, BoundFor(dbms_));
  return query.exec();
}

/// After anything but the reading and writing of records names may mean something else.
void QtSqlDriver::ForgetNames(std::string_view sql) {
  if (!catalog_) return;
  const SqlToken verb = SqlTokenizer(sql, {.nested_comments = true}).Next();
  for (const char* const harmless : {"SELECT", "INSERT", "UPDATE", "DELETE", "WITH", "VALUES"}) {
    if (verb.Is(harmless)) return;
  }
  catalog_->Forget();
}

void QtSqlDriver::TellOrigins(QtSqlStatement& statement) {
  if (const auto result = PostgresResult::Of(statement.Query())) {
    TellPostgresOrigins(statement, *result);
    return;
  }
  if (!odbc_) return;
  int number = 0;
  for (ColumnInfo& column : statement.Columns()) {
    const int index = number++;
    if (column.table.empty()) continue;
    column.origin = OdbcBaseColumn(statement.Query(), index);
    if (column.origin == column.name) column.origin.clear();
  }
}

void QtSqlDriver::TellPostgresOrigins(QtSqlStatement& statement, const PostgresResult& result) {
  std::vector<std::pair<std::uint32_t, int>> places;
  places.reserve(static_cast<std::size_t>(statement.ColumnCount()));
  for (int i = 0; i < statement.ColumnCount(); ++i) {
    places.emplace_back(result.TableOf(i), result.NumberInTable(i));
  }
  // From here on the result may be gone: a table that the catalog does not know yet is looked up.
  for (std::size_t i = 0; i < places.size(); ++i) {
    const PostgresCatalog::Table* const table = catalog_->TableOf(places[i].first);
    if (table == nullptr) continue;
    ColumnInfo& column = statement.Columns()[i];
    const auto named = table->columns.find(places[i].second);
    if (named == table->columns.end()) continue;
    column.table = table->Spelled();
    if (named->second != column.name) column.origin = named->second;
  }
}

std::vector<std::string> QtSqlDriver::KeyOf(const std::string& table) {
  connection_->RequireUsable();
  if (catalog_) return catalog_->KeyOf(table);
  const QSqlQuery reads_what_is_running = connection_->NewQuery();
  const QSqlIndex index = connection_->Driver().primaryIndex(QtSqlText(table));
  std::vector<std::string> key;
  key.reserve(static_cast<std::size_t>(index.count()));
  for (int i = 0; i < index.count(); ++i) key.push_back(index.fieldName(i).toStdString());
  return key;
}

bool QtSqlDriver::HasReturning() const {
  return dbms_ == QSqlDriver::PostgreSQL || dbms_ == QSqlDriver::SQLite;
}

std::string QtSqlDriver::QuotedName(std::string_view name) const {
  if (catalog_) {
    const PostgresCatalog::Table* const table = catalog_->KnownTable(std::string(name));
    if (table != nullptr && table->needs_schema) {
      return Quoted(table->schema) + "." + Quoted(table->name);
    }
  }
  return Quoted(name);
}

std::string QtSqlDriver::Quoted(std::string_view name) const {
  std::string quoted(1, dialect_.name_quote);
  for (const char c : name) {
    quoted += c;
    if (c == dialect_.name_quote) quoted += c;
  }
  return quoted += dialect_.name_quote;
}

std::string QtSqlDriver::EqualsParameter(const std::string& quoted,
                                         const ColumnInfo& column) const {
  if (dbms_ == QSqlDriver::PostgreSQL) {
    if (column.type == FieldType::kCurrency) return "CAST(" + quoted + " AS numeric) = ?";
    // Qt's cells hold milliseconds.
    const bool exact = native_postgres_ && PostgresResult::IsKnown();
    if (column.type == FieldType::kDate && !exact) {
      return "date_trunc('milliseconds', " + quoted + ") = ?";
    }
  }
  return Driver::EqualsParameter(quoted, column);
}

}  // namespace

std::unique_ptr<Driver> MakeQtSqlDriver(SharedQtSql connection) {
  return std::make_unique<QtSqlDriver>(std::move(connection));
}

std::unique_ptr<Driver> OpenQtDatabase(const QSqlDatabase& database) {
  if (!database.isValid() || !database.isOpen()) throw ObjectIsClosed();
  return MakeQtSqlDriver(
      std::make_shared<QtSqlConnection>(database, QtSqlConnection::Ownership::kOfProgram));
}

}  // namespace kel
