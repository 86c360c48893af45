// Books of a few accounts in both kinds of databases, looked into without the library.
#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "support/test_folder.h"

namespace ledger::testing {

inline constexpr const char* kAccounts =
    "INSERT INTO Account (AccountId, Code, Name, GroupId) VALUES (901, 'T1', 'O''Brien & Sons', 1),"
    " (902, 'T2', 'Zz Cash', 1), (903, 'T3', 'હરિ ટ્રેડર્સ', 1)";

class VoucherBooks {
 public:
  enum class Kind { kSqlite, kPostgres };

  explicit VoucherBooks(Kind kind) : is_sqlite_(kind == Kind::kSqlite) {
    is_sqlite_ ? MakeSqlite() : MakePostgres();
    Run(kAccounts);
  }
  ~VoucherBooks() {
    const QString name = database_.connectionName();
    database_ = {};
    QSqlDatabase::removeDatabase(name);
  }
  VoucherBooks(const VoucherBooks&) = delete;
  VoucherBooks& operator=(const VoucherBooks&) = delete;

  const std::string& Address() const { return address_; }

  void Run(const QString& sql) {
    QSqlQuery query(database_);
    EXPECT_TRUE(query.exec(sql)) << qPrintable(query.lastError().text());
  }

  int Count(const QString& from_where) {
    QSqlQuery query(database_);
    const bool done = query.exec("SELECT COUNT(*) FROM " + from_where) && query.next();
    EXPECT_TRUE(done) << qPrintable(query.lastError().text());
    return done ? query.value(0).toInt() : -1;
  }

  /// Whether a line of a voucher meets a condition; the database itself compares the amounts.
  bool HasLine(const QString& number, int line, const QString& condition) {
    return Count("Voucher v JOIN Entry e ON e.VoucherId = v.VoucherId WHERE v.Number = '" + number +
                 "' AND e.Line = " + QString::number(line) + " AND " + condition) == 1;
  }
  int Lines(const QString& number) {
    return Count("Voucher v JOIN Entry e ON e.VoucherId = v.VoucherId WHERE v.Number = '" + number +
                 "'");
  }

  /// From now on the second line of a voucher does not get into the books: SQLite refuses it, the
  /// server's connection breaks.
  void BreakAtSecondLine() {
    if (is_sqlite_) {
      return Run(
          "CREATE TRIGGER Cut BEFORE INSERT ON Entry WHEN NEW.Line = 2"
          " BEGIN SELECT RAISE(ABORT, 'no second line'); END");
    }
    Run("CREATE FUNCTION Cut() RETURNS trigger LANGUAGE plpgsql AS"
        " 'BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); RETURN NEW; END'");
    Run("CREATE TRIGGER Cut BEFORE INSERT ON Entry FOR EACH ROW WHEN (NEW.Line = 2)"
        " EXECUTE FUNCTION Cut()");
  }
  void Mend() { Run(is_sqlite_ ? "DROP TRIGGER Cut" : "DROP TRIGGER Cut ON Entry"); }

 private:
  void MakeSqlite() {
    const std::string file = folder_ / "books.db";
    const QStringList arguments = {KELDLL_MAKE_BOOKS, "--entries", "4", file.c_str()};
    if (QProcess::execute(KELDLL_PYTHON, arguments) != 0) throw std::runtime_error("no books");
    address_ = file;
    database_ = QSqlDatabase::addDatabase("QSQLITE", "books");
    database_.setDatabaseName(file.c_str());
    EXPECT_TRUE(database_.open());
  }

  void MakePostgres() {
    const char* const address = std::getenv("KELDLL_TEST_POSTGRES");
    if (address == nullptr) throw std::runtime_error("run this under postgres_server.py");
    address_ = address;
    const QUrl url(address);
    database_ = QSqlDatabase::addDatabase("QPSQL", "books");
    database_.setHostName(url.host());
    database_.setPort(url.port());
    database_.setUserName(url.userName());
    database_.setDatabaseName(url.path().mid(1));
    EXPECT_TRUE(database_.open());
    Run("SET client_min_messages = warning");
    Run("DROP SCHEMA public CASCADE");
    Run("CREATE SCHEMA public");
    QFile schema(KELDLL_POSTGRES_BOOKS);
    if (!schema.open(QIODevice::ReadOnly)) throw std::runtime_error("no schema");
    Run(schema.readAll());
  }

  bool is_sqlite_;
  kel::testing::TestFolder folder_;
  std::string address_;
  QSqlDatabase database_;
};

}  // namespace ledger::testing
