#include "common/numeric_value.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

#include "common/value.h"

namespace kel {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr double kInfinity = std::numeric_limits<double>::infinity();

enum class Commas { kEndTheNumber, kGroupDigits };

// The parts of the number at the beginning of a text. Both digit texts empty: there is none.
struct Number {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
  std::string_view exponent;  // sign and digits
  std::string_view mantissa;  // whole, point and fraction as they stand
  std::string_view unsigned_text;
  std::size_t length = 0;

  bool Exists() const { return !whole.empty() || !fraction.empty(); }
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSign(char c) { return c == '+' || c == '-'; }

std::size_t DigitsEnd(std::string_view text, std::size_t from, Commas commas) {
  std::size_t end = from;
  while (end < text.size()) {
    const bool is_group_comma = commas == Commas::kGroupDigits && text[end] == ',' && end > from &&
                                IsDigit(text[end - 1]) && end + 1 < text.size() &&
                                IsDigit(text[end + 1]);
    if (!IsDigit(text[end]) && !is_group_comma) break;
    ++end;
  }
  return end;
}

Number Scan(std::string_view text, Commas commas) {
  Number number;
  const std::size_t begin = !text.empty() && IsSign(text[0]) ? 1 : 0;
  number.negative = begin == 1 && text[0] == '-';

  std::size_t end = DigitsEnd(text, begin, commas);
  number.whole = text.substr(begin, end - begin);
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction_end = DigitsEnd(text, end + 1, Commas::kEndTheNumber);
    number.fraction = text.substr(end + 1, fraction_end - end - 1);
    if (number.Exists()) end = fraction_end;
  }
  if (!number.Exists()) return number;
  number.mantissa = text.substr(begin, end - begin);

  if (end < text.size() && (text[end] == 'E' || text[end] == 'e')) {
    const std::size_t sign = end + 1;
    const std::size_t digits = sign < text.size() && IsSign(text[sign]) ? sign + 1 : sign;
    const std::size_t exponent_end = DigitsEnd(text, digits, Commas::kEndTheNumber);
    if (exponent_end > digits) {
      number.exponent = text.substr(sign, exponent_end - sign);
      end = exponent_end;
    }
  }
  number.unsigned_text = text.substr(begin, end - begin);
  number.length = end;
  return number;
}

std::int64_t ExponentOf(const Number& number) {
  constexpr std::int64_t kBeyondEveryText = std::numeric_limits<std::int64_t>::max() / 4;
  std::string_view digits = number.exponent;
  if (digits.empty()) return 0;
  const bool negative = digits[0] == '-';
  if (IsSign(digits[0])) digits.remove_prefix(1);
  std::int64_t exponent = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  if (read.ec != std::errc() || exponent > kBeyondEveryText) exponent = kBeyondEveryText;
  return negative ? -exponent : exponent;
}

// The power of ten just above the number: 3 for 250, 0 for 0.25, -1 for 0.025.
std::int64_t Magnitude(const Number& number) {
  const std::size_t significant = number.whole.find_first_not_of("0,");
  if (significant != std::string_view::npos) {
    const std::string_view counted = number.whole.substr(significant);
    return std::count_if(counted.begin(), counted.end(), IsDigit) + ExponentOf(number);
  }
  const std::size_t zeros = number.fraction.find_first_not_of('0');
  if (zeros == std::string_view::npos) return std::numeric_limits<std::int64_t>::min();
  return ExponentOf(number) - static_cast<std::int64_t>(zeros);
}

// `text` is the number's text or a part of it, without sign and commas.
double Converted(std::string_view text, const Number& number) {
  double result = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), result);
  if (read.ec == std::errc::result_out_of_range) result = Magnitude(number) > 0 ? kInfinity : 0;
  return number.negative ? -result : result;
}

bool IsInfinite(double number) { return number == kInfinity || number == -kInfinity; }

// The number that a whole text is. A sign behind it counts when there is none before it.
Number ScanWhole(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  Number number = Scan(text, Commas::kGroupDigits);
  if (number.length == text.size()) return number;
  const bool sign_behind =
      number.length + 1 == text.size() && IsSign(text.back()) && !IsSign(text.front());
  if (!sign_behind) return {};
  number.negative = text.back() == '-';
  return number;
}

}  // namespace

double ExVal(std::string_view expression) noexcept {
  const std::size_t begin = std::min(expression.find_first_not_of(kBlanks), expression.size());
  Number number = Scan(expression.substr(begin), Commas::kEndTheNumber);
  if (!number.Exists()) return 0;
  const double result = Converted(number.unsigned_text, number);
  if (!IsInfinite(result)) return result;

  // The published second reading skips no blanks, so behind blanks it finds no number.
  if (begin != 0) return 0;
  number.exponent = {};
  const double without_exponent = Converted(number.mantissa, number);
  return IsInfinite(without_exponent) ? 0 : without_exponent;
}

double ExVal(Value& expression) {
  std::string text = expression.ToText();
  const double result = ExVal(text);
  expression = std::move(text);
  return result;
}

bool IsNumeric(std::string_view text) noexcept {
  const Number number = ScanWhole(text);
  return number.Exists() && Magnitude(number) <= std::numeric_limits<double>::max_exponent10 + 1;
}

std::optional<double> ReadNumber(std::string_view text) {
  const Number number = ScanWhole(text);
  if (!number.Exists()) return std::nullopt;
  if (number.whole.find(',') == std::string_view::npos) {
    return Converted(number.unsigned_text, number);
  }
  std::string without_commas(number.unsigned_text);
  std::erase(without_commas, ',');
  return Converted(without_commas, number);
}

}  // namespace kel
