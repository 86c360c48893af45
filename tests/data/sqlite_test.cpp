#include "data/sqlite.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "data/field_value.h"
#include "support/errors.h"
#include "support/sqlite_file.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::Contains;
using testing::ErrorOf;
using testing::WriteDatabase;

class SqliteTest : public ::testing::Test {
 protected:
  /// Opens a new database made by `sql`.
  std::unique_ptr<Driver> Make(const std::string& sql, Access access = Access::kRead) {
    return OpenSqlite(WriteDatabase(books_, sql), access, std::chrono::milliseconds(1));
  }
  static Error OpenError(const std::filesystem::path& path) {
    return ErrorOf([&] { OpenSqlite(path, Access::kReadWrite, std::chrono::milliseconds(1)); });
  }

  testing::TestFolder folder_;
  std::filesystem::path books_ = folder_ / "books.db";
};

std::string TypeCodes(const Statement& statement) {
  std::string codes;
  for (int i = 0; i < statement.ColumnCount(); ++i) {
    codes += std::to_string(static_cast<int>(statement.Column(i).type)) + " ";
  }
  return codes;
}

TEST_F(SqliteTest, DeclaredTypesGiveTheirAdoTypesAlsoThroughAView) {
  const auto driver = Make(
      "CREATE TABLE t(a SMALLINT, b INTEGER, c int, d BigInt, e REAL, f float,"
      "               g DOUBLE PRECISION, h MONEY, i CURRENCY, j DECIMAL(10,2), k NUMERIC,"
      "               l BOOLEAN, m BOOL, n DATE, o DateTime, p TIMESTAMP, q MEMO, r CLOB,"
      "               s BLOB, t VARCHAR(30), u TEXT, v CHAR(8));"
      "CREATE TABLE \"Day \"\"Book\"(\"Amt \"\"Rs\" MONEY);"
      "CREATE VIEW v AS SELECT \"Amt \"\"Rs\", 2 AS two FROM \"Day \"\"Book\"");
  EXPECT_EQ(TypeCodes(*driver->Prepare("SELECT * FROM t")),
            "2 3 3 3 5 5 5 6 6 131 131 11 11 7 7 7 203 203 205 202 202 202 ");
  const auto view = driver->Prepare("SELECT * FROM v");
  EXPECT_EQ(TypeCodes(*view), "6 202 ");
  EXPECT_EQ(view->Column(0).table, "Day \"Book");
  EXPECT_EQ(view->Column(1).table, "");
}

TEST_F(SqliteTest, ExpressionsTakeTheTypeOfTheFirstRowWhichIsStillHandedOut) {
  auto driver = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1), (2)");
  EXPECT_EQ(TypeCodes(*driver->Prepare("SELECT n + 1 FROM t WHERE 0")), "202 ");
  const auto statement =
      driver->Prepare("SELECT n + 1, n * 1.5, 'a' || n, x'00ff', NULL, n FROM t ORDER BY n");
  driver.reset();  // a statement outlives it
  EXPECT_EQ(TypeCodes(*statement), "3 5 202 205 202 3 ");
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(0).integer, 2);
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(0).integer, 3);
  EXPECT_FALSE(statement->Step());
  EXPECT_FALSE(statement->Step());  // it does not start over
}

TEST_F(SqliteTest, SumsOfAmountsDoNotDrift) {
  const auto driver = Make(
      "CREATE TABLE t(n INTEGER, paid DECIMAL(9,2)); INSERT INTO t VALUES (1, 0.1), (2, 0.2),"
      " (3, '0.70'), (4, -1), (5, NULL)");
  const auto text = [&](const std::string& sql) {
    NumberBuffer buffer;
    const auto statement = driver->Prepare(sql);
    std::string all;
    while (statement->Step()) {
      all += std::string(CellText(statement->Cell(0), FieldType::kText, buffer)) + " ";
    }
    return all;
  };
  EXPECT_EQ(text("SELECT SUM(paid) FROM t WHERE n < 3"), "0.3 ");
  EXPECT_EQ(text("SELECT sum(paid) OVER (ORDER BY n ROWS 1 PRECEDING) FROM t"),
            "0.1 0.3 0.9 -0.3 -1 ");
  EXPECT_EQ(text("SELECT typeof(SUM(n)) || SUM(n) || TOTAL(n) FROM t"), "integer1515.0 ");
  EXPECT_EQ(text("SELECT SUM(paid) IS NULL OR TOTAL(paid) FROM t WHERE n = 5"), "1 ");
  EXPECT_EQ(text("SELECT TOTAL(paid) FROM t WHERE n = 9"), "0 ");
  EXPECT_TRUE(Contains(
      ErrorOf([&] { text("SELECT SUM(x) FROM (SELECT n, 9223372036854775807 AS x FROM t)"); }),
      "integer overflow"));
}

TEST_F(SqliteTest, ExecuteCountsTheRecordsOfThisStatementOnly) {
  const auto driver = Make("", Access::kReadWrite);
  std::vector<std::int64_t> affected;
  for (const char* sql :
       {"CREATE TABLE t(n INTEGER)", "INSERT INTO t VALUES (1), (2), (3)", "SELECT * FROM t",
        "UPDATE t SET n = n + 1 WHERE n > 1", "CREATE INDEX i ON t(n)", "DELETE FROM t"}) {
    affected.push_back(driver->Execute(sql));
  }
  EXPECT_EQ(affected, (std::vector<std::int64_t>{0, 3, 0, 2, 0, 3}));
}

TEST_F(SqliteTest, OnlyOneStatementIsTakenAndErrorsShowItOnOneLineWithTheReason) {
  const auto driver = Make("CREATE TABLE t(n INTEGER)");
  EXPECT_NO_THROW(driver->Prepare("-- first\nSELECT n FROM t ; ;\n/* never closed"));
  const auto error_of = [&](std::string_view sql) {
    return ErrorOf([&] { driver->Execute(sql); });
  };
  for (const char* sql : {"SELECT 1; SELECT 2", "SELECT 1; DROP TABLE none", "SELECT 1;; x"}) {
    EXPECT_TRUE(Contains(error_of(sql), "there is more than one statement")) << sql;
  }
  for (const char* sql : {" \n", "-- nothing", ";"}) {
    EXPECT_TRUE(Contains(error_of(sql), "there is no statement")) << sql;
  }
  EXPECT_EQ(error_of({"SELECT 1\0, 2", 12}).Number(), 3704);
  EXPECT_EQ(error_of("SELECT *\r\n   FROM  none ").Description(),
            "cannot run SELECT * FROM none: no such table: none");
  EXPECT_TRUE(Contains(error_of("DELETE FROM t"), "attempt to write a readonly database"));
}

TEST_F(SqliteTest, ALockedDatabaseIsAnErrorUntilTheLockIsGone) {
  const auto driver = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (5)");
  const auto other = OpenSqlite(books_, Access::kReadWrite);
  other->Execute("BEGIN EXCLUSIVE");
  EXPECT_TRUE(Contains(ErrorOf([&] { driver->Prepare("SELECT n FROM t")->Step(); }), "is locked"));
  EXPECT_TRUE(Contains(OpenError(books_), "books.db: database is locked"));
  other->Execute("COMMIT");
  EXPECT_TRUE(driver->Prepare("SELECT n FROM t")->Step());
}

TEST_F(SqliteTest, ADamagedPageIsAnErrorWhereItIsReached) {
  WriteDatabase(books_,
                "PRAGMA page_size = 512; CREATE TABLE t(s TEXT);"
                "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400)"
                "INSERT INTO t SELECT printf('%0100d', i) FROM n");
  const std::string whole = testing::ReadFile(books_);
  testing::WriteFile(books_, whole.substr(0, whole.size() - 1536) + std::string(1536, '\xff'));
  const auto driver = OpenSqlite(books_, Access::kRead);
  const Error error = ErrorOf([&] { driver->Execute("SELECT s FROM t"); });
  EXPECT_TRUE(Contains(error, "cannot read row "));
  EXPECT_TRUE(Contains(error, "database disk image is malformed"));
}

TEST_F(SqliteTest, WhatIsNoDatabaseIsRefusedAtOpening) {
  const std::filesystem::path notes = folder_ / "notes.txt";
  testing::WriteFile(notes, "These are only notes, nothing else.\n");
  for (const auto& path : {books_, notes / "below.db", std::filesystem::path(":memory:")}) {
    EXPECT_EQ(OpenError(path).Number(), 53) << path;
  }
  EXPECT_FALSE(std::filesystem::exists(books_));
  EXPECT_TRUE(Contains(OpenError(notes), "notes.txt: file is not a database"));
  EXPECT_TRUE(Contains(OpenError(folder_.Path()), "unable to open database file"));
}

TEST_F(SqliteTest, WhatAKilledWriterHadBegunIsUndoneBeforeReading) {
  Make("CREATE TABLE t (x TEXT)");
  const std::unique_ptr<Driver> writer = OpenSqlite(books_, Access::kReadWrite);
  writer->Execute(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000) "
      "INSERT INTO t SELECT 'old' || hex(zeroblob(50)) FROM n");
  writer->Execute("PRAGMA cache_size = 2");  // so that changed pages reach the file at once
  writer->Execute("BEGIN");
  writer->Execute("UPDATE t SET x = 'new'");
  std::filesystem::copy(books_, folder_ / "killed.db");
  std::filesystem::copy(folder_ / "books.db-journal", folder_ / "killed.db-journal");
  const std::unique_ptr<Statement> rows =
      OpenSqlite(folder_ / "killed.db", Access::kRead)
          ->Prepare("SELECT count(*) FROM t WHERE x LIKE 'old%'");
  ASSERT_TRUE(rows->Step());
  EXPECT_EQ(rows->Cell(0).integer, 2000);
}

}  // namespace
}  // namespace kel
