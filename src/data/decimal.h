// Numbers as the decimal digits that state them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kel {

/// No two numbers of up to so many digits have the same nearest double.
inline constexpr std::size_t kSureDigits = 15;

/// A number, read from a text without losing anything. The views are into that text.
struct Decimal {
  bool IsZero() const noexcept { return Digits() == 0; }
  std::size_t Digits() const noexcept { return whole.size() + fraction.size(); }
  /// 0 to 9; 0 behind the last digit.
  int Digit(std::size_t index) const noexcept {
    if (index < whole.size()) return whole[index] - '0';
    index -= whole.size();
    return index < fraction.size() ? fraction[index] - '0' : 0;
  }

  bool negative = false;       // never of zero
  std::int64_t magnitude = 0;  // the power of ten just above the number: 3 for 250, -1 for 0.025
  // The digits, neither the first nor the last of them 0.
  std::string_view whole = {};
  std::string_view fraction = {};
};

/// "-1250.50", ".5", "1E+22", with blanks around it or not; nothing for other texts.
std::optional<Decimal> ParseDecimal(std::string_view text) noexcept;

/// The double nearest to it; infinite beyond the largest.
double NearestDouble(const Decimal& number);

/// Below, equal to or above 0 as `left` is below, equal to or above `right`.
int CompareDecimals(const Decimal& left, const Decimal& right) noexcept;

}  // namespace kel
