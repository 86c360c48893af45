#include "data/Recordset.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "data/ado_errors.h"
#include "data/sqlite.h"
#include "support/errors.h"
#include "support/recordset_scenarios.h"
#include "support/sqlite_file.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::Contains;
using testing::ErrorOf;

class RecordsetTest : public ::testing::Test {
 protected:
  Connection Make(const std::string& sql) const {
    testing::WriteDatabase(folder_ / "books.db", sql);
    return Connection(OpenSqlite(folder_ / "books.db", Access::kReadWrite));
  }

  testing::TestFolder folder_;
  Recordset rows_;
};

TEST_F(RecordsetTest, WalksForwardOverTheRowsOnceUntilOneFails) {
  Connection books = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1), (2), (-1 << 63)");
  rows_.Open("SELECT n FROM t WHERE n > 0 ORDER BY n", books);
  std::string seen;
  for (; !rows_.EndOfFile(); rows_.MoveNext()) seen += rows_.FieldText(0);
  EXPECT_EQ(seen, "12");
  EXPECT_FALSE(rows_.BeginOfFile());
  EXPECT_EQ(ErrorOf([&] { rows_.MoveNext(); }).Number(), 3021);
  rows_.Close();
  rows_.Open("SELECT n FROM t WHERE n > 9", books);
  EXPECT_TRUE(rows_.BeginOfFile() && rows_.EndOfFile());
  EXPECT_EQ(rows_.Field(0).name, "n");
  rows_.Close();
  rows_.Open("SELECT abs(n) FROM t", books);
  rows_.MoveNext();
  EXPECT_EQ(ErrorOf([&] { rows_.MoveNext(); }).Description(),
            "cannot read row 3 of SELECT abs(n) FROM t: integer overflow");
  EXPECT_TRUE(rows_.EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows_.FieldText(0); }).Number(), 3021);
}

TEST_F(RecordsetTest, FieldTextsAreTheShortestThatReadBackAndStandSideBySide) {
  Connection books = Make("CREATE TABLE t(c BOOL, d BOOL); INSERT INTO t VALUES (1, 0)");
  rows_.Open(
      "SELECT c, d, NULL, 0.1, 0.1 + 0.2, 1e22, 1250.0, -0.0, -9223372036854775807 - 1, '1250.0', "
      "x'4142', x'', 'caf\u00e9' || char(0) || 'x' FROM t",
      books);
  std::vector<std::string_view> texts(static_cast<std::size_t>(rows_.FieldCount()));
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = rows_.FieldText(static_cast<int>(i));
  const std::string_view with_nul("caf\u00e9\0x", 7);
  EXPECT_EQ(texts, (std::vector<std::string_view>{"True", "False", "", "0.1", "0.30000000000000004",
                                                  "1E+22", "1250", "0", "-9223372036854775808",
                                                  "1250.0", "AB", "", with_nul}));
}

TEST_F(RecordsetTest, FieldValuesFollowTheAdoTypeWhereItFits) {
  Connection books = Make(
      "CREATE TABLE t(a SMALLINT, b MONEY, c DATETIME, d BOOL, e DECIMAL(20,2), f TEXT,"
      "               g MONEY, h DATETIME, i DECIMAL(20,2));"
      "INSERT INTO t VALUES (-7, 12.345, '2026-03-31 06:00:00', 1, 0.25, 'x', NULL, 'soon', '1x')");
  rows_.Open("SELECT * FROM t", books);
  const Value::Array values = {-7,  Currency{123450}, Date{46112.25}, true, Currency{2500},
                               "x", Value::Null(),    "soon",         "1x"};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(rows_.FieldValue(i), values[static_cast<std::size_t>(i)]);
}

TEST_F(RecordsetTest, WrongUseGivesAdoErrors) {
  Connection closed;
  EXPECT_EQ(ErrorOf([&] { rows_.MoveNext(); }).Number(), 3704);
  EXPECT_EQ(ErrorOf([&] { rows_.FieldValue(0); }).Number(), 3704);
  EXPECT_EQ(ErrorOf([&] { rows_.Open("SELECT 1", closed); }).Number(), 3704);
  Connection books = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1)");
  EXPECT_EQ(ErrorOf([&] { rows_.Open("DELETE FROM t", books); }).Description(),
            "DELETE FROM t gives no records");
  rows_.Open("SELECT n FROM t", books);
  EXPECT_FALSE(rows_.EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows_.Field(-1); }).Number(), 3265);
  EXPECT_EQ(ErrorOf([&] { rows_.FieldText(1); }).Number(), 3265);
  EXPECT_EQ(ErrorOf([&] { rows_.Open("SELECT n FROM t", books); }).Number(), 3705);
  EXPECT_EQ(ErrorOf([&] { rows_.MovePrevious(); }).Number(), kNotScrollable);
  EXPECT_EQ(ErrorOf([&] { rows_.AddNew(); }).Number(), 3251);
  rows_.Close();
  rows_.Open("SELECT n FROM t", books, CursorType::kKeyset);
  EXPECT_EQ(ErrorOf([&] { rows_.SetFieldValue(0, 1); }).Number(), 3251);
}

TEST_F(RecordsetTest, MovesSortsFiltersAndFinds) {
  Connection own = Make("");
  Connection other(OpenSqlite(folder_ / "books.db", Access::kReadWrite));
  testing::MovesSortsFiltersAndFinds({own, other});
}

TEST_F(RecordsetTest, AddsChangesAndDeletes) {
  Connection own = Make("");
  Connection other(OpenSqlite(folder_ / "books.db", Access::kReadWrite));
  testing::AddsChangesAndDeletes({own, other});
}

TEST_F(RecordsetTest, ARowChangedByOthersIsNotOverwritten) {
  Connection own = Make("");
  Connection other(OpenSqlite(folder_ / "books.db", Access::kReadWrite));
  testing::ARowChangedByOthersIsNotOverwritten({own, other});
}

TEST_F(RecordsetTest, TheRowMeantIsReadAndChangedInJoinsAndInAttachedDatabases) {
  const char* const sql =
      "CREATE TABLE l(id INTEGER PRIMARY KEY, name TEXT); INSERT INTO l VALUES (1, 'Cash');"
      "CREATE TABLE v(no INTEGER PRIMARY KEY, acc INT, amount INT);"
      "INSERT INTO v VALUES (10, 1, 100), (11, 1, 200);";
  testing::WriteDatabase(folder_ / "last_year.db", sql);
  Connection books = Make(sql);
  books.Execute("ATTACH '" + (folder_ / "last_year.db").string() + "' AS old");
  rows_.Open("SELECT id, name, no, amount FROM l JOIN v ON acc = id ORDER BY no", books,
             CursorType::kKeyset, LockType::kOptimistic);
  books.Execute("UPDATE l SET name = 'CASH'");
  rows_.Resync();
  rows_.MoveNext();
  rows_.SetFieldValue("amount", 222);
  EXPECT_EQ(ErrorOf([&] { rows_.Requery(); }).Number(), 3219);
  rows_.Update();
  EXPECT_EQ(testing::Rows(books, "SELECT name, amount FROM l, v"), "CASH|100;CASH|222");
  rows_.Close();
  rows_.Open("SELECT * FROM old.v", books, CursorType::kKeyset, LockType::kOptimistic);
  rows_.SetFieldValue("amount", 333);
  rows_.Update();
  EXPECT_EQ(testing::Rows(books, "SELECT amount FROM main.v UNION ALL SELECT amount FROM old.v"),
            "100;222;333;200");
  rows_.Find("no > 0", 1);
  rows_.Delete();
  rows_.Find("no > 0", 0, SearchDirection::kBackward);
  EXPECT_EQ(rows_.FieldText(0), "10");
}

TEST_F(RecordsetTest, TablesMadeAnewByAnotherProgramAreReadUnderTheirNewNames) {
  Connection books = Make("CREATE TABLE t(a TEXT, b TEXT)");
  EXPECT_EQ(testing::Rows(books, "SELECT * FROM t"), "");
  testing::WriteDatabase(folder_ / "books.db",
                         "DROP TABLE t; CREATE TABLE t(b TEXT, a INTEGER, c MONEY);"
                         "INSERT INTO t VALUES ('x', 1, 2.5)");
  rows_.Open("SELECT * FROM t", books);
  EXPECT_EQ(rows_.FieldText(rows_.FieldIndex("b")), "x");
  EXPECT_EQ(rows_.FieldValue("c"), Value(Currency{25000}));
}

TEST_F(RecordsetTest, EditsKeepTheCellsOfOtherColumnsHoweverManyThereAre) {
  Connection books = Make(
      "CREATE TABLE t AS WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c LIMIT 4090)"
      " SELECT n, 'name' AS name FROM c;");
  books.Execute("CREATE UNIQUE INDEX i ON t(n)");
  rows_.Open("SELECT n, name, 'expression ' || n || ' of the row' AS x FROM t", books,
             CursorType::kKeyset, LockType::kOptimistic);
  for (int n = 1; n <= 10; ++n, rows_.MoveNext()) {
    rows_.SetFieldValue("name", "new name");
    rows_.Update();
    EXPECT_EQ(rows_.FieldText(2), "expression " + std::to_string(n) + " of the row");
  }
}

TEST_F(RecordsetTest, RowsComeInSlicesAndAsFarAsWanted) {
  Connection books = Make(
      "CREATE TABLE t AS WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c LIMIT 9000)"
      " SELECT n, iif(n % 3, 'row ' || n, NULL) AS name, n / 2.0 AS half FROM c;");
  rows_.FetchesInSlices(true);
  rows_.Open("SELECT * FROM t", books, CursorType::kStatic);
  EXPECT_EQ(rows_.RecordCount(), -1);
  EXPECT_TRUE(rows_.Fetch(10));
  rows_.Move(4999);
  EXPECT_EQ(rows_.FieldText(1), "row 5000");
  EXPECT_FALSE(rows_.EndOfFile());
  EXPECT_EQ(rows_.RecordCount(), -1);
  rows_.Filter("half > 4400.4 AND name <> Null");
  EXPECT_EQ(rows_.RecordCount(), 133);
  rows_.MoveLast();
  EXPECT_EQ(rows_.FieldText(0), "8999");
  rows_.Close();
  rows_.FetchesInSlices(false);
  rows_.MaxRecords(4097);
  rows_.Open("SELECT * FROM t", books, CursorType::kStatic);
  EXPECT_EQ(rows_.RecordCount(), 4097);
  rows_.MoveLast();
  EXPECT_EQ(rows_.FieldValue(2), Value(2048.5));
}

class WrittenEvents : public RecordsetEvents {
 public:
  void MoveComplete() override { written += 'm'; }
  void RecordChangeComplete() override { written += 'r'; }
  void RecordsetChangeComplete() override { written += 's'; }
  void FetchProgress() override { written += 'f'; }

  std::string Take() { return std::exchange(written, {}); }
  std::string written;
};

TEST_F(RecordsetTest, RowsAreSeenWithoutGoingThereAndListenersAreTold) {
  Connection books = Make(
      "CREATE TABLE t(n INTEGER PRIMARY KEY, v TEXT);"
      "INSERT INTO t VALUES (1, 'c'), (2, 'a'), (3, 'b')");
  WrittenEvents events;
  rows_.AddEvents(events);
  rows_.FetchesInSlices(true);
  rows_.Open("SELECT * FROM t", books, CursorType::kKeyset, LockType::kOptimistic);
  EXPECT_EQ(events.Take(), "fs");
  EXPECT_EQ(rows_.RowsSeen(), 1);
  rows_.Fetch(10);
  EXPECT_EQ(events.Take(), "f");
  rows_.Sort("v");
  EXPECT_EQ(events.Take(), "sm");
  EXPECT_EQ(rows_.CellSeen(2, 1).bytes, "c");
  rows_.AbsolutePosition(2);
  EXPECT_EQ(rows_.FieldText(1), "b");
  EXPECT_EQ(events.Take(), "m");
  rows_.SetFieldValue(1, "z");
  EXPECT_EQ(rows_.CellSeen(1, 1).bytes, "z");
  rows_.CancelUpdate();
  EXPECT_EQ(rows_.CellSeen(1, 1).bytes, "b");
  EXPECT_EQ(events.Take(), "rr");
  EXPECT_EQ(ErrorOf([&] { rows_.AbsolutePosition(4); }).Number(), 3001);
  EXPECT_EQ(rows_.AbsolutePosition(), 2);
  rows_.Delete();
  EXPECT_EQ(rows_.RowsSeen(), 2);
  EXPECT_EQ(events.Take(), "r");
  rows_.Requery();
  EXPECT_EQ(events.Take(), "s");  // what the rows are read with is another object
  rows_.RemoveEvents(events);
  rows_.Close();
  EXPECT_EQ(events.Take(), "");
}

TEST_F(RecordsetTest, AFailureWhileFetchingIsNoEndOfTheRows) {
  Connection books = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1), (2), (-1 << 63)");
  EXPECT_EQ(ErrorOf([&] {
              rows_.Open("SELECT abs(n) FROM t", books, CursorType::kKeyset);
            }).Description(),
            "cannot read row 3 of SELECT abs(n) FROM t: integer overflow");
  EXPECT_EQ(rows_.State(), ObjectState::kClosed);
  rows_.FetchesInSlices(true);
  rows_.Open("SELECT abs(n) FROM t", books, CursorType::kKeyset);
  EXPECT_TRUE(Contains(ErrorOf([&] { rows_.MoveLast(); }), "integer overflow"));
  EXPECT_TRUE(Contains(ErrorOf([&] { rows_.Sort("[abs(n)]"); }), "integer overflow"));
  EXPECT_EQ(rows_.RecordCount(), -1);
  rows_.MoveNext();
  EXPECT_EQ(rows_.FieldText(0), "2");
}

}  // namespace
}  // namespace kel
