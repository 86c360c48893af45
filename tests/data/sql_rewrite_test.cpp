#include "data/sql_rewrite.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

#include "common/error.h"
#include "data/sql_quote.h"

namespace kel {
namespace {

struct Case {
  const char* sql;
  const char* rewritten;
};

// Subscripts and nested comments as PostgreSQL has them.
constexpr SqlDialect kServer{.dates = DateLiterals::kTyped,
                             .like_needs_text = true,
                             .has_subscripts = true,
                             .nested_comments = true};

TEST(SqlRewriteTest, NamesDatesAndLikeAreRewrittenAndNothingElse) {
  for (const Case& c : {
           Case{"SELECT [Acc Name],[a\"b] FROM [dbo].[Ledger]",
                R"(SELECT "Acc Name","a""b" FROM "dbo"."Ledger")"},
           Case{"WHERE[d]=#05/March/2009#", R"(WHERE"d"=DATE '2009-03-05')"},
           Case{"BETWEEN#3/31/2026#AND #2026-03-31 10:00:00#",
                "BETWEEN DATE '2026-03-31'AND TIMESTAMP '2026-03-31 10:00:00'"},
           Case{"a Like '1%'", "CAST(a AS text) Like '1%'"},
           Case{"WHERE a.b . [c] /*x*/ not like 'x'",
                R"(WHERE CAST(a.b . "c" AS text) /*x*/ not like 'x')"},
           Case{"NOT (a OR b) LIKE x AND f(a, (b)) ILIKE y",
                "NOT CAST((a OR b) AS text) LIKE x AND CAST(f(a, (b)) AS text) ILIKE y"},
           Case{"12.5 LIKE x OR 'a' LIKE DATE '2026-03-31' LIKE",
                "CAST(12.5 AS text) LIKE x OR CAST('a' AS text) LIKE "
                "CAST(DATE '2026-03-31' AS text) LIKE"},
           Case{"CASE WHEN a LIKE b THEN 1 END LIKE x",
                "CAST(CASE WHEN CAST(a AS text) LIKE b THEN 1 END AS text) LIKE x"},
           Case{"d->'a'->>0 LIKE x OR a::varchar(20) LIKE :p OR :p LIKE ? OR ? LIKE x",
                "CAST(d->'a'->>0 AS text) LIKE x OR CAST(a::varchar(20) AS text) LIKE :p OR "
                "CAST(:p AS text) LIKE ? OR CAST(? AS text) LIKE x"},
           Case{"count(*) FILTER (WHERE a) LIKE x, n COLLATE \"C\" LIKE x",
                "CAST(count(*) FILTER (WHERE a) AS text) LIKE x, "
                "CAST(n COLLATE \"C\" AS text) LIKE x"},
           Case{"arr[1][[i]], f(x)[2], ARRAY[1,2], arr [n] FROM t",
                R"(arr[1]["i"], f(x)[2], ARRAY[1,2], arr "n" FROM t)"},
           Case{"arr[1] LIKE x", "CAST(arr[1] AS text) LIKE x"},
           Case{"d->('a' || b) LIKE x", "CAST(d->('a' || b) AS text) LIKE x"},
           Case{"a][b] LIKE x", R"(a]CAST("b" AS text) LIKE x)"},
           Case{"CREATE TABLE t (LIKE u)", "CREATE TABLE t (LIKE u)"},
           Case{"'[a] #1/1/2026#' \"[b]\" -- [c]\n /* /* [d] */ [e] */ [f",
                "'[a] #1/1/2026#' \"[b]\" -- [c]\n /* /* [d] */ [e] */ [f"},
           Case{R"($$[a]'$$, $t$[a]$$#1/1/2026#$t$, E'\'[a]', e'it''s\\'[b])",
                R"($$[a]'$$, $t$[a]$$#1/1/2026#$t$, E'\'[a]', e'it''s\\'"b")"},
           Case{"#31/31/2026# a #> '{x}' b#1/1/2026# [] # x #1/2/2026#",
                "#31/31/2026# a #> '{x}' b#1/1/2026# [] # x DATE '2026-01-02'"},
       }) {
    const std::string rewritten = RewriteSql(c.sql, kServer);
    EXPECT_EQ(rewritten, c.rewritten);
    EXPECT_EQ(RewriteSql(rewritten, kServer), rewritten);
  }
}

TEST(SqlRewriteTest, EveryDatabaseGetsItsOwnWords) {
  const std::string sql = "[a b] = #1/2/2026# OR c LIKE 'x\\'[y]' OR d[1]";
  EXPECT_EQ(RewriteSql(sql, {.knows_brackets = true}),
            "[a b] = '2026-01-02' OR c LIKE 'x\\'[y]' OR d[1]");
  EXPECT_EQ(RewriteSql(
                sql, {.name_quote = '`', .dates = DateLiterals::kEscaped, .backslash_texts = true}),
            "`a b` = {d '2026-01-02'} OR c LIKE 'x\\'[y]' OR d`1`");
  EXPECT_EQ(RewriteSql("#1/2/2026 1:00 PM#", {.dates = DateLiterals::kEscaped}),
            "{ts '2026-01-02 13:00:00'}");
  EXPECT_EQ(RewriteSql("[Name]", {}, [](std::string_view name) { return std::string(name) + "1"; }),
            "\"Name1\"");
  EXPECT_EQ(RewriteSql("/* /* */ [a]", {}), "/* /* */ \"a\"");
}

TEST(SqlQuoteTest, ValuesStandInSqlTextsOnEveryDatabase) {
  const std::vector<std::pair<Value, const char*>> cases = {
      {Value(), "Null"},
      {Value::Null(), "Null"},
      {"it's '", "'it''s '''"},
      {true, "True"},
      {-5, " -5"},
      {1e22, "10000000000000000000000"},
      {2.5e-9, "0.0000000025"},
      {0.1, "0.1"},
      {Currency{-12500}, " -1.25"},
      {Date{46112}, "#2026-03-31#"},
      {Date{46112.5}, "#2026-03-31 12:00:00#"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(QuoteValue(value), text);
  EXPECT_EQ(QuoteName("Account Name"), "[Account Name]");

  const auto number_of = [](const auto& operation) {
    try {
      operation();
    } catch (const Error& error) {
      return error.Number();
    }
    return 0;
  };
  using std::string_view_literals::operator""sv;
  for (const std::string_view name : {""sv, "a]b"sv, "[a"sv, "a\0b"sv}) {
    EXPECT_EQ(number_of([&] { QuoteName(name); }), 5) << name;
  }
  EXPECT_EQ(number_of([] { QuoteValue("a\0b"sv); }), 5);
  EXPECT_EQ(number_of([] { QuoteValue(std::numeric_limits<double>::infinity()); }), 5);
  EXPECT_EQ(number_of([] { QuoteValue(Value::Array{1}); }), 13);
  EXPECT_EQ(number_of([] { QuoteValue(Value::ObjectPtr()); }), 13);
}

}  // namespace
}  // namespace kel
