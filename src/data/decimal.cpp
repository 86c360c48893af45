#include "data/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>

namespace kel {
namespace {

constexpr std::int64_t kBeyondEveryText = std::int64_t{1} << 60;

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

bool SkipSign(std::string_view& text) noexcept {
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) text.remove_prefix(1);
  return negative;
}

std::string_view TakeDigits(std::string_view& text) noexcept {
  std::size_t length = 0;
  while (length < text.size() && IsDigit(text[length])) ++length;
  const std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  return digits;
}

std::size_t ZerosBefore(std::string_view digits) noexcept {
  return std::min(digits.find_first_not_of('0'), digits.size());
}

void DropZerosBehind(std::string_view& digits) noexcept {
  while (!digits.empty() && digits.back() == '0') digits.remove_suffix(1);
}

/// The exponent behind an "E"; nothing when the text does not end with it.
std::optional<std::int64_t> ReadExponent(std::string_view text) noexcept {
  const bool negative = SkipSign(text);
  const std::string_view digits = TakeDigits(text);
  if (digits.empty() || !text.empty()) return std::nullopt;
  std::int64_t exponent = 0;
  for (const char c : digits) exponent = std::min(exponent * 10 + (c - '0'), kBeyondEveryText / 16);
  return negative ? -exponent : exponent;
}

/// Up to 15 digits and up to 10^22 are doubles themselves, so that one operation rounds rightly.
std::optional<double> NearestOfFewDigits(const Decimal& number) noexcept {
  constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr auto kMostPower = static_cast<std::int64_t>(kPowersOfTen.size()) - 1;
  const std::int64_t power = number.magnitude - static_cast<std::int64_t>(number.Digits());
  if (number.Digits() > kSureDigits || power > kMostPower || -power > kMostPower) {
    return std::nullopt;
  }
  std::int64_t digits = 0;
  for (std::size_t i = 0; i < number.Digits(); ++i) digits = digits * 10 + number.Digit(i);
  const auto whole = static_cast<double>(number.negative ? -digits : digits);
  const double scale = kPowersOfTen[static_cast<std::size_t>(power < 0 ? -power : power)];
  return power < 0 ? whole / scale : whole * scale;
}

}  // namespace

std::optional<Decimal> ParseDecimal(std::string_view text) noexcept {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  Decimal number;
  number.negative = SkipSign(text);
  number.whole = TakeDigits(text);
  if (!text.empty() && text[0] == '.') {
    text.remove_prefix(1);
    number.fraction = TakeDigits(text);
  }
  if (number.Digits() == 0) return std::nullopt;
  std::int64_t exponent = 0;
  if (!text.empty()) {
    if (text[0] != 'E' && text[0] != 'e') return std::nullopt;
    const std::optional<std::int64_t> read = ReadExponent(text.substr(1));
    if (!read) return std::nullopt;
    exponent = *read;
  }

  number.whole.remove_prefix(ZerosBefore(number.whole));
  number.magnitude = exponent + static_cast<std::int64_t>(number.whole.size());
  DropZerosBehind(number.fraction);
  if (number.fraction.empty()) DropZerosBehind(number.whole);
  if (number.whole.empty()) {
    const std::size_t zeros = ZerosBefore(number.fraction);
    number.fraction.remove_prefix(zeros);
    number.magnitude -= static_cast<std::int64_t>(zeros);
  }
  if (number.IsZero()) return Decimal{};
  return number;
}

double NearestDouble(const Decimal& number) {
  if (const std::optional<double> nearest = NearestOfFewDigits(number)) return *nearest;
  constexpr std::int64_t kBeyondDoubles = 100'000;
  std::string text = number.negative ? "-0." : "0.";
  text.append(number.whole).append(number.fraction).append("E");
  text += std::to_string(std::clamp(number.magnitude, -kBeyondDoubles, kBeyondDoubles));
  double nearest = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), nearest);
  if (read.ec != std::errc::result_out_of_range) return nearest;
  if (number.magnitude < 0) return 0;
  const double infinity = std::numeric_limits<double>::infinity();
  return number.negative ? -infinity : infinity;
}

int CompareDecimals(const Decimal& left, const Decimal& right) noexcept {
  const auto sign = [](const Decimal& number) {
    if (number.IsZero()) return 0;
    return number.negative ? -1 : 1;
  };
  if (sign(left) != sign(right)) return sign(left) - sign(right);
  if (left.magnitude != right.magnitude) {
    return left.magnitude < right.magnitude ? -sign(left) : sign(left);
  }
  const std::size_t digits = std::max(left.Digits(), right.Digits());
  for (std::size_t i = 0; i < digits; ++i) {
    const int difference = left.Digit(i) - right.Digit(i);
    if (difference != 0) return sign(left) * difference;
  }
  return 0;
}

}  // namespace kel
