#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <vector>

#include "common/error.h"
#include "databases/servers.h"
#include "platform/qt/qt_sql.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::OdbcPostgresUrl;
using testing::OdbcSqliteUrl;
using testing::PostgresUrl;
using testing::ShownRow;
using testing::ShownRows;
using testing::TestFolder;

using Open = std::unique_ptr<Driver> (*)(const TestFolder& folder);

struct Database {
  const char* name;
  Open open;
  const char* binary;  // the type's name
  std::size_t long_text;
};

class EveryDatabaseTest : public ::testing::TestWithParam<Database> {
 protected:
  TestFolder folder_;
  std::unique_ptr<Driver> driver_ = GetParam().open(folder_);
};

std::unique_ptr<Driver> OpenQtSqlite(const TestFolder& folder) {
  QSqlDatabase database =
      QSqlDatabase::addDatabase("QSQLITE", QString::fromStdString(folder.Path().string()));
  database.setDatabaseName(QString::fromStdString((folder / "qt.db").string()));
  database.open();
  return OpenQtDatabase(database);
}

INSTANTIATE_TEST_SUITE_P(
    Qt, EveryDatabaseTest,
    ::testing::Values(Database{"Postgres",
                               [](const TestFolder&) { return OpenDatabaseUrl(PostgresUrl()); },
                               "bytea", 100'000'000},
                      Database{"PostgresOverOdbc",
                               [](const TestFolder&) { return OpenDatabaseUrl(OdbcPostgresUrl()); },
                               "bytea", 100'000'000},
                      Database{"SqliteOverOdbc",
                               [](const TestFolder& folder) {
                                 return OpenDatabaseUrl(
                                     OdbcSqliteUrl((folder / "odbc.db").string()));
                               },
                               "blob", 1'000'000},
                      Database{"SqliteOverQt", OpenQtSqlite, "blob", 100'000'000}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_P(EveryDatabaseTest, ValuesComeBackAsTheyWentInAndFindTheirRow) {
  const std::string table = driver_->QuotedName("Day \"Book");
  driver_->Execute("DROP TABLE IF EXISTS " + table);
  driver_->Execute("CREATE TABLE " + table +
                   " (id integer PRIMARY KEY, \"It's\" varchar(40), memo text, big bigint,"
                   " f double precision, d date, ts timestamp, b boolean, bin " +
                   std::string(GetParam().binary) + ")");
  const std::string text = "O'Neil \\ \"x\" ? -- [a] हिंदी \xF0\x9F\x98\x80";
  const std::vector<std::vector<Parameter>> rows = {
      {{CellView::Integer(1), FieldType::kInteger},
       {CellView::Text(text), FieldType::kText},
       {CellView::Text(""), FieldType::kText},
       {CellView::Integer(std::numeric_limits<std::int64_t>::min()), FieldType::kBigInt},
       {CellView::Double(0.1), FieldType::kDouble},
       {CellView::Text("0100-01-02"), FieldType::kDate},
       {CellView::Text("9999-12-31 14:05:09.5"), FieldType::kDate},
       {CellView::Integer(1), FieldType::kBoolean},
       {{CellView::Kind::kBinary, 0, 0, {"\0\xff'\\", 4}}, FieldType::kBinary}},
      {{CellView::Integer(2), FieldType::kInteger},
       {{}, FieldType::kText},
       {{}, FieldType::kMemo},
       {{}, FieldType::kInteger},
       {{}, FieldType::kDouble},
       {{}, FieldType::kDate},
       {CellView::Text("2026-03-31"), FieldType::kDate},
       {{}, FieldType::kBoolean},
       {{}, FieldType::kBinary}}};
  for (const auto& row : rows) {
    EXPECT_EQ(driver_->Execute("INSERT INTO " + table + " VALUES (?,?,?,?,?,?,?,?,?)", row), 1);
  }

  const auto statement = driver_->Prepare("SELECT * FROM " + table + " ORDER BY id");
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(
      ShownRow(*statement),
      "1|" + text + "||-9223372036854775808|~0.1|0100-01-02|9999-12-31 14:05:09.5|1|x00ff275c");
  std::vector<ColumnInfo> columns;
  std::vector<Parameter> cells;
  std::string conditions;
  for (int i = 0; i < statement->ColumnCount(); ++i) {
    const ColumnInfo& column = columns.emplace_back(statement->Column(i));
    cells.push_back({statement->Cell(i), column.type});
    conditions += (i == 0 ? "" : " AND ") +
                  driver_->EqualsParameter(driver_->QuotedName(column.name), column);
  }
  const std::string found = "SELECT id FROM " + table + " WHERE " + conditions;
  EXPECT_EQ(ShownRows(*driver_, found, cells), "1") << found;
  ASSERT_TRUE(statement->Step()) << "another statement has run meanwhile";
  EXPECT_EQ(ShownRow(*statement), "2|NULL|NULL|NULL|NULL|NULL|2026-03-31|NULL|NULL");
  EXPECT_FALSE(statement->Step());
  EXPECT_EQ(driver_->KeyOf("Day \"Book"), std::vector<std::string>{"id"});
  EXPECT_TRUE(driver_->KeyOf("none").empty());
  EXPECT_EQ(driver_->Execute("UPDATE " + table + " SET memo = 'x'"), 2);
  EXPECT_EQ(driver_->Execute("SELECT * FROM " + table), 0);
}

TEST_P(EveryDatabaseTest, BracketsAndDatesAreRewrittenAndLongTextsPass) {
  driver_->Execute("DROP TABLE IF EXISTS ledger");
  driver_->Execute("CREATE TABLE ledger (AccName text, Opened date)");
  const std::string text(GetParam().long_text, 'x');
  const std::vector<Parameter> parameters = {{CellView::Text(text), FieldType::kText}};
  driver_->Execute("INSERT INTO [Ledger] ([AccName], [Opened]) VALUES (?, #31/March/2026#)",
                   parameters);
  const auto statement =
      driver_->Prepare("SELECT [AccName] FROM [Ledger] WHERE [Opened] = #03/31/2026#");
  ASSERT_TRUE(statement->Step());
  EXPECT_TRUE(statement->Cell(0).bytes == text);
}

class PostgresTest : public ::testing::Test {
 protected:
  void Execute(const std::vector<const char*>& statements) {
    for (const char* const sql : statements) driver_->Execute(sql);
  }

  std::unique_ptr<Driver> driver_ = OpenDatabaseUrl(PostgresUrl());
};

TEST_F(PostgresTest, EveryTypeIsReadExactlyAndFoundAgain) {
  struct Case {
    const char* type;
    const char* value;
    int code;
    const char* shown;
  };
  const std::vector<Case> cases = {
      {"smallint", "-32768", 2, "-32768"},
      {"bigint", "9223372036854775807", 3, "9223372036854775807"},
      {"real", "0.1", 5, "~0.1"},
      {"double precision", "1e300", 5, "~1e+300"},
      {"double precision", "NaN", 5, "~nan"},
      {"numeric(20,4)", "1250", 131, "1250"},
      {"numeric", "0.10", 131, "0.1"},
      {"numeric", "-123456789012345678901234567890.05", 131, "-123456789012345678901234567890.05"},
      {"money", "-1234567.5", 6, "-1234567.5"},
      {"boolean", "no", 11, "0"},
      {"date", "0100-01-02", 7, "0100-01-02"},
      {"date", "infinity", 7, "infinity"},
      {"date", "0044-03-15 BC", 7, "0044-03-15 BC"},
      {"timestamp", "2026-03-29 02:30:00.123456", 7, "2026-03-29 02:30:00.123456"},
      {"timestamp", "2026-03-31", 7, "2026-03-31"},
      {"timestamptz", "2026-03-31 04:30:00.5+02", 7, "2026-03-31 02:30:00.5"},
      {"time", "14:05:09", 202, "14:05:09"},
      {"bytea", "\\x00ff41", 205, "x00ff41"},
      {"char(5)", "ab", 202, "ab   "},
      {"uuid", "a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11", 202, "a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11"},
      {"jsonb", "{\"a\": 1}", 202, "{\"a\": 1}"},
      {"json", "[1]", 202, "[1]"},
      {"point", "(1,2)", 202, "(1,2)"},
  };
  setenv("TZ", "Europe/Berlin", 1);  // of the client; the server's own is another
  driver_->Execute("SET lc_monetary = 'C'");
  for (const auto& [type, value, code, shown] : cases) {
    SCOPED_TRACE(type + std::string(" ") + value);
    Execute({"DROP TABLE IF EXISTS typed"});
    driver_->Execute("CREATE TABLE typed (v " + std::string(type) + ")");
    const std::vector<Parameter> parameter = {{CellView::Text(value), FieldType::kText}};
    driver_->Execute("INSERT INTO typed VALUES (?)", parameter);
    const auto statement = driver_->Prepare("SELECT v FROM typed");
    const ColumnInfo column = statement->Column(0);
    EXPECT_EQ(static_cast<int>(column.type), code);
    ASSERT_TRUE(statement->Step());
    EXPECT_EQ(ShownRow(*statement), shown);
    const bool is_comparable = type != std::string("json") && type != std::string("point");
    EXPECT_EQ(column.comparable, is_comparable);
    const std::vector<Parameter> cell = {{statement->Cell(0), column.type}};
    EXPECT_EQ(driver_->Execute("UPDATE typed SET v = ?", cell), 1);
    if (!is_comparable) continue;
    EXPECT_EQ(
        driver_->Execute("DELETE FROM typed WHERE " + driver_->EqualsParameter("v", column), cell),
        1);
  }
  unsetenv("TZ");
}

TEST_F(PostgresTest, ColumnsTellTheirTableAndTheirNameThere) {
  Execute({R"(DROP SCHEMA IF EXISTS "old.books" CASCADE)", R"(CREATE SCHEMA "old.books")",
           "DROP TABLE IF EXISTS acc",
           "CREATE TABLE acc (Code int, Name text, PRIMARY KEY (name, code))",
           R"(CREATE TABLE "old.books".acc ("Code" int PRIMARY KEY))"});
  const auto check = [&](Driver& driver, const char* sql, int column, const char* expected) {
    const auto statement = driver.Prepare(sql);
    const ColumnInfo& info = statement->Column(column);
    EXPECT_EQ(info.name + "|" + info.table + "|" + info.origin, expected) << sql;
  };
  check(*driver_, "SELECT code AS name, name AS code FROM acc", 0, "name|acc|code");
  check(*driver_, "SELECT count(*) FROM acc", 0, "count||");
  check(*driver_, R"(SELECT "Code" AS c FROM "old.books".acc)", 0, "c|old.books.acc|Code");
  check(*OpenDatabaseUrl(OdbcPostgresUrl()), "SELECT code AS name FROM acc", 0, "name|acc|code");
  EXPECT_EQ(driver_->KeyOf("acc"), (std::vector<std::string>{"name", "code"}));
  EXPECT_EQ(driver_->KeyOf("old.books.acc"), std::vector<std::string>{"Code"});
  EXPECT_EQ(driver_->QuotedName("old.books.acc"), "\"old.books\".\"acc\"");
  EXPECT_EQ(ShownRows(*driver_, "INSERT INTO acc VALUES (1, 'a') RETURNING name"), "a");

  const auto other = OpenDatabaseUrl(PostgresUrl());
  other->Execute("DROP TABLE IF EXISTS later");
  other->Execute("CREATE TABLE later AS SELECT i AS n FROM generate_series(1, 5000) g(i)");
  const auto statement = driver_->Prepare("SELECT n AS x FROM later");
  EXPECT_EQ(statement->Column(0).table + statement->Column(0).origin, "latern");
  int rows = 0;
  while (statement->Step()) ++rows;
  EXPECT_EQ(rows, 5000);
}

TEST_F(PostgresTest, NamesInBracketsAreFoundInWhateverCaseTheyWereMade) {
  Execute({"DROP TABLE IF EXISTS daybook", "DROP TABLE IF EXISTS \"DayBook\"",
           "CREATE TABLE DayBook (AccName text, Amount numeric, Nums int[])",
           "INSERT INTO daybook VALUES ('Cash', 12.50, '{7,8}')"});
  EXPECT_EQ(
      ShownRows(*driver_, "SELECT [AccName], [Amount] FROM [DayBook] WHERE [Amount] Like '12%'"),
      "Cash|12.5");
  EXPECT_EQ(ShownRows(*driver_, "SELECT Nums[2] FROM DayBook WHERE #2026-03-31# < now()"), "8");
  const auto other = OpenDatabaseUrl(PostgresUrl());
  other->Execute(R"(CREATE TABLE "DayBook" ("AccName" text, "accname" text, "Only Here" int))");
  EXPECT_EQ(ShownRows(*driver_, "SELECT [only here], [AccName] FROM [DayBook]"), "");
  EXPECT_EQ(ShownRows(*driver_, "SELECT 5 AS [Total] ORDER BY [Total]"), "5");
  const std::vector<Parameter> value = {{CellView::Text("a ? b"), FieldType::kText}};
  EXPECT_EQ(ShownRows(*driver_,
                      "SELECT '?', \"accname\" /* /* ? */ ? */ FROM daybook WHERE ? <> '?'", value),
            "?|Cash");
  other->Execute("DROP TABLE \"DayBook\"");
}

std::size_t ResidentBytes() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST_F(PostgresTest, AMillionRowsAreReadInTheMemoryOfAFew) {
  const auto statement =
      driver_->Prepare("SELECT i, repeat('x', 100) FROM generate_series(1, 1000000) g(i)");
  for (int i = 0; i < 1000; ++i) ASSERT_TRUE(statement->Step());
  const std::size_t before = ResidentBytes();
  int rows = 1000;
  while (statement->Step()) ++rows;
  EXPECT_EQ(rows, 1'000'000);
  EXPECT_LT(ResidentBytes(), before + 60'000'000);  // the rows alone are 100 MB
}

}  // namespace
}  // namespace kel
