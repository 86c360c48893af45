#include "data/sql_rewrite.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "common/date_text.h"
#include "data/sql_tokens.h"

namespace kel {
namespace {

constexpr std::size_t kLongestDate = 64;  // bytes between the "#" signs
constexpr std::string_view kCast = "CAST(";
constexpr std::string_view kAsText = " AS text)";

// Words that end an expression: what stands behind one is an operand of its own, and a parenthesis
// behind one is not that of a function.
constexpr std::array<std::string_view, 43> kKeywords = {
    "ALL",    "AND",    "ANY",   "AS",     "ASC",    "BETWEEN", "BY",      "CHECK",     "CROSS",
    "DELETE", "DESC",   "ELSE",  "ESCAPE", "EXCEPT", "FROM",    "FULL",    "GROUP",     "HAVING",
    "ILIKE",  "IN",     "INNER", "INTO",   "IS",     "JOIN",    "LIKE",    "LIMIT",     "NOT",
    "OFFSET", "ON",     "OR",    "ORDER",  "OUTER",  "SELECT",  "SET",     "RETURNING", "THEN",
    "UNION",  "UPDATE", "USING", "VALUES", "WHEN",   "WHERE",   "DISTINCT"};

// Words between two parts of one operand: count(*) FILTER (...), name COLLATE "C".
constexpr std::array<std::string_view, 3> kInsideOperands = {"COLLATE", "FILTER", "OVER"};

template <std::size_t kCount>
bool IsOneOf(const std::array<std::string_view, kCount>& words, const SqlToken& token) noexcept {
  return token.kind == SqlToken::Kind::kWord &&
         std::any_of(words.begin(), words.end(), [&](auto word) { return token.Is(word); });
}

bool MentionsLike(std::string_view sql) noexcept {
  for (std::size_t k = sql.find_first_of("kK"); k != std::string_view::npos;
       k = sql.find_first_of("kK", k + 1)) {
    if (k >= 2 && (sql[k - 1] | 0x20) == 'i' && (sql[k - 2] | 0x20) == 'l') return true;
  }
  return false;
}

bool HasWork(std::string_view sql, const SqlDialect& dialect) noexcept {
  if (sql.find('#') != std::string_view::npos) return true;
  if (!dialect.knows_brackets && sql.find('[') != std::string_view::npos) return true;
  return dialect.like_needs_text && MentionsLike(sql);
}

std::string DateLiteral(Date date, DateLiterals style) {
  const std::string iso = IsoDateText(date);
  const bool has_time = iso.find(' ') != std::string::npos;
  switch (style) {
    case DateLiterals::kText:
      break;
    case DateLiterals::kTyped:
      return (has_time ? "TIMESTAMP '" : "DATE '") + iso + "'";
    case DateLiterals::kEscaped:
      return (has_time ? "{ts '" : "{d '") + iso + "'}";
  }
  return "'" + iso + "'";
}

/// Copies a statement token by token, rewriting some, and remembers where in the copy the operand
/// stands that a LIKE may have on its left.
class Rewriter {
 public:
  Rewriter(std::string_view sql, const SqlDialect& dialect,
           const std::function<std::string(std::string_view)>& spelled)
      : sql_(sql),
        dialect_(dialect),
        spelled_(spelled),
        tokenizer_(sql, {dialect.nested_comments, dialect.backslash_texts}) {}

  std::string Rewritten() {
    std::size_t end = 0;
    for (SqlToken token = tokenizer_.Next(); token.kind != SqlToken::Kind::kEnd;
         token = tokenizer_.Next()) {
      const std::size_t begin = tokenizer_.Position() - token.whole.size();
      text_ += sql_.substr(end, begin - end);  // blanks and comments
      is_adjacent_ = begin == end;
      Take(token);
      previous_ = token;
      end = tokenizer_.Position();
    }
    text_ += sql_.substr(end);
    return std::move(text_);
  }

 private:
  struct Operand {
    std::size_t begin;
    std::size_t end;
  };

  /// A parenthesis, a subscript or a CASE that is open.
  struct Group {
    char opening;
    std::size_t operand;  // where the operand begins that the group ends
  };

  void Take(SqlToken& token) {
    switch (token.kind) {
      case SqlToken::Kind::kWord:
        return TakeWord(token);
      case SqlToken::Kind::kText:
        // A word before a text is its type: DATE '2026-03-31', N'...'.
        return TakeOperand(token.whole,
                           previous_.kind == SqlToken::Kind::kWord ? Part::kNext : Part::kFirst);
      case SqlToken::Kind::kName:
        return TakeName(token);
      case SqlToken::Kind::kSymbol:
        return TakeSymbol(token);
      case SqlToken::Kind::kEnd:
        return;
    }
  }

  enum class Part { kFirst, kNext };

  /// Copies a part of an operand: its first, unless a chain leads to it.
  void TakeOperand(std::string_view text, Part part = Part::kFirst) {
    const bool goes_on = operand_ && (is_chained_ || part == Part::kNext);
    const std::size_t begin = goes_on ? operand_->begin : text_.size();
    text_ += text;
    operand_ = Operand{begin, text_.size()};
    is_chained_ = false;
  }

  /// Copies what leads from one part of an operand to the next.
  void TakeChain(std::string_view text) {
    text_ += text;
    is_chained_ = operand_.has_value();
  }

  void TakeOther(std::string_view text) {
    text_ += text;
    operand_.reset();
    is_chained_ = false;
  }

  void TakeWord(const SqlToken& token) {
    if (is_chained_) return TakeOperand(token.whole);
    if (IsOneOf(kInsideOperands, token)) return TakeChain(token.whole);
    if (token.Is("CASE")) return OpenGroup(token.whole, text_.size());
    if (token.Is("END")) return CloseGroup(token.whole, 'C');
    if (token.Is("NOT")) {
      text_ += token.whole;  // of NOT LIKE, maybe
      return;
    }
    const bool is_like = token.Is("LIKE") || token.Is("ILIKE");
    if (is_like && dialect_.like_needs_text && operand_) CastOperand();
    if (is_like || IsOneOf(kKeywords, token)) return TakeOther(token.whole);
    TakeOperand(token.whole);
  }

  void CastOperand() {
    const std::string_view operand =
        std::string_view(text_).substr(operand_->begin, operand_->end - operand_->begin);
    if (operand.starts_with(kCast) && operand.ends_with(kAsText)) return;
    text_.insert(operand_->end, kAsText);
    text_.insert(operand_->begin, kCast);
    const char before = operand_->begin > 0 ? text_[operand_->begin - 1] : ' ';
    // The word would go on with it, or be a parameter's name.
    const bool is_glued = IsSqlWordPart(before) || before == ':' || before == '@';
    if (is_glued) text_.insert(operand_->begin, 1, ' ');
  }

  void TakeName(SqlToken& token) {
    const bool in_brackets = token.quote == ']';
    if (in_brackets && IsSubscript()) {
      tokenizer_.Position(tokenizer_.Position() - token.whole.size() + 1);
      token = {SqlToken::Kind::kSymbol, token.whole.substr(0, 1), token.whole.substr(0, 1)};
      return OpenGroup("[", operand_->begin);
    }
    const bool stays =
        !in_brackets || dialect_.knows_brackets || !token.closed || token.text.empty();
    TakeOperand(stays ? std::string(token.whole) : QuotedName(token.text));
  }

  /// Whether a "[" follows right on an operand that is a name, a parenthesis or another subscript.
  bool IsSubscript() const noexcept {
    if (!dialect_.has_subscripts || !is_adjacent_ || !operand_) return false;
    return IsName(previous_) || previous_.Is(')') || previous_.Is(']');
  }

  static bool IsName(const SqlToken& token) noexcept {
    return token.kind == SqlToken::Kind::kName ||
           (token.kind == SqlToken::Kind::kWord && !IsOneOf(kKeywords, token));
  }

  std::string QuotedName(std::string_view name) const {
    std::string quoted(1, dialect_.name_quote);
    for (const char c : spelled_ ? spelled_(name) : std::string(name)) {
      quoted += c;
      if (c == dialect_.name_quote) quoted += c;
    }
    return quoted += dialect_.name_quote;
  }

  void TakeSymbol(const SqlToken& token) {
    const std::string_view rest = sql_.substr(tokenizer_.Position());
    if (token.Is('(')) {
      const bool goes_on = operand_ && (is_chained_ || IsName(previous_));  // f(x), d->(x)
      OpenGroup(token.whole, goes_on ? operand_->begin : text_.size());
    } else if (token.Is(')') || token.Is(']')) {
      CloseGroup(token.whole, token.Is(')') ? '(' : '[');
    } else if (token.Is('#') && TakeDate(rest)) {
      return;
    } else if (token.Is('?')) {
      TakeOperand(token.whole);
    } else if (IsChain(token, rest)) {
      TakeChain(token.whole);
    } else if ((token.Is('-') || token.Is('#')) && rest.starts_with('>')) {
      const std::size_t more = rest.starts_with(">>") ? 2 : 1;  // -> and ->> of JSON
      TakeChain(sql_.substr(tokenizer_.Position() - 1, more + 1));
      tokenizer_.Position(tokenizer_.Position() + more);
    } else if ((token.Is(':') || token.Is('@')) && !rest.empty() && IsSqlWordPart(rest[0])) {
      TakeOperand(token.whole);  // a parameter
      is_chained_ = true;
    } else {
      TakeOther(token.whole);
    }
  }

  bool IsChain(const SqlToken& token, std::string_view rest) const noexcept {
    const bool is_cast = token.Is(':') && (rest.starts_with(':') || previous_.Is(':'));
    return token.Is('.') || is_cast;
  }

  /// Behind a "#": rewrites up to the next one when a date stands between them.
  bool TakeDate(std::string_view rest) {
    const std::size_t length = rest.substr(0, kLongestDate).find('#');
    const bool inside_word =
        is_adjacent_ && previous_.kind == SqlToken::Kind::kWord && !IsOneOf(kKeywords, previous_);
    if (length == std::string_view::npos || inside_word) return false;
    const std::optional<Date> date = ReadDate(rest.substr(0, length), DateOrder::kMonthFirst);
    if (!date) return false;
    if (!text_.empty() && IsSqlWordPart(text_.back())) text_ += ' ';
    TakeOperand(DateLiteral(*date, dialect_.dates));
    tokenizer_.Position(tokenizer_.Position() + length + 1);
    return true;
  }

  /// `operand` is where the operand begins that the group ends.
  void OpenGroup(std::string_view text, std::size_t operand) {
    open_.push_back({text[0], operand});
    TakeOther(text);
  }

  /// `opening` is the beginning of what opens such a group.
  void CloseGroup(std::string_view text, char opening) {
    TakeOther(text);
    const bool is_open = !open_.empty() && (open_.back().opening | 0x20) == (opening | 0x20);
    if (!is_open) return open_.clear();
    operand_ = Operand{open_.back().operand, text_.size()};
    open_.pop_back();
  }

  std::string_view sql_;
  const SqlDialect& dialect_;
  const std::function<std::string(std::string_view)>& spelled_;
  SqlTokenizer tokenizer_;
  std::string text_;
  SqlToken previous_;
  bool is_adjacent_ = false;  // nothing stands between the previous token and this one
  std::vector<Group> open_;
  std::optional<Operand> operand_;
  bool is_chained_ = false;
};

}  // namespace

std::string RewriteSql(std::string_view sql, const SqlDialect& dialect,
                       const std::function<std::string(std::string_view name)>& spelled) {
  if (!HasWork(sql, dialect)) return std::string(sql);
  return Rewriter(sql, dialect, spelled).Rewritten();
}

}  // namespace kel
