// A money amount rounded to two decimals, half away from zero, without ever losing a digit.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "toolkit/amount_in_words.h"

namespace kel {

inline constexpr std::uint64_t kPaisePerRupee = 100;
inline constexpr std::uint64_t kOneKharab = 100'000'000'000;
inline constexpr std::size_t kDigitsBelowKharab = 11;

struct RoundedAmount {
  bool negative = false;
  std::uint64_t paise = 0;  // beside the rupees, below 100
  std::size_t digit_count = 0;
  std::array<char, kMaxRupeeDigits + 1> digits{};  // of the rupees, without leading zeros

  std::string_view Rupees() const { return {digits.data(), digit_count}; }
  /// The nearest double.
  double ToDouble() const;
};

/// Reads decimal text as AmountInWords does. Throws Error 13 or 6.
RoundedAmount ReadAmount(std::string_view text);

/// The number that a run of digits stands for; 0 for none. REQUIRES at most 19 of them.
std::uint64_t DigitsValue(std::string_view digits);

/// All paise of the absolute value of an amount below a kharab. Nothing for larger ones, and where
/// the amount is so near to half a paisa that only its decimal text tells how to round.
std::optional<std::uint64_t> CountPaise(double amount);

/// The shortest decimal text of a number, written out without an exponent. Throws Error 13 for
/// not-a-number and 6 for infinity.
std::string PlainText(double number);

}  // namespace kel
