#include "data/decimal_sum.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

#include "common/number_text.h"
#include "data/decimal.h"
#include "data/field_value.h"

namespace kel {
namespace {

constexpr std::int64_t kTenThousand = 10'000;
constexpr int kSmallDecimals = 4;
// Below this a double of up to four decimals is known by its ten-thousandths.
constexpr double kSureAmount = 1e11;

constexpr std::int64_t kLimbBase = 1'000'000'000;
constexpr std::int64_t kLimbDigits = 9;
// Digits are held from 10^-1107 up to 10^999; doubles reach from 10^-324 to 10^308.
constexpr std::int64_t kPointLimb = 123;
constexpr std::size_t kLimbs = 123 + 111;
constexpr std::int64_t kHighest = 10;  // limbs kept free for carries
constexpr std::int64_t kMostMagnitude =
    (static_cast<std::int64_t>(kLimbs) - kPointLimb - kHighest) * kLimbDigits;
constexpr std::int64_t kLeastPower = -kPointLimb * kLimbDigits;
// So many numbers of a limb's size fit into 64 bits.
constexpr std::uint32_t kMostAdditions = 1U << 31U;

/// Moves what is beyond a limb's size into the next one, so that all have the sum's sign or are 0.
void Carry(std::vector<std::int64_t>& limbs) {
  for (std::size_t i = 0; i + 1 < limbs.size(); ++i) {
    limbs[i + 1] += limbs[i] / kLimbBase;
    limbs[i] %= kLimbBase;
  }
}

/// Turns the limbs into the magnitude of their sum; true when that is negative.
bool MakeMagnitude(std::vector<std::int64_t>& limbs) {
  Carry(limbs);
  const auto top =
      std::find_if(limbs.rbegin(), limbs.rend(), [](std::int64_t limb) { return limb != 0; });
  const bool negative = top != limbs.rend() && *top < 0;
  if (negative) {
    for (std::int64_t& limb : limbs) limb = -limb;
  }
  for (std::size_t i = 0; i + 1 < limbs.size(); ++i) {
    if (limbs[i] >= 0) continue;
    limbs[i] += kLimbBase;
    --limbs[i + 1];
  }
  return negative;
}

std::string LimbText(std::int64_t limb) {
  std::string digits = std::to_string(kLimbBase + limb);  // the 1 keeps leading zeros
  return digits.substr(1);
}

}  // namespace

void DecimalSum::Add(const CellView& cell) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / kTenThousand;
  switch (cell.kind) {
    case CellView::Kind::kInteger:
      if (cell.integer <= kMost && cell.integer >= -kMost) {
        AddSmall(cell.integer * kTenThousand);
      } else {
        AddDecimal(std::to_string(cell.integer));
      }
      break;
    case CellView::Kind::kDouble:
      AddDouble(cell.number);
      break;
    case CellView::Kind::kText:
      AddDecimal(cell.bytes);
      break;
    case CellView::Kind::kNull:
    case CellView::Kind::kBinary:
      break;
  }
}

void DecimalSum::Add(const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kInteger:
    case ValueKind::kCurrency:
      AddDecimal(value.ToText());
      break;
    case ValueKind::kDouble:
      AddDouble(value.ToDouble());
      break;
    case ValueKind::kString:
      AddDecimal(value.String());
      break;
    default:
      break;
  }
}

void DecimalSum::AddDouble(double number) {
  if (std::abs(number) < kSureAmount) {
    const std::int64_t amount = std::llround(number * kTenThousand);
    if (static_cast<double>(amount) / kTenThousand == number) return AddSmall(amount);
  }
  NumberBuffer text;
  if (std::isfinite(number)) AddDecimal(NumberText(number, text));
}

void DecimalSum::AddSmall(std::int64_t ten_thousandths) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / 2;
  if (std::abs(small_) > kMost || std::abs(ten_thousandths) > kMost) {
    if (limbs_.empty()) limbs_.resize(kLimbs);
    AddSmallTo(limbs_);
    small_ = 0;
  }
  small_ += ten_thousandths;
}

void DecimalSum::AddSmallTo(std::vector<std::int64_t>& limbs) const {
  constexpr std::int64_t kFractionUnit = kLimbBase / kTenThousand;
  const std::int64_t whole = small_ / kTenThousand;
  limbs[kPointLimb - 1] += small_ % kTenThousand * kFractionUnit;
  limbs[kPointLimb] += whole % kLimbBase;
  limbs[kPointLimb + 1] += whole / kLimbBase;
}

void DecimalSum::AddDecimal(std::string_view text) {
  const std::optional<Decimal> number = ParseDecimal(text);
  if (!number || number->IsZero()) return;
  const auto digits = static_cast<std::int64_t>(number->Digits());
  if (number->magnitude > kMostMagnitude || number->magnitude - digits < kLeastPower) return;
  if (limbs_.empty()) limbs_.resize(kLimbs);
  // From the highest digit down; a limb is added when its lowest digit is reached.
  std::int64_t place = number->magnitude - kLeastPower;
  std::int64_t limb = 0;
  for (std::size_t i = 0; i < number->Digits() || place % kLimbDigits != 0; ++i) {
    limb = limb * 10 + number->Digit(i);
    if (--place % kLimbDigits != 0) continue;
    AddToLimb(static_cast<std::size_t>(place / kLimbDigits), number->negative ? -limb : limb);
    limb = 0;
  }
}

void DecimalSum::AddToLimb(std::size_t limb, std::int64_t number) {
  if (++additions_ == kMostAdditions) {
    Carry(limbs_);
    additions_ = 1;
  }
  limbs_[limb] += number;
}

std::string DecimalSum::Text() const {
  std::vector<std::int64_t> limbs = limbs_;
  limbs.resize(kLimbs);
  AddSmallTo(limbs);
  const bool negative = MakeMagnitude(limbs);

  std::string whole;
  std::string fraction;
  for (std::size_t i = kLimbs; i-- > 0;) {
    (i >= kPointLimb ? whole : fraction) += LimbText(limbs[i]);
  }
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
  fraction.erase(fraction.find_last_not_of('0') + 1);
  std::string text = (negative ? "-" : "") + whole;
  if (!fraction.empty()) text += "." + fraction;
  return text;
}

Value DecimalSum::Total() const {
  const std::string text = Text();
  const std::size_t point = text.find('.');
  const bool is_fine = point != std::string::npos && text.size() - point - 1 > kSmallDecimals;
  const std::optional<Currency> amount = is_fine ? std::nullopt : ParseCurrency(text);
  return amount ? Value(*amount) : Value(text);
}

}  // namespace kel
