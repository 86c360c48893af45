// Money amounts in English words with the Indian grouping.
#pragma once

#include <string>
#include <string_view>

namespace kel {

/// How the rupees of an amount are grouped into words.
enum class Style {
  /// Exactly as CAmount does, with its gaps: ten digits and more have no rupee words, and from
  /// 2147483647.50 on there are no words at all; lakhs below ten are lost inside a crore amount
  /// (10512345 is "One Crore(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)").
  Published,
  /// The same wording for every amount, with nothing lost, going on with "Arab(s)" (100 crores)
  /// and "Kharab(s)" (100 arabs). New programs should use this one.
  Extended,
};

inline constexpr std::string_view kFormalRupee = "Rupee(s)";
inline constexpr std::string_view kFormalPaise = "Paise";

/// Digits before the decimal point that an amount given as text or as a double may have.
inline constexpr std::size_t kMaxRupeeDigits = 60;

/// The words of an amount, rounded to two decimals, half away from zero. `formal_rupee` and
/// `formal_paise` are put in as they are.
///
///     kel::AmountInWords("1,05,12,345.60", kel::Style::Extended);
///     // One Crore(s) Five Lakh(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s) Sixty
///     Paise
///
/// A negative amount has "Minus " before the words of its absolute value, unless it rounds to 0.
///
/// The text is a decimal number, read exactly: blanks around it, one sign before it, group commas
/// between the digits before the point, one point. Throws Error 13 for any other text, an exponent
/// included, and Error 6 for more than kMaxRupeeDigits digits before the point.
std::string AmountInWords(std::string_view amount, Style style,
                          std::string_view formal_rupee = kFormalRupee,
                          std::string_view formal_paise = kFormalPaise);

/// The same of a double, taken by its shortest decimal text: 0.005 is half a paisa exactly.
/// Throws Error 13 for not-a-number and Error 6 for 1E60 and above; with Style::Published both
/// have no words, as every amount too large has.
std::string AmountInWords(double amount, Style style, std::string_view formal_rupee = kFormalRupee,
                          std::string_view formal_paise = kFormalPaise);

/// The amount rounded to two decimals, half away from zero on its shortest decimal text (the
/// Format function's "###0.00" read back as a number); never -0.
double RoundToPaise(double amount);

}  // namespace kel
