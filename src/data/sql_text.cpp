#include "data/sql_text.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace kel {
namespace {

constexpr std::size_t kMessageBytes = 200;
constexpr std::size_t kCharacterBytes = 4;  // the longest UTF-8 has

bool IsBlank(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

bool IsWordPart(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// A token of SQL; the text of a quoted one is what stands between its quotes.
struct Token {
  enum class Kind { kEnd, kWord, kQuoted, kSymbol };

  bool Is(char symbol) const noexcept { return kind == Kind::kSymbol && text[0] == symbol; }
  /// Compares a bare word; `word` is in capitals.
  bool Is(std::string_view word) const noexcept {
    const auto same = [](char a, char b) {
      return (a >= 'a' && a <= 'z' ? a - 'a' + 'A' : a) == b;
    };
    return kind == Kind::kWord && text.size() == word.size() &&
           std::equal(text.begin(), text.end(), word.begin(), same);
  }
  bool BeginsQuery() const noexcept { return Is("SELECT") || Is("WITH") || Is("VALUES"); }
  bool IsName() const noexcept {
    return kind == Kind::kQuoted || (kind == Kind::kWord && !IsDigit(text[0]));
  }
  /// The name without quotes; a quote inside it is written twice.
  std::string Name() const;

  Kind kind = Kind::kEnd;
  std::string_view text;
  char quote = 0;
};

std::string Token::Name() const {
  if (kind != Kind::kQuoted || quote == ']') return std::string(text);
  std::string name;
  for (std::size_t i = 0; i < text.size(); ++i) {
    name += text[i];
    if (text[i] == quote) ++i;
  }
  return name;
}

class Tokenizer {
 public:
  explicit Tokenizer(std::string_view sql) : rest_(sql) {}

  Token Next() {
    SkipBlanksAndComments();
    if (rest_.empty()) return {};
    const char first = rest_[0];
    if (first == '\'' || first == '"' || first == '`') return Quoted(first);
    if (first == '[') return Quoted(']');
    if (!IsWordPart(first)) return {Token::Kind::kSymbol, Take(1)};
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), IsWordPart);
    return {Token::Kind::kWord, Take(static_cast<std::size_t>(end - rest_.begin()))};
  }

 private:
  void SkipBlanksAndComments() {
    while (!rest_.empty()) {
      if (IsBlank(rest_[0])) {
        Take(1);
      } else if (rest_.starts_with("--")) {
        TakeThrough("\n", 2);
      } else if (rest_.starts_with("/*")) {
        TakeThrough("*/", 2);
      } else {
        return;
      }
    }
  }

  Token Quoted(char close) {
    std::size_t end = 1;
    while (end < rest_.size()) {
      if (rest_[end] != close) {
        ++end;
      } else if (close != ']' && end + 1 < rest_.size() && rest_[end + 1] == close) {
        end += 2;
      } else {
        break;
      }
    }
    end = std::min(end, rest_.size());
    const Token token{Token::Kind::kQuoted, rest_.substr(1, end - 1), close};
    Take(std::min(end + 1, rest_.size()));
    return token;
  }

  std::string_view Take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }

  void TakeThrough(std::string_view mark, std::size_t from) {
    const std::size_t found = rest_.find(mark, from);
    Take(found == std::string_view::npos ? rest_.size() : found + mark.size());
  }

  std::string_view rest_;
};

/// Goes over a statement once and keeps the table of its outermost FROM.
class TableFinder {
 public:
  explicit TableFinder(std::string_view sql) : tokenizer_(sql) { Advance(); }

  std::string Find() {
    // True where a FROM clause, which may open parentheses, has its first table.
    bool at_table = false;
    while (token_.kind != Token::Kind::kEnd) {
      if (at_table && token_.IsName() && !token_.BeginsQuery()) {
        TakeTable();
        at_table = false;
        continue;
      }
      const Token token = token_;
      const Token before = previous_;
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

  void OpenParenthesis(bool at_table, const Token& before) {
    const Level outer = levels_.back();
    const bool is_definition = before.Is("AS") || before.Is("MATERIALIZED");
    if (outer.rank == kPassedOver || is_definition) {
      levels_.push_back({false, kPassedOver});
    } else if (at_table) {
      levels_.push_back({true, outer.rank});
    } else {
      levels_.push_back({token_.BeginsQuery(), outer.rank + 1});
    }
  }

  void TakeTable() {
    Token name = token_;
    Advance();
    while (token_.Is('.')) {
      Advance();
      if (!token_.IsName()) break;
      name = token_;
      Advance();
    }
    if (levels_.back().rank >= table_rank_) return;
    table_ = name.Name();
    table_rank_ = levels_.back().rank;
  }

  void Advance() {
    previous_ = token_;
    token_ = tokenizer_.Next();
  }

  Tokenizer tokenizer_;
  Token token_;
  Token previous_;
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
    if (!IsBlank(c) && c != '\0') {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

}  // namespace kel
