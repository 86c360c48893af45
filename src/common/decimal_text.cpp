#include "common/decimal_text.h"

#include <algorithm>

#include "common/numeric_value.h"

namespace kel {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kOfDecimals = "0123456789.,+-";

}  // namespace

std::optional<std::string> DecimalText(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return std::nullopt;
  text = text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
  if (text.find_first_not_of(kOfDecimals) != std::string_view::npos || !IsNumeric(text)) {
    return std::nullopt;
  }
  const bool negative = text.find('-') != std::string_view::npos;
  std::string digits(text);
  std::erase_if(digits, [](char c) { return c == ',' || c == '+' || c == '-'; });
  if (digits.find('.') != std::string::npos) {
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
  }
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.empty()) return "0";
  if (digits[0] == '.') digits.insert(0, 1, '0');
  return negative ? "-" + digits : digits;
}

}  // namespace kel
