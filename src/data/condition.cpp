#include "data/condition.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "common/date_text.h"
#include "common/names.h"
#include "data/ado_errors.h"
#include "data/cell_order.h"
#include "data/condition_node.h"
#include "data/field_value.h"
#include "data/sql_text.h"
#include "data/sql_tokens.h"

namespace kel {
namespace {

constexpr int kDeepestNesting = 100;

struct Token {
  enum class Kind { kEnd, kWord, kField, kText, kDate, kNumber, kSign };

  bool Is(std::string_view word) const noexcept {
    return (kind == Kind::kWord || kind == Kind::kSign) && SameName(text, word);
  }

  Kind kind = Kind::kEnd;
  std::string text = {};  // without quotes
  std::size_t begin = 0;
};

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

[[noreturn]] void Refuse(const std::string& what, std::string_view condition, std::size_t at) {
  throw WrongArguments(what + " at position " + std::to_string(at + 1) + " of the condition, at '" +
                       OneLineSql(condition.substr(at, 200)) + "'");
}

class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  Token Next() {
    while (at_ < text_.size() && IsSqlBlank(text_[at_])) ++at_;
    begin_ = at_;
    if (at_ == text_.size()) return {Token::Kind::kEnd, {}, begin_};
    const char first = text_[at_];
    const char second = at_ + 1 < text_.size() ? text_[at_ + 1] : '\0';
    if (first == '[') return Enclosed(Token::Kind::kField, ']', "a field name without its ']'");
    if (first == '#') return Enclosed(Token::Kind::kDate, '#', "a date without its second '#'");
    if (first == '\'') return Text();
    if (IsDigit(first) || first == '.' || first == '-' || first == '+') return Number();
    if (IsSqlWordPart(first)) return TakeWhile(Token::Kind::kWord, IsSqlWordPart);
    const bool is_double =
        (first == '<' && (second == '>' || second == '=')) || (first == '>' && second == '=');
    return Take(Token::Kind::kSign, is_double ? 2 : 1);
  }

  /// What Like compares with when it stands in no quotes: a number with wildcards.
  Token NextPattern() {
    while (at_ < text_.size() && IsSqlBlank(text_[at_])) ++at_;
    begin_ = at_;
    constexpr std::string_view kParts = "0123456789.+-*%?_";
    const auto is_part = [&](char c) { return kParts.find(c) != std::string_view::npos; };
    if (at_ == text_.size() || !is_part(text_[at_])) return Next();
    return TakeWhile(Token::Kind::kText, is_part);
  }

 private:
  Token Take(Token::Kind kind, std::size_t length) {
    at_ += length;
    return {kind, std::string(text_.substr(begin_, length)), begin_};
  }

  template <typename IsPart>
  Token TakeWhile(Token::Kind kind, const IsPart& is_part) {
    std::size_t end = begin_;
    while (end < text_.size() && is_part(text_[end])) ++end;
    return Take(kind, end - begin_);
  }

  Token Enclosed(Token::Kind kind, char close, const char* error) {
    const std::size_t end = text_.find(close, begin_ + 1);
    if (end == std::string_view::npos) Refuse(error, text_, begin_);
    at_ = end + 1;
    return {kind, std::string(text_.substr(begin_ + 1, end - begin_ - 1)), begin_};
  }

  Token Text() {
    Token token{Token::Kind::kText, {}, begin_};
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == '\'') {
        ++at_;
        if (at_ == text_.size() || text_[at_] != '\'') return token;
      }
      token.text += text_[at_];
    }
    Refuse("a text without its second quote", text_, begin_);
  }

  /// Signs and exponent included; whether it is a number shows where it is used.
  Token Number() {
    std::size_t end = begin_ + 1;
    while (end < text_.size()) {
      const bool is_exponent_sign = (text_[end] == '-' || text_[end] == '+') &&
                                    (text_[end - 1] == 'e' || text_[end - 1] == 'E');
      if (!IsSqlWordPart(text_[end]) && text_[end] != '.' && !is_exponent_sign) break;
      ++end;
    }
    return Take(Token::Kind::kNumber, end - begin_);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t begin_ = 0;  // of the token that is read
};

class Parser {
 public:
  Parser(std::string_view text, std::span<const ColumnInfo> columns)
      : text_(text), columns_(columns), lexer_(text), token_(lexer_.Next()) {}

  ConditionNode Parse() {
    ConditionNode root = Alternatives(0);
    if (token_.kind != Token::Kind::kEnd) RefuseToken("expected AND, OR or the end");
    return root;
  }

 private:
  ConditionNode Alternatives(int depth) {
    return Joined(ConditionNode::Kind::kAny, "OR", [&] {
      return Joined(ConditionNode::Kind::kAll, "AND", [&] { return Term(depth); });
    });
  }

  template <typename Part>
  ConditionNode Joined(ConditionNode::Kind kind, std::string_view word, const Part& part) {
    ConditionNode first = part();
    if (!token_.Is(word)) return first;
    ConditionNode joined{kind};
    joined.parts.push_back(std::move(first));
    while (TakeIf(word)) joined.parts.push_back(part());
    return joined;
  }

  /// A comparison or a group, with NOT before it or not.
  ConditionNode Term(int depth) {
    bool negated = false;
    while (TakeIf("NOT")) negated = !negated;
    ConditionNode node = token_.Is("(") ? Group(depth) : Comparison();
    if (!negated) return node;
    ConditionNode negation{ConditionNode::Kind::kNot};
    negation.parts.push_back(std::move(node));
    return negation;
  }

  ConditionNode Group(int depth) {
    if (depth == kDeepestNesting) RefuseToken("too many parentheses within each other");
    Advance();
    ConditionNode node = Alternatives(depth + 1);
    if (!TakeIf(")")) RefuseToken("expected ')'");
    return node;
  }

  ConditionNode Comparison() {
    ConditionNode node;
    node.column = Field();
    if (TakeIf("IS")) {
      const bool is_null = !TakeIf("NOT");
      if (!TakeIf("NULL")) RefuseToken("expected Null");
      node.test = NullTest(is_null);
    } else if (token_.Is("LIKE")) {
      token_ = lexer_.NextPattern();
      if (token_.kind != Token::Kind::kText) RefuseToken("expected a pattern in quotes");
      node.test = LikeTest(token_.text, columns_[node.column].type);
      Advance();
    } else {
      const ComparisonOperator comparison = Operator();
      node.test = TestOf(comparison, columns_[node.column].type);
      Advance();
    }
    return node;
  }

  std::size_t Field() {
    const bool is_name = token_.kind == Token::Kind::kField || token_.kind == Token::Kind::kWord;
    if (!is_name) RefuseToken("expected the name of a field");
    const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const auto& column) {
      return SameName(column.name, token_.text);
    });
    if (found == columns_.end()) throw ItemNotFound();
    Advance();
    return static_cast<std::size_t>(found - columns_.begin());
  }

  ComparisonOperator Operator() {
    using Sign = std::pair<std::string_view, ComparisonOperator>;
    constexpr std::array kOperators = {
        Sign{"=", ComparisonOperator::kEqual},   Sign{"<>", ComparisonOperator::kNotEqual},
        Sign{"<", ComparisonOperator::kLess},    Sign{"<=", ComparisonOperator::kLessOrEqual},
        Sign{">", ComparisonOperator::kGreater}, Sign{">=", ComparisonOperator::kGreaterOrEqual}};
    for (const auto& [sign, comparison] : kOperators) {
      if (TakeIf(sign)) return comparison;
    }
    RefuseToken("expected a comparison: =, <>, <, >, <=, >=, Like or Is");
  }

  /// What a comparison with the value at hand asks of a field of `type`.
  std::unique_ptr<CellTest> TestOf(ComparisonOperator comparison, FieldType type) const {
    const bool is_equal = comparison == ComparisonOperator::kEqual;
    const bool tells_equality = is_equal || comparison == ComparisonOperator::kNotEqual;
    if (token_.Is("NULL")) {
      if (!tells_equality) RefuseToken("only = and <> compare with Null");
      return NullTest(is_equal);
    }
    const CellDomain domain = DomainOf(type);
    if (token_.kind == Token::Kind::kDate || domain == CellDomain::kDate) {
      return DateTest(comparison, DateValue());
    }
    if (domain == CellDomain::kText) return TextTest(comparison, TextValue());
    const std::optional<Decimal> number = NumberValue();
    const std::optional<bool> truth = TruthValue();
    if (domain == CellDomain::kNumber && number) return NumberTest(comparison, *number);
    if (domain == CellDomain::kNumber && !truth) RefuseToken("expected a number");
    if (!tells_equality) RefuseToken("only = and <> compare with True and False");
    if (!truth && !number) RefuseToken("expected True or False");
    return TruthTest(is_equal, truth ? *truth : !number->IsZero());
  }

  /// A number's text is a number in quotes, too.
  std::optional<Decimal> NumberValue() const {
    const bool may_be_number =
        token_.kind == Token::Kind::kText || token_.kind == Token::Kind::kNumber;
    return may_be_number ? ParseDecimal(token_.text) : std::nullopt;
  }

  Date DateValue() const {
    if (token_.kind == Token::Kind::kNumber) {
      if (const auto days = NumberValue()) return Date{NearestDouble(*days)};
    }
    const bool may_be_date = token_.kind == Token::Kind::kDate || token_.kind == Token::Kind::kText;
    const std::optional<Date> date =
        may_be_date ? ReadDate(token_.text, DateOrder::kMonthFirst) : std::nullopt;
    if (!date) RefuseToken("expected a date");
    return *date;
  }

  const std::string& TextValue() const {
    if (token_.kind != Token::Kind::kText && !NumberValue() && !TruthValue()) {
      RefuseToken("expected a text in quotes");
    }
    return token_.text;
  }

  std::optional<bool> TruthValue() const {
    const bool may_be_truth =
        token_.kind == Token::Kind::kWord || token_.kind == Token::Kind::kText;
    if (may_be_truth && SameName(token_.text, "TRUE")) return true;
    if (may_be_truth && SameName(token_.text, "FALSE")) return false;
    return std::nullopt;
  }

  bool TakeIf(std::string_view word) {
    if (!token_.Is(word)) return false;
    Advance();
    return true;
  }

  void Advance() { token_ = lexer_.Next(); }

  [[noreturn]] void RefuseToken(const std::string& expected) const {
    Refuse(expected, text_, token_.begin);
  }

  std::string_view text_;
  std::span<const ColumnInfo> columns_;
  Lexer lexer_;
  Token token_;
};

}  // namespace

Condition::Condition(std::string_view text, std::span<const ColumnInfo> columns)
    : root_(std::make_unique<ConditionNode>(Parser(text, columns).Parse())) {}

Condition::~Condition() = default;
Condition::Condition(Condition&&) noexcept = default;
Condition& Condition::operator=(Condition&&) noexcept = default;

}  // namespace kel
