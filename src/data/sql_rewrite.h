// SQL texts of book-keeping programs in the words of the database that runs them.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kel {

/// How dates between "#" signs are written for a database.
enum class DateLiterals { kText, kTyped, kEscaped };  // '2026-03-31', DATE '...', {d '...'}

/// What a database wants otherwise than the programs write it.
struct SqlDialect {
  bool knows_brackets = false;  // [Name] stays as it is
  char name_quote = '"';        // around names in place of brackets
  DateLiterals dates = DateLiterals::kText;
  bool like_needs_text = false;  // the left side of LIKE is cast to text
  bool has_subscripts = false;   // a bracket right behind a word or a parenthesis is one
  bool nested_comments = false;  // comments may hold comments
  bool backslash_texts = false;  // \' does not end a text
};

/// Rewrites [Name], #dates# and Like on a number; everything else, the insides of texts, quoted
/// names and comments included, stays byte for byte. `spelled` tells how the database spells a name
/// that stood in brackets, where it tells names by case; not given, names stay as they are. A
/// "#...#" that holds no date stays as it is.
std::string RewriteSql(std::string_view sql, const SqlDialect& dialect,
                       const std::function<std::string(std::string_view name)>& spelled = {});

}  // namespace kel
