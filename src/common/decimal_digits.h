// A decimal number of any length, digit by digit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kel {

/// The significant digits of a decimal text and where their point is; looks into that text, which
/// must outlive it, and never copies a digit.
class DecimalDigits {
 public:
  /// Reads "-1250.5", ".5", "1E+300": one sign, digits with one point, an exponent. False for
  /// other texts, and for exponents of more than four digits.
  bool Read(std::string_view text) noexcept;

  bool IsZero() const noexcept { return count_ == 0; }
  bool IsNegative() const noexcept { return negative_; }
  /// The text that was read, without its sign.
  std::string_view UnsignedText() const noexcept { return unsigned_text_; }

  /// The number of digits from the first one to the last one that is not zero.
  std::int64_t Count() const noexcept { return count_; }
  /// How many of the digits stand before the decimal point: 2 for 12.5, -1 for 0.012; 0 for zero.
  std::int64_t Point() const noexcept { return point_; }
  /// The digit at `index`; '0' outside of the Count() digits.
  char Digit(std::int64_t index) const noexcept {
    if (index < 0 || index >= count_) return '0';
    const char digit = Stored(index);
    return index == count_ - 1 && last_is_one_more_ ? static_cast<char>(digit + 1) : digit;
  }

  /// Multiplies by a power of ten. Zero stays zero.
  void Shift(std::int64_t power) noexcept {
    if (count_ > 0) point_ += power;
  }
  /// Rounds half away from zero to the first `digits` digits. REQUIRES: not rounded before.
  void RoundTo(std::int64_t digits) noexcept;

 private:
  bool ReadExponent(std::string_view text) noexcept;
  void Strip() noexcept;
  char Stored(std::int64_t index) const noexcept {
    const auto place = first_ + static_cast<std::size_t>(index);
    return place < whole_.size() ? whole_[place] : fraction_[place - whole_.size()];
  }

  bool negative_ = false;
  bool last_is_one_more_ = false;  // rounded up; the digit stored is below 9
  std::string_view unsigned_text_;
  std::string_view whole_;
  std::string_view fraction_;
  std::size_t first_ = 0;  // zeros in front of the first significant digit
  std::int64_t count_ = 0;
  std::int64_t point_ = 0;
};

}  // namespace kel
