#include "data/sql_quote.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "common/date_text.h"
#include "common/error.h"

namespace kel {
namespace {

[[noreturn]] void ThrowInvalid(const std::string& reason) {
  throw Error(error_number::kInvalidProcedureCall, reason);
}

std::string QuotedText(const std::string& text) {
  if (text.find('\0') != std::string::npos) {
    ThrowInvalid("a text with a NUL cannot stand in an SQL text");
  }
  std::string quoted(1, '\'');
  for (const char c : text) {
    quoted += c;
    if (c == '\'') quoted += c;
  }
  return quoted += '\'';
}

std::string QuotedDate(Date date) {
  std::string quoted(1, '#');
  quoted += IsoDateText(date);
  return quoted += '#';
}

// Without an exponent: some databases read 1E+22 as a name behind a number.
std::string PlainText(double number) {
  if (!std::isfinite(number)) ThrowInvalid("a number in an SQL text must be finite");
  std::array<char, 400> text{};  // 309 digits before the point; behind it 324 zeros and 17 digits
  const char* const end =
      std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr;
  return {text.data(), static_cast<std::size_t>(end - text.data())};
}

// Behind a minus sign another one would begin a comment.
std::string ApartFromSigns(std::string number) {
  if (!number.empty() && number[0] == '-') number.insert(0, 1, ' ');
  return number;
}

}  // namespace

std::string QuoteName(std::string_view name) {
  constexpr std::string_view kForbidden("[]\0", 3);
  if (name.empty() || name.find_first_of(kForbidden) != std::string_view::npos) {
    ThrowInvalid("'" + std::string(name) + "' cannot be the name of a field or table");
  }
  std::string quoted(1, '[');
  quoted += name;
  return quoted += ']';
}

std::string QuoteValue(const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kEmpty:
    case ValueKind::kNull:
      return "Null";
    case ValueKind::kString:
      return QuotedText(value.String());
    case ValueKind::kDate:
      return QuotedDate(Date{value.ToDouble()});
    case ValueKind::kDouble:
      return ApartFromSigns(PlainText(value.ToDouble()));
    default:
      return ApartFromSigns(value.ToText());
  }
}

}  // namespace kel
