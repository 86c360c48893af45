// The lines of a voucher and what is computed from them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ledger {

/// What a voucher debits or credits. Amounts are decimal texts with two decimals ("1250.50"), so
/// that no paisa is lost on the way from the keyboard to the books.
struct VoucherLine {
  std::int64_t entry_id = 0;  // 0: not in the books yet
  std::int64_t account_id = 0;
  std::string account;
  std::string debit = "0.00";
  std::string credit = "0.00";
  std::string narration;

  bool operator==(const VoucherLine&) const = default;
};

struct Totals {
  std::string debit;
  std::string credit;
  std::string difference;  // debit - credit

  bool Balance() const;
  bool CreditsExceed() const;
};

Totals Sum(const std::vector<VoucherLine>& lines);

/// The most digits before the point that the books keep to the paisa.
inline constexpr std::size_t kMostRupeeDigits = 12;

/// The amount that somebody typed: "1,250.5" is "1250.50", "" is "0.00". Nothing for what is no
/// amount, is negative, has parts of a paisa or more than kMostRupeeDigits digits.
std::optional<std::string> ReadAmount(std::string_view typed);

/// "1234567.50" as "12,34,567.50"; a minus stays in front.
std::string Grouped(std::string_view amount);

/// What the numbers of a type begin with ("JRN-" for Journal), as make_books.py numbers them.
std::string_view NumberPrefix(std::string_view type);

/// The number after the last one with that prefix: "JRN-00009" makes "JRN-00010", and none, "",
/// makes "JRN-00001".
std::string NextNumber(std::string_view prefix, std::string_view last);

}  // namespace ledger
