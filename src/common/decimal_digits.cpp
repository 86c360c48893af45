#include "common/decimal_digits.h"

#include <charconv>
#include <system_error>

namespace kel {
namespace {

constexpr std::size_t kLongestExponent = 4;

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

std::size_t DigitsEnd(std::string_view text, std::size_t from) noexcept {
  while (from < text.size() && IsDigit(text[from])) ++from;
  return from;
}

}  // namespace

bool DecimalDigits::Read(std::string_view text) noexcept {
  *this = DecimalDigits();
  const bool has_sign = !text.empty() && (text[0] == '-' || text[0] == '+');
  negative_ = has_sign && text[0] == '-';
  if (has_sign) text.remove_prefix(1);
  unsigned_text_ = text;

  std::size_t end = DigitsEnd(text, 0);
  whole_ = text.substr(0, end);
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction_end = DigitsEnd(text, end + 1);
    fraction_ = text.substr(end + 1, fraction_end - end - 1);
    end = fraction_end;
  }
  if (whole_.empty() && fraction_.empty()) return false;
  if (end < text.size() && !ReadExponent(text.substr(end))) return false;
  Strip();
  return true;
}

bool DecimalDigits::ReadExponent(std::string_view text) noexcept {
  if (text[0] != 'e' && text[0] != 'E') return false;
  text.remove_prefix(1);
  const bool has_sign = !text.empty() && (text[0] == '-' || text[0] == '+');
  const bool negative = has_sign && text[0] == '-';
  if (has_sign) text.remove_prefix(1);
  if (text.empty() || text.size() > kLongestExponent || DigitsEnd(text, 0) != text.size()) {
    return false;
  }
  int exponent = 0;
  std::from_chars(text.data(), text.data() + text.size(), exponent);
  point_ = negative ? -exponent : exponent;
  return true;
}

// Leaves the digits from the first to the last one that is not zero.
void DecimalDigits::Strip() noexcept {
  count_ = static_cast<std::int64_t>(whole_.size() + fraction_.size());
  point_ += static_cast<std::int64_t>(whole_.size());
  while (count_ > 0 && Stored(count_ - 1) == '0') --count_;
  while (count_ > 0 && Stored(0) == '0') {
    ++first_;
    --count_;
    --point_;
  }
  if (count_ == 0) point_ = 0;
}

void DecimalDigits::RoundTo(std::int64_t digits) noexcept {
  if (digits >= count_) return;
  const bool up = digits >= 0 && Stored(digits) >= '5';
  const char dropped = up ? '9' : '0';
  count_ = digits < 0 ? 0 : digits;
  while (count_ > 0 && Stored(count_ - 1) == dropped) --count_;
  last_is_one_more_ = up;
  if (count_ > 0) return;
  if (!up) {
    point_ = 0;
    return;
  }
  // Nothing but nines: a one in front of them.
  whole_ = "0";
  first_ = 0;
  count_ = 1;
  ++point_;
}

}  // namespace kel
