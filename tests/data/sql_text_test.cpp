#include "data/sql_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace kel {
namespace {

TEST(SqlTextTest, FirstTableNameIsThatOfTheStatementsOwnFrom) {
  for (const char* sql :
       {"select a from\n\tLedger where x = 1", "SELECT a FROM(Ledger JOIN DayBook)",
        "SELECT a FROM [My DB] . \"dbo\" . Ledger", "SELECT 'x FROM no', \"FROM\" FROM Ledger",
        "SELECT a /* FROM no */ -- FROM no\n FROM/**/Ledger",
        "SELECT fromage, a.from_date FROM Ledger",
        "SELECT EXTRACT(YEAR FROM d), trim(both FROM x) FROM Ledger",
        "SELECT a IS NOT DISTINCT FROM b FROM Ledger", "SELECT (SELECT max(x) FROM no) FROM Ledger",
        "SELECT a FROM (SELECT (SELECT 1 FROM no) FROM ((Ledger)))",
        "SELECT a FROM ((SELECT b FROM Ledger) UNION SELECT 1 FROM no)",
        "WITH t AS (SELECT 1 FROM no) SELECT * FROM Ledger, t",
        "SELECT EXISTS (SELECT 1 FROM Ledger)", "INSERT INTO no SELECT * FROM Ledger",
        "DELETE FROM Ledger.", "SELECT a FROM \"Ledger"}) {
    EXPECT_EQ(FirstTableName(sql), "Ledger") << sql;
  }
  for (const char* sql : {"SELECT 1", "SELECT a FROM", "SELECT a FROM 12", "SELECT a FROM (",
                          "SELECT a FROM (VALUES (1), (2))", "SELECT EXTRACT(YEAR FROM d)",
                          "WITH t AS (SELECT 1 FROM no) SELECT 1",
                          "WITH t(a) AS NOT MATERIALIZED (SELECT (SELECT 1 FROM no)) SELECT 1"}) {
    EXPECT_EQ(FirstTableName(sql), "") << sql;
  }
  EXPECT_EQ(FirstTableName(R"(SELECT a FROM "Day ""Book""")"), "Day \"Book\"");
  EXPECT_EQ(FirstTableName("SELECT a FROM `Day``Book`"), "Day`Book");
  EXPECT_EQ(FirstTableName("SELECT a FROM [Day Book]"), "Day Book");
  EXPECT_EQ(FirstTableName("SELECT a FROM \u0916\u093e"), "\u0916\u093e");
}

TEST(SqlTextTest, GarbageEndsAndNamesNothingLongerThanItself) {
  const std::vector<std::string> pieces = {"FROM", "SELECT", "WITH", "AS", "(",   ")",  "'",
                                           "\"",   "[",      "]",    "`",  "--",  "/*", "*/",
                                           "\n",   " ",      ".",    "x",  "\xff"};
  std::mt19937 random(20260331);
  for (int round = 0; round < 5000; ++round) {
    std::string sql;
    for (int i = 0; i < 30; ++i) sql += pieces[random() % pieces.size()];
    EXPECT_LT(FirstTableName(sql).size(), sql.size()) << sql;
  }
  EXPECT_EQ(FirstTableName("SELECT 1 FROM" + std::string(100'000, '(') + "Ledger"), "Ledger");
}

TEST(SqlTextTest, OneLineSqlFoldsBlanksAndCutsBeforeACharacter) {
  EXPECT_EQ(OneLineSql("\n SELECT *\r\n\tFROM  t  \n"), "SELECT * FROM t");
  const std::string almost(199, 'x');
  EXPECT_EQ(OneLineSql(almost + "y"), almost + "y");
  EXPECT_EQ(OneLineSql(almost + "yz"), almost + "y...");
  EXPECT_EQ(OneLineSql(almost + "\u20b9\u20b9"), almost + "\u20b9...");
}

}  // namespace
}  // namespace kel
