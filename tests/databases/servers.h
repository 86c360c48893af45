// The databases that tests of servers run on.
#pragma once

#include <gtest/gtest.h>

#include <QLocale>
#include <QSqlDatabase>
#include <QUrl>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "data/driver.h"
#include "platform/qt/qt_sql.h"

namespace kel::testing {

/// The address of the server's database, as tests/support/postgres_server.py tells it.
inline std::string PostgresUrl() {
  const char* const url = std::getenv("KELDLL_TEST_POSTGRES");
  if (url == nullptr) throw std::runtime_error("run these tests under postgres_server.py");
  return url;
}

inline std::string OdbcPostgresUrl() {
  const QUrl url(QString::fromStdString(PostgresUrl()));
  return "odbc:DRIVER={PostgreSQL Unicode};BoolsAsChar=0;Server=" + url.host().toStdString() +
         ";Port=" + std::to_string(url.port()) + ";UID=" + url.userName().toStdString() +
         ";Database=" + url.path().mid(1).toStdString();
}

inline std::string OdbcSqliteUrl(const std::string& file) {
  return "odbc:DRIVER={SQLite3};Database=" + file;
}

/// A database of the program's own, opened through Qt.
inline QSqlDatabase OpenAsProgram(const QString& name) {
  const QUrl url(QString::fromStdString(PostgresUrl()));
  QSqlDatabase database = QSqlDatabase::addDatabase("QPSQL", name);
  database.setHostName(url.host());
  database.setPort(url.port());
  database.setUserName(url.userName());
  database.setDatabaseName(url.path().mid(1));
  EXPECT_TRUE(database.open());
  return database;
}

inline std::string Shown(const CellView& cell) {
  switch (cell.kind) {
    case CellView::Kind::kNull:
      return "NULL";
    case CellView::Kind::kInteger:
      return std::to_string(cell.integer);
    case CellView::Kind::kDouble: {
      std::string text =
          QString::number(cell.number, 'g', QLocale::FloatingPointShortest).toStdString();
      return "~" + text;
    }
    case CellView::Kind::kText:
      return std::string(cell.bytes);
    case CellView::Kind::kBinary:
      return "x" + QByteArray(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size()))
                       .toHex()
                       .toStdString();
  }
  return "?";
}

/// The current row, cells between "|".
inline std::string ShownRow(const Statement& statement) {
  std::string shown;
  for (int i = 0; i < statement.ColumnCount(); ++i) {
    shown += (i == 0 ? "" : "|") + Shown(statement.Cell(i));
  }
  return shown;
}

/// All rows of a statement, lines between ";".
inline std::string ShownRows(Driver& driver, std::string_view sql,
                             const std::vector<Parameter>& parameters = {}) {
  const std::unique_ptr<Statement> statement = driver.Prepare(sql, parameters);
  std::string shown;
  while (statement->Step()) shown += (shown.empty() ? "" : ";") + ShownRow(*statement);
  return shown;
}

}  // namespace kel::testing
