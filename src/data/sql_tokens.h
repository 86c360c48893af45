// The words, texts, names and signs of an SQL text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kel {

/// Where databases cut their texts differently.
struct SqlSyntax {
  bool nested_comments = false;  // "/* /* */ */" is one comment
  bool backslash_texts = false;  // \' in any text is a quote; in E'...' it always is
};

bool IsSqlBlank(char c) noexcept;
/// Digits, too.
bool IsSqlWordPart(char c) noexcept;

/// One word, text, name or sign of an SQL text.
struct SqlToken {
  enum class Kind {
    kEnd,
    kWord,    // a bare name, a keyword or a number
    kText,    // '...', E'...', $tag$...$tag$
    kName,    // "...", `...`, [...]
    kSymbol,  // one character
  };

  bool Is(char symbol) const noexcept { return kind == Kind::kSymbol && text[0] == symbol; }
  /// Compares a bare word; `word` is in capitals.
  bool Is(std::string_view word) const noexcept;
  bool IsNumber() const noexcept;
  /// The text without quotes; a quote inside it is written twice.
  std::string Unquoted() const;

  Kind kind = Kind::kEnd;
  std::string_view text;   // of a quoted one, what stands between its quotes
  std::string_view whole;  // with its quotes
  char quote = 0;          // the closing one; '$' for $tag$, '\\' for texts with backslashes
  bool closed = true;      // false for a quoted one that the end of the text cuts off
};

/// Cuts an SQL text into tokens, passing over blanks and comments. The text outlives them.
class SqlTokenizer {
 public:
  explicit SqlTokenizer(std::string_view sql, SqlSyntax syntax = {}) : sql_(sql), syntax_(syntax) {}

  /// A token of kind kEnd at the end and ever after.
  SqlToken Next();

  /// What the next token is read from.
  std::size_t Position() const noexcept { return at_; }
  void Position(std::size_t position) noexcept { at_ = position; }

 private:
  void SkipBlanksAndComments();
  void SkipNestedComment();
  SqlToken Quoted(SqlToken::Kind kind, std::size_t prefix, char close, bool backslashes);
  SqlToken DollarQuoted();
  SqlToken Taken(SqlToken::Kind kind, std::size_t length);
  std::string_view Rest() const noexcept { return sql_.substr(at_); }

  std::string_view sql_;
  SqlSyntax syntax_;
  std::size_t at_ = 0;
};

}  // namespace kel
