// Any text as SQL: rewriting it twice is rewriting it once, texts and comments stay as they are,
// and what is read as a date is one.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/date_text.h"
#include "data/sql_rewrite.h"
#include "data/sql_text.h"
#include "data/sql_tokens.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

kel::SqlDialect DialectOf(unsigned bits) {
  kel::SqlDialect dialect;
  dialect.knows_brackets = (bits & 1U) != 0;
  dialect.name_quote = (bits & 2U) != 0 ? '`' : '"';
  dialect.dates = static_cast<kel::DateLiterals>((bits >> 2U) % 3);
  dialect.like_needs_text = (bits & 16U) != 0;
  dialect.has_subscripts = (bits & 32U) != 0;
  dialect.nested_comments = (bits & 64U) != 0;
  dialect.backslash_texts = (bits & 128U) != 0;
  return dialect;
}

void CheckRewriting(std::string_view sql, const kel::SqlDialect& dialect) {
  const std::string rewritten = kel::RewriteSql(sql, dialect);
  Require(kel::RewriteSql(rewritten, dialect) == rewritten);

  // All texts and quoted names of the statement stand in the other one, in their order.
  kel::SqlTokenizer before(sql, {dialect.nested_comments, dialect.backslash_texts});
  std::size_t at = 0;
  for (kel::SqlToken token = before.Next(); token.kind != kel::SqlToken::Kind::kEnd;
       token = before.Next()) {
    const bool stays = token.kind == kel::SqlToken::Kind::kText || token.quote == '`';
    if (!stays || dialect.has_subscripts || sql.find('#') != std::string_view::npos) continue;
    at = rewritten.find(token.whole, at);
    Require(at != std::string::npos);
    at += token.whole.size();
  }
}

void CheckDate(std::string_view text) {
  for (const kel::DateOrder order : {kel::DateOrder::kDayFirst, kel::DateOrder::kMonthFirst}) {
    const auto date = kel::ReadDate(text, order);
    if (date) Require(kel::ReadDate(kel::IsoDateText(*date), order).has_value());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view sql(reinterpret_cast<const char*>(data) + 1, size - 1);
  CheckRewriting(sql, DialectOf(data[0]));
  CheckDate(sql);
  Require(kel::FirstTableName(sql).size() <= sql.size());
  return 0;
}
