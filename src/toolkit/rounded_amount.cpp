#include "toolkit/rounded_amount.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "common/error.h"

namespace kel {
namespace {

[[noreturn]] void ThrowNoAmount() {
  throw Error(error_number::kTypeMismatch, "Type mismatch: not a decimal number");
}

[[noreturn]] void ThrowTooLong() {
  throw Error(error_number::kOverflow, "Overflow: an amount has at most " +
                                           std::to_string(kMaxRupeeDigits) +
                                           " digits before its decimal point");
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Takes the digits before the point off `text`. True when there was one.
bool TakeRupees(std::string_view& text, RoundedAmount& amount) {
  bool any = false;
  for (; !text.empty(); text.remove_prefix(1)) {
    const char c = text.front();
    if (c == ',' && any && text.size() > 1 && IsDigit(text[1])) continue;
    if (!IsDigit(c)) break;
    any = true;
    if (c == '0' && amount.digit_count == 0) continue;
    if (amount.digit_count == kMaxRupeeDigits) ThrowTooLong();
    amount.digits.at(amount.digit_count++) = c;
  }
  return any;
}

// The paise of the digits behind the point, 0 to 100, half a paisa rounded up.
std::uint64_t RoundFraction(std::string_view fraction) {
  const auto digit = [fraction](std::size_t i) {
    return i < fraction.size() ? static_cast<std::uint64_t>(fraction[i] - '0') : 0;
  };
  return digit(0) * 10 + digit(1) + (digit(2) >= 5 ? 1 : 0);
}

void AddOneRupee(RoundedAmount& amount) {
  std::size_t at = amount.digit_count;
  while (at > 0 && amount.digits.at(at - 1) == '9') amount.digits.at(--at) = '0';
  if (at > 0) {
    ++amount.digits.at(at - 1);
    return;
  }
  // All nines: a one and as many zeros.
  amount.digits.at(amount.digit_count++) = '0';
  amount.digits.front() = '1';
}

}  // namespace

double RoundedAmount::ToDouble() const {
  std::string text(Rupees());
  text.append({'.', static_cast<char>('0' + paise / 10), static_cast<char>('0' + paise % 10)});
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return negative && value != 0 ? -value : value;
}

RoundedAmount ReadAmount(std::string_view text) {
  RoundedAmount amount;
  text = WithoutBlanks(text);
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    amount.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  const bool has_rupees = TakeRupees(text, amount);
  if (!text.empty() && text.front() == '.') {
    text.remove_prefix(1);
  } else if (!text.empty()) {
    ThrowNoAmount();
  }
  if (!has_rupees && text.empty()) ThrowNoAmount();
  if (!std::all_of(text.begin(), text.end(), IsDigit)) ThrowNoAmount();

  amount.paise = RoundFraction(text);
  if (amount.paise == kPaisePerRupee) {
    amount.paise = 0;
    AddOneRupee(amount);
  }
  return amount;
}

std::uint64_t DigitsValue(std::string_view digits) {
  std::uint64_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

std::optional<std::uint64_t> CountPaise(double amount) {
  // Below a kharab the product and the decimal text differ by less than this.
  constexpr double kUnsure = 0.01;
  const double paise = std::abs(amount) * static_cast<double>(kPaisePerRupee);
  if (!(paise < static_cast<double>(kOneKharab * kPaisePerRupee) - 1)) return std::nullopt;
  const auto whole = static_cast<std::uint64_t>(paise);
  const double fraction = paise - static_cast<double>(whole);
  if (std::abs(fraction - 0.5) < kUnsure) return std::nullopt;
  return whole + (fraction > 0.5 ? 1 : 0);
}

std::string PlainText(double number) {
  if (std::isnan(number)) ThrowNoAmount();
  if (std::isinf(number)) ThrowTooLong();
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(number),
                                 std::chars_format::scientific)
                       .ptr;
  const std::string_view shortest(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t mark = shortest.find('e');
  int exponent = 0;
  std::from_chars(&shortest[mark + (shortest[mark + 1] == '+' ? 2 : 1)], end, exponent);

  std::string digits(shortest.substr(0, 1));
  if (mark > 2) digits += shortest.substr(2, mark - 2);
  if (exponent < 0) {
    digits.insert(0, "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0'));
  } else {
    const std::size_t before_point = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() < before_point) digits.resize(before_point, '0');
    if (digits.size() > before_point) digits.insert(before_point, 1, '.');
  }
  if (number < 0) digits.insert(0, 1, '-');
  return digits;
}

}  // namespace kel
