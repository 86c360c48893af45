#include "data/sqlite.h"

#include <sqlite3.h>

#include <array>
#include <cerrno>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "common/error.h"
#include "data/sql_rewrite.h"
#include "data/sql_text.h"
#include "data/sqlite_statement.h"
#include "data/sqlite_sums.h"

namespace kel {
namespace {

class SqliteDriver : public Driver {
 public:
  explicit SqliteDriver(SqliteDatabase database) : database_(std::move(database)) {}

  using Driver::Execute;
  using Driver::Prepare;
  std::unique_ptr<Statement> Prepare(std::string_view sql,
                                     std::span<const Parameter> parameters) override;
  std::int64_t Execute(std::string_view sql, std::span<const Parameter> parameters) override;
  std::vector<std::string> KeyOf(const std::string& table) override;
  std::string QuotedName(std::string_view name) const override;
  bool HasReturning() const override {
    constexpr int kFirstVersion = 3035000;
    return sqlite3_libversion_number() >= kFirstVersion;
  }

 private:
  /// How long the name of an attached database before a table's is; 0 when there is none.
  std::size_t DatabasePart(std::string_view name) const;
  SqliteHandle Compile(const std::string& sql);
  bool HoldsStatement(const char* sql);

  SqliteDatabase database_;
};

std::unique_ptr<Statement> SqliteDriver::Prepare(std::string_view sql,
                                                 std::span<const Parameter> parameters) {
  constexpr SqlDialect kDialect{.knows_brackets = true};
  SqliteHandle handle = Compile(RewriteSql(sql, kDialect));
  BindParameters(database_.get(), handle.get(), parameters);
  return std::make_unique<SqliteStatement>(database_, std::move(handle), OneLineSql(sql));
}

std::int64_t SqliteDriver::Execute(std::string_view sql, std::span<const Parameter> parameters) {
  // SQLite's count of changes is that of the last statement that made any.
  const sqlite3_int64 total_before = sqlite3_total_changes64(database_.get());
  const std::unique_ptr<Statement> statement = Prepare(sql, parameters);
  while (statement->Step()) {
  }
  if (sqlite3_total_changes64(database_.get()) == total_before) return 0;
  return sqlite3_changes64(database_.get());
}

std::vector<std::string> SqliteDriver::KeyOf(const std::string& table) {
  const std::string_view name = table;
  const std::size_t database = DatabasePart(name);
  std::array<Parameter, 2> parameters;
  parameters[0].cell = CellView::Text(database == 0 ? name : name.substr(database + 1));
  if (database > 0) parameters[1].cell = CellView::Text(name.substr(0, database));
  const std::unique_ptr<Statement> columns =
      Prepare("SELECT name FROM pragma_table_info(?, ?) WHERE pk > 0 ORDER BY pk", parameters);
  std::vector<std::string> key;
  while (columns->Step()) key.emplace_back(columns->Cell(0).bytes);
  return key;
}

std::string SqliteDriver::QuotedName(std::string_view name) const {
  const std::size_t database = DatabasePart(name);
  if (database == 0) return Driver::QuotedName(name);
  return Driver::QuotedName(name.substr(0, database)) + "." +
         Driver::QuotedName(name.substr(database + 1));
}

std::size_t SqliteDriver::DatabasePart(std::string_view name) const {
  const std::size_t point = name.find('.');
  if (point == std::string_view::npos) return 0;
  const bool is_database =
      sqlite3_db_readonly(database_.get(), std::string(name.substr(0, point)).c_str()) >= 0;
  return is_database ? point : 0;
}

SqliteHandle SqliteDriver::Compile(const std::string& sql) {
  const std::string what_failed = "cannot run " + OneLineSql(sql);
  if (sql.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()) ||
      sql.find('\0') != std::string::npos) {
    throw SqliteError(what_failed, "the text is too long or holds a NUL");
  }
  sqlite3_stmt* statement = nullptr;
  const char* rest = nullptr;
  const int code = sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &statement, &rest);
  SqliteHandle handle(statement);
  if (code != SQLITE_OK) throw SqliteError(what_failed, sqlite3_errmsg(database_.get()));
  if (handle == nullptr) throw SqliteError(what_failed, "there is no statement");
  if (HoldsStatement(rest)) throw SqliteError(what_failed, "there is more than one statement");
  return handle;
}

/// Comments, blanks and semicolons compile to nothing.
bool SqliteDriver::HoldsStatement(const char* sql) {
  while (*sql != '\0') {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(database_.get(), sql, -1, &statement, &sql);
    const SqliteHandle owner(statement);
    if (code != SQLITE_OK || statement != nullptr) return true;
  }
  return false;
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

constexpr int kPrimaryCode = 0xff;  // of an extended result code

struct Opened {
  SqliteDatabase database;
  int code;
};

Opened Open(const std::filesystem::path& path, Access access, std::chrono::milliseconds lock_wait) {
  // An absolute path is never one of SQLite's own names such as ":memory:" or "file:...".
  const std::string name = Utf8(std::filesystem::absolute(path));
  // Without SQLite's own mutex: it would cost more than the reading of a cell.
  const int mode = access == Access::kRead ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  sqlite3* handle = nullptr;
  int code = sqlite3_open_v2(name.c_str(), &handle, mode | SQLITE_OPEN_NOMUTEX, nullptr);
  const SqliteDatabase database(handle, sqlite3_close);
  if (code == SQLITE_OK) {
    sqlite3_busy_timeout(handle, static_cast<int>(lock_wait.count()));
    // Opening reads nothing; only this tells whether the file is a database.
    code = sqlite3_exec(handle, "PRAGMA schema_version", nullptr, nullptr, nullptr);
  }
  if (code == SQLITE_OK) {
    code = UseExactSums(handle);
  }
  return {database, code};
}

}  // namespace

std::unique_ptr<Driver> OpenSqlite(const std::filesystem::path& path, Access access,
                                   std::chrono::milliseconds lock_wait) {
  const std::string what_failed = "cannot open database " + path.string();
  std::error_code ignored;
  if (std::filesystem::status(path, ignored).type() == std::filesystem::file_type::not_found) {
    throw Error::FromSystem(ENOENT, what_failed);
  }
  Opened opened = Open(path, access, lock_wait);
  if (access == Access::kRead && (opened.code & kPrimaryCode) == SQLITE_READONLY) {
    // A writer was killed in the middle and left its journal; undoing what it had begun is writing.
    const Opened recovered = Open(path, Access::kReadWrite, lock_wait);
    if (recovered.code == SQLITE_OK) opened = Open(path, access, lock_wait);
  }
  if (opened.code != SQLITE_OK) {
    throw SqliteError(what_failed, sqlite3_errmsg(opened.database.get()));
  }
  return std::make_unique<SqliteDriver>(opened.database);
}

}  // namespace kel
