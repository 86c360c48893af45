// Amounts in words as published.
#pragma once

#include <string>

namespace kel {

/// Spells a money amount in English words: crore, lakh, thousand, hundred, then the currency words.
///
///     double amount = 1234.5;
///     kel::CAmount().Words(amount);
///     // One Thousand Two Hundred And Thirty Four Rupee(s) Fifty Paise
///
/// The published digit groups are kept, also where they lose something (see Style::Published).
/// A new program should call AmountInWords with Style::Extended, which loses nothing.
class CAmount {
 public:
  /// The words of `Amount`, which is rounded to two decimals in place. FormalRupee and FormalPaise
  /// are put in as they are. Never fails: an amount too large to be worded gives an empty text.
  /// In the type library the method is called CAmount.
  std::string Words(double& Amount, const std::string& FormalRupee = "Rupee(s)",
                    const std::string& FormalPaise = "Paise") const;
};

}  // namespace kel
