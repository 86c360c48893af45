#include "data/Recordset.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/scratch.h"
#include "data/sqlite.h"

namespace kel {
namespace {

class RecordsetTest : public DataTest {
 protected:
  Connection Make(const std::string& sql) {
    return Connection(OpenSqlite(WriteDatabase("books.db", sql), Access::kReadWrite));
  }
};

TEST_F(RecordsetTest, WalksForwardOverTheRowsOnce) {
  Connection books = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1), (2), (3)");
  Recordset rows;
  EXPECT_EQ(rows.State(), ObjectState::kClosed);
  rows.Open("SELECT n FROM t ORDER BY n", books);
  EXPECT_EQ(rows.State(), ObjectState::kOpen);
  EXPECT_FALSE(rows.BeginOfFile());
  std::string seen;
  for (; !rows.EndOfFile(); rows.MoveNext()) seen += rows.FieldText(0);
  EXPECT_EQ(seen, "123");
  EXPECT_FALSE(rows.BeginOfFile());
  EXPECT_EQ(ErrorOf([&] { rows.MoveNext(); }).Number(), 3021);
  EXPECT_EQ(ErrorOf([&] { rows.FieldText(0); }).Number(), 3021);
  rows.Close();
  rows.Open("SELECT n FROM t WHERE n > 9", books);
  EXPECT_TRUE(rows.BeginOfFile());
  EXPECT_TRUE(rows.EndOfFile());
  EXPECT_EQ(rows.Field(0).name, "n");
}

TEST_F(RecordsetTest, FieldTextIsTheShortestThatReadsBackTheSame) {
  struct Case {
    const char* sql;
    const char* text;
  };
  const std::vector<Case> cases = {
      {"NULL", ""},
      {"0.1", "0.1"},
      {"0.1 + 0.2", "0.30000000000000004"},
      {"1e22", "1E+22"},
      {"1250.0", "1250"},
      {"-0.0", "0"},
      {"-9223372036854775807 - 1", "-9223372036854775808"},
      {"'1250.0'", "1250.0"},
      {"x'4142'", "AB"},
  };
  Connection books = Make("");
  for (const auto& test : cases) {
    Recordset rows;
    rows.Open(std::string("SELECT ") + test.sql, books);
    EXPECT_EQ(rows.FieldText(0), test.text) << test.sql;
  }
}

TEST_F(RecordsetTest, FieldTextsOfARowStandSideBySide) {
  Connection books = Make(
      "CREATE TABLE t(a INTEGER, b REAL, c BOOL, d BOOL, e BOOLEAN);"
      "INSERT INTO t VALUES (17, 2.5, 1, 0, NULL)");
  Recordset rows;
  rows.Open("SELECT * FROM t", books);
  const std::vector<std::string_view> texts = {rows.FieldText(0), rows.FieldText(1),
                                               rows.FieldText(2), rows.FieldText(3),
                                               rows.FieldText(4)};
  EXPECT_EQ(texts, (std::vector<std::string_view>{"17", "2.5", "True", "False", ""}));
}

TEST_F(RecordsetTest, FieldValuesFollowTheAdoType) {
  Connection books = Make(
      "CREATE TABLE t(a SMALLINT, b MONEY, c DATETIME, d BOOL, e DECIMAL(20,2), f TEXT);"
      "INSERT INTO t VALUES (-7, 12.345, '2026-03-31 06:00:00', 1, 0.25, 'x'),"
      "                     (NULL, NULL, 'soon', NULL, '1e999x', NULL)");
  Recordset rows;
  rows.Open("SELECT * FROM t", books);
  EXPECT_EQ(rows.FieldValue(0), Value(-7));
  EXPECT_EQ(rows.FieldValue(1), Value(Currency{123450}));
  EXPECT_EQ(rows.FieldValue(2), Value(Date{46112.25}));
  EXPECT_EQ(rows.FieldValue(3), Value(true));
  EXPECT_EQ(rows.FieldValue(4), Value(0.25));
  EXPECT_EQ(rows.FieldValue(5), Value("x"));
  rows.MoveNext();
  for (const int i : {0, 1, 3, 5}) EXPECT_TRUE(rows.FieldValue(i).IsNull()) << i;
  EXPECT_EQ(rows.FieldValue(2), Value("soon"));
  EXPECT_EQ(rows.FieldValue(4), Value("1e999x"));
}

TEST_F(RecordsetTest, WrongUseGivesAdoErrors) {
  Connection closed;
  Recordset rows;
  EXPECT_EQ(ErrorOf([&] { rows.MoveNext(); }).Number(), 3704);
  EXPECT_EQ(ErrorOf([&] { rows.FieldCount(); }).Number(), 3704);
  EXPECT_EQ(ErrorOf([&] { rows.FieldValue(0); }).Number(), 3704);
  EXPECT_EQ(ErrorOf([&] { rows.Open("SELECT 1", closed); }).Number(), 3704);
  EXPECT_EQ(ErrorOf([&] { closed.Execute("SELECT 1"); }).Description(),
            "Operation is not allowed when the object is closed.");

  Connection books = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1)");
  rows.Open("SELECT n FROM t", books);
  for (const int index : {-1, 1}) {
    EXPECT_EQ(ErrorOf([&] { rows.Field(index); }).Number(), 3265);
    EXPECT_EQ(ErrorOf([&] { rows.FieldText(index); }).Number(), 3265);
    EXPECT_EQ(ErrorOf([&] { rows.FieldValue(index); }).Number(), 3265);
  }
  EXPECT_EQ(ErrorOf([&] { rows.Open("SELECT n FROM t", books); }).Number(), 3705);
}

TEST_F(RecordsetTest, AStatementWithoutAResultIsRefusedAndNotRun) {
  Connection books = Make("CREATE TABLE t(n INTEGER); INSERT INTO t VALUES (1)");
  Recordset rows;
  EXPECT_TRUE(Contains(ErrorOf([&] { rows.Open("DELETE FROM t", books); }),
                       "DELETE FROM t gives no records"));
  EXPECT_EQ(rows.State(), ObjectState::kClosed);
  EXPECT_EQ(books.Execute("DELETE FROM t"), 1);
}

TEST_F(RecordsetTest, AFailingRowEndsTheRecordset) {
  Connection books = Make(
      "CREATE TABLE t(n INTEGER);"
      "INSERT INTO t VALUES (1), (-9223372036854775807 - 1), (3)");
  Recordset rows;
  rows.Open("SELECT abs(n) FROM t", books);
  EXPECT_TRUE(Contains(ErrorOf([&] { rows.MoveNext(); }), "integer overflow"));
  EXPECT_TRUE(rows.EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows.FieldText(0); }).Number(), 3021);
  books.Close();
  EXPECT_FALSE(books.IsOpen());
  EXPECT_EQ(rows.FieldCount(), 1);
}

}  // namespace
}  // namespace kel
