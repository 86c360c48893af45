#include "data/sql_text.h"

#include <cstddef>
#include <limits>
#include <vector>

#include "data/sql_tokens.h"

namespace kel {
namespace {

constexpr std::size_t kMessageBytes = 200;
constexpr std::size_t kCharacterBytes = 4;  // the longest UTF-8 has

bool BeginsQuery(const SqlToken& token) noexcept {
  return token.Is("SELECT") || token.Is("WITH") || token.Is("VALUES");
}

bool IsName(const SqlToken& token) noexcept {
  const bool is_bare = token.kind == SqlToken::Kind::kWord && !token.IsNumber();
  return is_bare || token.kind == SqlToken::Kind::kName || token.kind == SqlToken::Kind::kText;
}

/// Goes over a statement once and keeps the table of its outermost FROM.
class TableFinder {
 public:
  explicit TableFinder(std::string_view sql) : tokenizer_(sql) { Advance(); }

  std::string Find() {
    // True where a FROM clause, which may open parentheses, has its first table.
    bool at_table = false;
    while (token_.kind != SqlToken::Kind::kEnd) {
      if (at_table && IsName(token_) && !BeginsQuery(token_)) {
        TakeTable();
        at_table = false;
        continue;
      }
      const SqlToken token = token_;
      const SqlToken before = previous_;
      Advance();
      if (token.Is('(')) {
        OpenParenthesis(at_table, before);
      } else {
        at_table = token.Is("FROM") && !before.Is("DISTINCT") && levels_.back().is_query;
        if (token.Is(')') && levels_.size() > 1) levels_.pop_back();
      }
    }
    return table_;
  }

 private:
  static constexpr int kPassedOver = std::numeric_limits<int>::max();

  /// What stands between two parentheses.
  struct Level {
    bool is_query;  // FROM is a clause here, not a part of EXTRACT(YEAR FROM x)
    int rank;       // 0 for the statement itself and what stands in its FROM
  };

  void OpenParenthesis(bool at_table, const SqlToken& before) {
    const Level outer = levels_.back();
    const bool is_definition = before.Is("AS") || before.Is("MATERIALIZED");
    if (outer.rank == kPassedOver || is_definition) {
      levels_.push_back({false, kPassedOver});
    } else if (at_table) {
      levels_.push_back({true, outer.rank});
    } else {
      levels_.push_back({BeginsQuery(token_), outer.rank + 1});
    }
  }

  void TakeTable() {
    SqlToken name = token_;
    Advance();
    while (token_.Is('.')) {
      Advance();
      if (!IsName(token_)) break;
      name = token_;
      Advance();
    }
    if (levels_.back().rank >= table_rank_) return;
    table_ = name.Unquoted();
    table_rank_ = levels_.back().rank;
  }

  void Advance() {
    previous_ = token_;
    token_ = tokenizer_.Next();
  }

  SqlTokenizer tokenizer_;
  SqlToken token_;
  SqlToken previous_;
  std::vector<Level> levels_{{true, 0}};
  std::string table_;
  int table_rank_ = kPassedOver;
};

}  // namespace

std::string FirstTableName(std::string_view sql) { return TableFinder(sql).Find(); }

std::string OneLineSql(std::string_view sql) {
  std::string line;
  for (const char c : sql) {
    const bool starts_character = (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    if (line.size() >= kMessageBytes + (starts_character ? 0 : kCharacterBytes - 1)) {
      return line + "...";
    }
    if (!IsSqlBlank(c) && c != '\0') {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

}  // namespace kel
