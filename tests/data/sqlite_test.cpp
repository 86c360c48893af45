#include "data/sqlite.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "data/scratch.h"

namespace kel {
namespace {

using std::chrono::milliseconds;

class SqliteTest : public DataTest {
 protected:
  /// Opens a new database made by `sql`.
  std::unique_ptr<Driver> Make(const std::string& sql, Access access = Access::kRead) {
    return OpenSqlite(WriteDatabase("books.db", sql), access, milliseconds(1));
  }
};

TEST_F(SqliteTest, DeclaredTypesGiveTheirAdoTypes) {
  struct Case {
    const char* declaration;
    FieldType type;
  };
  const std::vector<Case> cases = {
      {"SMALLINT", FieldType::kSmallInt},
      {"INTEGER", FieldType::kInteger},
      {"int", FieldType::kInteger},
      {"BigInt", FieldType::kInteger},
      {"REAL", FieldType::kDouble},
      {"float", FieldType::kDouble},
      {"DOUBLE PRECISION", FieldType::kDouble},
      {"BOOLEAN", FieldType::kBoolean},
      {"BOOL", FieldType::kBoolean},
      {"DATE", FieldType::kDate},
      {"DateTime", FieldType::kDate},
      {"TIMESTAMP", FieldType::kDate},
      {"MONEY", FieldType::kCurrency},
      {"CURRENCY", FieldType::kCurrency},
      {"DECIMAL(10,2)", FieldType::kNumeric},
      {"NUMERIC", FieldType::kNumeric},
      {"MEMO", FieldType::kMemo},
      {"CLOB", FieldType::kMemo},
      {"BLOB", FieldType::kBinary},
      {"VARCHAR(30)", FieldType::kText},
      {"TEXT", FieldType::kText},
      {"CHAR(8)", FieldType::kText},
  };
  std::string columns;
  for (const auto& test : cases) {
    columns +=
        (columns.empty() ? "c" : ", c") + std::to_string(columns.size()) + " " + test.declaration;
  }
  const auto statement = Make("CREATE TABLE t(" + columns + ")")->Prepare("SELECT * FROM t");
  for (int i = 0; i < statement->ColumnCount(); ++i) {
    EXPECT_EQ(statement->Column(i).type, cases[static_cast<std::size_t>(i)].type)
        << cases[static_cast<std::size_t>(i)].declaration;
  }
}

TEST_F(SqliteTest, ExpressionsTakeTheTypeOfTheFirstRowWhichIsStillHandedOut) {
  const auto driver = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1), (2)");
  const auto statement =
      driver->Prepare("SELECT n + 1, n * 1.5, 'a' || n, x'00ff', NULL, n FROM t ORDER BY n");
  const std::vector<FieldType> expected = {FieldType::kInteger, FieldType::kDouble,
                                           FieldType::kText,    FieldType::kBinary,
                                           FieldType::kText,    FieldType::kInteger};
  for (int i = 0; i < statement->ColumnCount(); ++i) {
    EXPECT_EQ(statement->Column(i).type, expected[static_cast<std::size_t>(i)]) << i;
  }
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(0).integer, 2);
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(0).integer, 3);
  EXPECT_FALSE(statement->Step());
  EXPECT_FALSE(statement->Step());  // the statement does not start over
  EXPECT_EQ(driver->Prepare("SELECT n + 1 FROM t WHERE 0")->Column(0).type, FieldType::kText);
}

TEST_F(SqliteTest, CellsComeInTheFormTheyAreHeldIn) {
  const auto statement =
      Make(
          "CREATE TABLE t(a, b, c, d, e, f);"
          "INSERT INTO t VALUES (9223372036854775807, -9223372036854775807 - 1, 1e22,"
          "                      'caf\u00e9' || char(0) || 'x', x'', NULL)")
          ->Prepare("SELECT * FROM t");
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(0).kind, CellView::Kind::kInteger);
  EXPECT_EQ(statement->Cell(0).integer, std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(statement->Cell(1).integer, std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(statement->Cell(2).kind, CellView::Kind::kDouble);
  EXPECT_EQ(statement->Cell(2).number, 1e22);
  EXPECT_EQ(statement->Cell(3).bytes, std::string_view("caf\u00e9\0x", 7));
  EXPECT_EQ(statement->Cell(4).kind, CellView::Kind::kBinary);
  EXPECT_EQ(statement->Cell(4).bytes, "");
  EXPECT_EQ(statement->Cell(5).kind, CellView::Kind::kNull);
}

TEST_F(SqliteTest, ColumnsOfAViewKeepTheirTypeAndTheirTable) {
  const auto statement =
      Make(
          "CREATE TABLE \"Day \"\"Book\"(\"Amt \"\"Rs\" MONEY);"
          "INSERT INTO \"Day \"\"Book\" VALUES (1.5);"
          "CREATE VIEW v AS SELECT \"Amt \"\"Rs\", 2 AS two FROM \"Day \"\"Book\"")
          ->Prepare("SELECT * FROM v");
  EXPECT_EQ(statement->Column(0).name, "Amt \"Rs");
  EXPECT_EQ(statement->Column(0).type, FieldType::kCurrency);
  EXPECT_EQ(statement->Column(0).table, "Day \"Book");
  EXPECT_EQ(statement->Column(1).name, "two");
  EXPECT_EQ(statement->Column(1).table, "");
}

TEST_F(SqliteTest, ExecuteCountsTheRecordsOfThisStatementOnly) {
  struct Case {
    const char* sql;
    std::int64_t affected;
  };
  const std::vector<Case> cases = {
      {"CREATE TABLE t(n INTEGER)", 0},
      {"INSERT INTO t VALUES (1), (2), (3)", 3},
      {"SELECT * FROM t", 0},
      {"UPDATE t SET n = n + 1 WHERE n > 1", 2},
      {"CREATE INDEX i ON t(n)", 0},
      {"DELETE FROM t", 3},
      {"DROP TABLE t", 0},
  };
  const auto driver = Make("", Access::kReadWrite);
  for (const auto& test : cases) EXPECT_EQ(driver->Execute(test.sql), test.affected) << test.sql;
}

TEST_F(SqliteTest, StatementsOutliveTheirDriver) {
  auto driver = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (7)");
  const auto statement = driver->Prepare("SELECT n FROM t");
  driver.reset();
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(0).integer, 7);
}

TEST_F(SqliteTest, OnlyOneStatementIsTaken) {
  const auto driver = Make("CREATE TABLE t(n INTEGER)");
  for (const char* sql : {"SELECT n FROM t;", "SELECT n FROM t ; ; -- done", "SELECT n FROM t /* x",
                          "-- first\nSELECT n FROM t;\n/* a */ "}) {
    EXPECT_NO_THROW(driver->Prepare(sql)) << sql;
  }
  for (const char* sql : {"SELECT n FROM t; SELECT 2", "SELECT n FROM t; DROP TABLE none",
                          "SELECT n FROM t;; /* x */ nonsense"}) {
    const Error error = ErrorOf([&] { driver->Prepare(sql); });
    EXPECT_TRUE(Contains(error, "there is more than one statement")) << sql;
  }
  for (const char* sql : {"", " \n", "-- nothing", ";"}) {
    EXPECT_TRUE(Contains(ErrorOf([&] { driver->Prepare(sql); }), "there is no statement")) << sql;
  }
  EXPECT_THROW(driver->Prepare(std::string_view("SELECT 1\0, 2", 12)), Error);
}

TEST_F(SqliteTest, ErrorsShowTheStatementOnOneLineAndTheReason) {
  const auto driver = Make("CREATE TABLE t(n INTEGER)");
  EXPECT_EQ(ErrorOf([&] { driver->Prepare("SELECT *\r\n   FROM  none "); }).Description(),
            "cannot run SELECT * FROM none: no such table: none");
  EXPECT_EQ(ErrorOf([&] { driver->Execute("DELETE FROM t"); }).Description(),
            "cannot run DELETE FROM t: attempt to write a readonly database");
}

TEST_F(SqliteTest, AnErrorAtALaterRowComesAtThatRow) {
  const auto statement = Make(
                             "CREATE TABLE t(n INTEGER);"
                             "INSERT INTO t VALUES (1), (2), (-9223372036854775807 - 1), (4)")
                             ->Prepare("SELECT abs(n) FROM t");
  EXPECT_TRUE(statement->Step());
  EXPECT_TRUE(statement->Step());
  EXPECT_EQ(ErrorOf([&] { statement->Step(); }).Description(),
            "cannot read row 3 of SELECT abs(n) FROM t: integer overflow");
  EXPECT_FALSE(statement->Step());
}

TEST_F(SqliteTest, ATableDroppedMeanwhileIsAnErrorOfTheFirstStep) {
  const auto driver = Make("CREATE TABLE t(n INTEGER)");
  const auto statement = driver->Prepare("SELECT n FROM t");
  WriteDatabase("books.db", "DROP TABLE t");
  EXPECT_TRUE(Contains(ErrorOf([&] { statement->Step(); }), "no such table: t"));
}

TEST_F(SqliteTest, ALockedDatabaseIsAnErrorUntilTheLockIsGone) {
  const auto driver = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (5)");
  const auto other = OpenSqlite(File("books.db"), Access::kReadWrite);
  other->Execute("BEGIN EXCLUSIVE");
  EXPECT_TRUE(
      Contains(ErrorOf([&] { driver->Prepare("SELECT n FROM t")->Step(); }), "database is locked"));
  EXPECT_TRUE(
      Contains(ErrorOf([&] { OpenSqlite(File("books.db"), Access::kRead, milliseconds(1)); }),
               "books.db: database is locked"));
  other->Execute("COMMIT");
  EXPECT_TRUE(driver->Prepare("SELECT n FROM t")->Step());
}

TEST_F(SqliteTest, ADamagedPageIsAnErrorWhereItIsReached) {
  const auto path =
      WriteDatabase("books.db",
                    "PRAGMA page_size = 512; CREATE TABLE t(s TEXT);"
                    "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400)"
                    "INSERT INTO t SELECT printf('%0100d', i) FROM n");
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(-512L * 3, std::ios::end);
  file << std::string(512L * 3, '\xff');
  file.close();
  const auto statement = OpenSqlite(path, Access::kRead)->Prepare("SELECT s FROM t");
  ASSERT_TRUE(statement->Step());
  const Error error = ErrorOf([&] {
    while (statement->Step()) {
    }
  });
  EXPECT_TRUE(Contains(error, "cannot read row "));
  EXPECT_TRUE(Contains(error, "database disk image is malformed"));
}

TEST_F(SqliteTest, WhatIsNoDatabaseIsRefusedAtOpening) {
  const auto text = WriteFile("notes.txt", "These are only notes, nothing else.\n");
  const auto fails = [](const std::filesystem::path& path) {
    return ErrorOf([&] { OpenSqlite(path, Access::kReadWrite); });
  };
  const Error missing = fails(File("none.db"));
  EXPECT_EQ(missing.Number(), 53);
  EXPECT_TRUE(Contains(missing, "none.db"));
  EXPECT_FALSE(std::filesystem::exists(File("none.db")));
  EXPECT_EQ(fails(text / "below.db").Number(), 53);
  EXPECT_EQ(fails(":memory:").Number(), 53);
  EXPECT_EQ(fails("").Number(), 53);
  EXPECT_TRUE(Contains(fails(text), "notes.txt: file is not a database"));
  std::filesystem::create_directory(File("folder"));
  EXPECT_TRUE(Contains(fails(File("folder")), "folder: unable to open database file"));
  EXPECT_THROW(OpenSqlite(File("folder"), Access::kRead), Error);
}

}  // namespace
}  // namespace kel
