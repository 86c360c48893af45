// One database of Qt's, shared by its driver and the statements that run on it.
#pragma once

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <memory>
#include <string>
#include <string_view>

#include "common/error.h"

namespace kel {

class QtSqlStatement;

/// The database's own words, on one line.
QString OneLineWords(const QSqlError& error);

/// What failed and the database's own words for the reason.
Error QtSqlError(const std::string& what_failed, const QSqlError& error);

/// Throws Error for bytes that are no UTF-8, which Qt would replace, and for a NUL.
QString QtSqlText(std::string_view utf8);

/// Many servers send the rows of one statement at a time: what runs next would cut them off. So the
/// statement that is being read takes the rest of its rows into memory first.
class QtSqlConnection {
 public:
  enum class Ownership { kOfProgram, kOwn };

  QtSqlConnection(const QSqlDatabase& database, Ownership ownership)
      : database_(database), ownership_(ownership) {}
  /// Closes a database of its own.
  ~QtSqlConnection();
  QtSqlConnection(const QtSqlConnection&) = delete;
  QtSqlConnection& operator=(const QtSqlConnection&) = delete;

  /// The error is valid when it fails.
  QSqlError Open() { return database_.open() ? QSqlError() : database_.lastError(); }

  /// Throws Error 3704 when the database is closed, removed or lost, 5 on another thread than its
  /// own.
  void RequireUsable() const;
  /// Throws Error as RequireUsable does.
  QSqlDriver& Driver() const;

  bool IsPostgres() const { return Driver().dbmsType() == QSqlDriver::PostgreSQL; }
  /// PostgreSQL through Qt's own driver for it.
  bool IsNativePostgres() const;
  bool IsOdbc() const;

  /// A query that keeps no rows it has gone over. Reads the running statement's rest first.
  QSqlQuery NewQuery();
  /// The statement's rows come from the database from now on, until Release.
  void Stream(QtSqlStatement& statement) { streaming_ = &statement; }
  void Release(const QtSqlStatement& statement) {
    if (streaming_ == &statement) streaming_ = nullptr;
  }

 private:
  QSqlDatabase database_;
  Ownership ownership_;
  QtSqlStatement* streaming_ = nullptr;
};

using SharedQtSql = std::shared_ptr<QtSqlConnection>;

}  // namespace kel
