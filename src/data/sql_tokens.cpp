#include "data/sql_tokens.h"

#include <algorithm>

namespace kel {
namespace {

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }
bool IsDollarTagPart(char c) noexcept { return IsSqlWordPart(c) && c != '$'; }

}  // namespace

bool IsSqlBlank(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

bool IsSqlWordPart(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool SqlToken::Is(std::string_view word) const noexcept {
  const auto same = [](char a, char b) { return (a >= 'a' && a <= 'z' ? a - 'a' + 'A' : a) == b; };
  return kind == Kind::kWord && text.size() == word.size() &&
         std::equal(text.begin(), text.end(), word.begin(), same);
}

bool SqlToken::IsNumber() const noexcept { return kind == Kind::kWord && IsDigit(text[0]); }

std::string SqlToken::Unquoted() const {
  const bool doubles = (kind == Kind::kName || kind == Kind::kText) && quote != ']' && quote != '$';
  if (!doubles) return std::string(text);
  const char mark = quote == '\\' ? '\'' : quote;
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    plain += text[i];
    if (text[i] == mark) ++i;
  }
  return plain;
}

SqlToken SqlTokenizer::Next() {
  SkipBlanksAndComments();
  const std::string_view rest = Rest();
  if (rest.empty()) return {};
  const char first = rest[0];
  if (first == '\'') return Quoted(SqlToken::Kind::kText, 1, '\'', syntax_.backslash_texts);
  if (first == '"' || first == '`') return Quoted(SqlToken::Kind::kName, 1, first, false);
  if (first == '[') return Quoted(SqlToken::Kind::kName, 1, ']', false);
  if ((first == 'E' || first == 'e') && rest.size() > 1 && rest[1] == '\'') {
    return Quoted(SqlToken::Kind::kText, 2, '\'', true);
  }
  if (first == '$') {
    const SqlToken token = DollarQuoted();
    if (token.kind != SqlToken::Kind::kEnd) return token;
  }
  if (!IsSqlWordPart(first)) return Taken(SqlToken::Kind::kSymbol, 1);
  const auto end = std::find_if_not(rest.begin(), rest.end(), IsSqlWordPart);
  return Taken(SqlToken::Kind::kWord, static_cast<std::size_t>(end - rest.begin()));
}

void SqlTokenizer::SkipBlanksAndComments() {
  while (at_ < sql_.size()) {
    const std::string_view rest = Rest();
    if (IsSqlBlank(rest[0])) {
      ++at_;
    } else if (rest.starts_with("--")) {
      at_ = std::min(sql_.find('\n', at_), sql_.size());
    } else if (!rest.starts_with("/*")) {
      return;
    } else if (syntax_.nested_comments) {
      SkipNestedComment();
    } else {
      const std::size_t end = sql_.find("*/", at_ + 2);
      at_ = end == std::string_view::npos ? sql_.size() : end + 2;
    }
  }
}

void SqlTokenizer::SkipNestedComment() {
  std::size_t open = 0;
  while (at_ < sql_.size()) {
    const std::string_view rest = Rest();
    if (rest.starts_with("/*")) {
      ++open;
      at_ += 2;
    } else if (rest.starts_with("*/")) {
      at_ += 2;
      if (--open == 0) return;
    } else {
      ++at_;
    }
  }
}

SqlToken SqlTokenizer::Quoted(SqlToken::Kind kind, std::size_t prefix, char close,
                              bool backslashes) {
  const std::string_view rest = Rest();
  std::size_t end = prefix;
  while (end < rest.size()) {
    const bool is_close = rest[end] == close;
    const bool is_doubled =
        is_close && close != ']' && end + 1 < rest.size() && rest[end + 1] == close;
    if (is_close && !is_doubled) break;
    const bool takes_next = is_doubled || (backslashes && rest[end] == '\\');
    end += takes_next ? 2 : 1;
  }
  end = std::min(end, rest.size());
  SqlToken token = Taken(kind, std::min(end + 1, rest.size()));
  token.text = rest.substr(prefix, end - prefix);
  token.quote = backslashes ? '\\' : close;
  token.closed = end < rest.size();
  return token;
}

/// A text between two "$tag$"; kEnd where none begins, or none ends.
SqlToken SqlTokenizer::DollarQuoted() {
  const std::string_view rest = Rest();
  std::size_t tag = 1;
  while (tag < rest.size() && IsDollarTagPart(rest[tag])) ++tag;
  if (tag == rest.size() || rest[tag] != '$' || IsDigit(rest[1])) return {};
  ++tag;
  const std::size_t end = rest.find(rest.substr(0, tag), tag);
  if (end == std::string_view::npos) return {};
  SqlToken token = Taken(SqlToken::Kind::kText, end + tag);
  token.text = rest.substr(tag, end - tag);
  token.quote = '$';
  return token;
}

SqlToken SqlTokenizer::Taken(SqlToken::Kind kind, std::size_t length) {
  const std::string_view taken = sql_.substr(at_, length);
  at_ += length;
  return {kind, taken, taken, 0, true};
}

}  // namespace kel
