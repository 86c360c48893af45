#include "vouchers/voucher_lines.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/decimal_text.h"
#include "common/numeric_value.h"
#include "data/decimal_sum.h"

namespace ledger {
namespace {

constexpr std::size_t kDecimals = 2;
constexpr std::size_t kNumberDigits = 5;  // or more
constexpr double kLargestNumber = 1E15;

constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kPrefixes = {
    {{"Sales", "SAL-"},
     {"Purchase", "PUR-"},
     {"Receipt", "RCT-"},
     {"Payment", "PMT-"},
     {"Journal", "JRN-"},
     {"Contra", "CON-"}}};

std::string WithTwoDecimals(std::string decimal) {
  const std::size_t point = std::min(decimal.find('.'), decimal.size());
  if (point == decimal.size()) decimal += '.';
  decimal.append(point + 1 + kDecimals - std::min(decimal.size(), point + 1 + kDecimals), '0');
  return decimal;
}

}  // namespace

bool Totals::Balance() const { return difference == "0.00"; }

bool Totals::CreditsExceed() const { return difference.front() == '-'; }

Totals Sum(const std::vector<VoucherLine>& lines) {
  kel::DecimalSum debit;
  kel::DecimalSum credit;
  kel::DecimalSum difference;
  for (const VoucherLine& line : lines) {
    debit.Add(line.debit);
    credit.Add(line.credit);
    difference.Add(line.debit);
    difference.Add("-" + line.credit);
  }
  return {WithTwoDecimals(debit.Text()), WithTwoDecimals(credit.Text()),
          WithTwoDecimals(difference.Text())};
}

std::optional<std::string> ReadAmount(std::string_view typed) {
  if (typed.find_first_not_of(' ') == std::string_view::npos) return "0.00";
  const std::optional<std::string> decimal = kel::DecimalText(typed);
  if (!decimal || decimal->front() == '-') return std::nullopt;
  const std::size_t point = std::min(decimal->find('.'), decimal->size());
  if (point > kMostRupeeDigits || decimal->size() > point + 1 + kDecimals) return std::nullopt;
  return WithTwoDecimals(*decimal);
}

// Three digits before the point, then groups of two.
std::string Grouped(std::string_view amount) {
  const std::size_t point = std::min(amount.find('.'), amount.size());
  const std::size_t first = amount.starts_with('-') ? 1 : 0;
  std::string grouped(amount);
  for (std::size_t at = point; at > first + (at == point ? 3 : 2);) {
    at -= at == point ? 3 : 2;
    grouped.insert(at, 1, ',');
  }
  return grouped;
}

std::string_view NumberPrefix(std::string_view type) {
  const auto* const found = std::find_if(kPrefixes.begin(), kPrefixes.end(),
                                         [&](const auto& each) { return each.first == type; });
  return found == kPrefixes.end() ? std::string_view() : found->second;
}

std::string NextNumber(std::string_view prefix, std::string_view last) {
  last.remove_prefix(std::min(prefix.size(), last.size()));
  const double number = std::clamp(kel::ExVal(last), 0.0, kLargestNumber);
  const std::string digits = std::to_string(static_cast<std::int64_t>(number) + 1);
  const std::size_t zeros = kNumberDigits - std::min(kNumberDigits, digits.size());
  return std::string(prefix) + std::string(zeros, '0') + digits;
}

}  // namespace ledger
