#include "data/sql_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace kel {
namespace {

TEST(SqlTextTest, FirstTableNameIsThatOfTheStatementsOwnFrom) {
  struct Case {
    const char* sql;
    const char* table;
  };
  const std::vector<Case> cases = {
      {"SELECT * FROM Ledger", "Ledger"},
      {"select a from\n\tDay_Book where x = 1", "Day_Book"},
      {"SELECT a FROM Ledger, DayBook", "Ledger"},
      {"SELECT a FROM Ledger JOIN DayBook", "Ledger"},
      {"SELECT a FROM(Ledger JOIN DayBook)", "Ledger"},
      {R"(SELECT a FROM "Day ""Book""")", "Day \"Book\""},
      {"SELECT a FROM [Day Book]", "Day Book"},
      {"SELECT a FROM `Day``Book`", "Day`Book"},
      {"SELECT a FROM 'Day''s'", "Day's"},
      {"SELECT a FROM main.Ledger l", "Ledger"},
      {"SELECT a FROM [My DB] . \"dbo\" . Ledger", "Ledger"},
      {"SELECT a FROM \u0916\u093e\u0924\u093e", "\u0916\u093e\u0924\u093e"},
      {"SELECT 'x FROM no', \"FROM\" FROM Ledger", "Ledger"},
      {"SELECT a /* FROM no */ -- FROM no\n FROM/**/Ledger", "Ledger"},
      {"SELECT fromage, a.from_date FROM Ledger", "Ledger"},
      {"SELECT EXTRACT(YEAR FROM d), trim(both FROM x) FROM Ledger", "Ledger"},
      {"SELECT a IS NOT DISTINCT FROM b FROM Ledger", "Ledger"},
      {"SELECT (SELECT max(x) FROM no) FROM Ledger", "Ledger"},
      {"SELECT coalesce((SELECT x FROM no), 0) FROM Ledger", "Ledger"},
      {"SELECT a FROM (SELECT (SELECT 1 FROM no) FROM ((Ledger)))", "Ledger"},
      {"SELECT a FROM ((SELECT b FROM Ledger) UNION SELECT 1 FROM no)", "Ledger"},
      {"WITH t AS (SELECT 1 FROM no) SELECT * FROM Ledger, t", "Ledger"},
      {"WITH t(a) AS NOT MATERIALIZED (SELECT (SELECT 1 FROM no)) SELECT 1", ""},
      {"SELECT EXISTS (SELECT 1 FROM Ledger)", "Ledger"},
      {"(SELECT a FROM Ledger) UNION (SELECT a FROM no)", "Ledger"},
      {"INSERT INTO no SELECT * FROM Ledger", "Ledger"},
      {"DELETE FROM Ledger WHERE 1", "Ledger"},
      {"SELECT a FROM (VALUES (1), (2))", ""},
      {"SELECT 1", ""},
      {"SELECT a FROM", ""},
      {"SELECT a FROM 12", ""},
      {"SELECT a FROM (", ""},
      {"SELECT a FROM Ledger.", "Ledger"},
      {"SELECT a FROM \"Led", "Led"},
      {"SELECT a)) FROM Ledger", "Ledger"},
      {"", ""},
  };
  for (const auto& test : cases) EXPECT_EQ(FirstTableName(test.sql), test.table) << test.sql;
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
  EXPECT_EQ(FirstTableName(std::string(1'000'000, '(')), "");
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "(SELECT ";
  EXPECT_EQ(FirstTableName(deep + "1 FROM Ledger"), "Ledger");
}

TEST(SqlTextTest, OneLineSqlFoldsBlanksAndCutsBeforeACharacter) {
  EXPECT_EQ(OneLineSql("\n SELECT *\r\n\tFROM  t  \n"), "SELECT * FROM t");
  EXPECT_EQ(OneLineSql(""), "");
  const std::string exact(200, 'x');
  EXPECT_EQ(OneLineSql(exact), exact);
  EXPECT_EQ(OneLineSql(exact + "y"), exact + "...");
  const std::string short_of_it(199, 'x');
  EXPECT_EQ(OneLineSql(short_of_it + "\u20b9\u20b9"), short_of_it + "\u20b9...");
  EXPECT_EQ(OneLineSql(std::string(5000, '\x80')).size(), 206U);
}

}  // namespace
}  // namespace kel
