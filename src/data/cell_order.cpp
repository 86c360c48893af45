#include "data/cell_order.h"

#include <algorithm>
#include <cmath>

#include "common/number_text.h"
#include "data/field_value.h"
#include "data/folded_text.h"

namespace kel {
namespace {

constexpr double kMillisecondsPerDay = 86'400'000;
constexpr double kLastMillisecond = 9e18;
// Every integer up to here is a double.
constexpr std::int64_t kExactInteger = std::int64_t{1} << 53;

template <typename Number>
int Compare(Number left, Number right) noexcept {
  return left < right ? -1 : (right < left ? 1 : 0);
}

bool IsExactAsDouble(const ExactNumber& number) noexcept {
  return number.kind == ExactNumber::Kind::kDouble ||
         (number.kind == ExactNumber::Kind::kInteger && number.integer <= kExactInteger &&
          number.integer >= -kExactInteger);
}

double AsDouble(const ExactNumber& number) noexcept {
  return number.kind == ExactNumber::Kind::kInteger ? static_cast<double>(number.integer)
                                                    : number.number;
}

bool IsFinite(const ExactNumber& number) noexcept {
  return number.kind != ExactNumber::Kind::kDouble || std::isfinite(number.number);
}

/// -2 for what is not a number, -1 and 1 for the infinite, 0 for the others.
int Extremity(const ExactNumber& number) noexcept {
  if (IsFinite(number)) return 0;
  if (std::isnan(number.number)) return -2;
  return number.number < 0 ? -1 : 1;
}

/// `buffer` holds the digits of a number that is not decimal already.
Decimal DecimalOf(const ExactNumber& number, NumberBuffer& buffer) noexcept {
  if (number.kind == ExactNumber::Kind::kDecimal) return number.decimal;
  const std::string_view text = number.kind == ExactNumber::Kind::kInteger
                                    ? NumberText(number.integer, buffer)
                                    : NumberText(number.number, buffer);
  return ParseDecimal(text).value_or(Decimal{});
}

std::optional<ExactNumber> DateNumber(const CellView& cell) noexcept {
  std::optional<Date> date;
  if (cell.kind == CellView::Kind::kText) date = ParseIsoDate(cell.bytes);
  if (cell.kind == CellView::Kind::kInteger) date = Date{static_cast<double>(cell.integer)};
  if (cell.kind == CellView::Kind::kDouble) date = Date{cell.number};
  if (!date || std::isnan(date->days)) return std::nullopt;
  return ExactNumber{ExactNumber::Kind::kInteger, MillisecondsOf(*date)};
}

}  // namespace

CellDomain DomainOf(FieldType type) noexcept {
  if (IsNumericType(type)) return CellDomain::kNumber;
  if (type == FieldType::kDate) return CellDomain::kDate;
  return type == FieldType::kBoolean ? CellDomain::kBoolean : CellDomain::kText;
}

std::optional<ExactNumber> NumberOf(const CellView& cell, CellDomain domain) noexcept {
  if (domain == CellDomain::kDate) return DateNumber(cell);
  switch (cell.kind) {
    case CellView::Kind::kInteger:
      return ExactNumber{ExactNumber::Kind::kInteger, cell.integer};
    case CellView::Kind::kDouble:
      return ExactNumber{ExactNumber::Kind::kDouble, 0, cell.number};
    case CellView::Kind::kText:
      if (domain != CellDomain::kText) {
        const std::optional<Decimal> decimal = ParseDecimal(cell.bytes);
        if (decimal) return ExactNumber{ExactNumber::Kind::kDecimal, 0, 0, *decimal};
      }
      return std::nullopt;
    case CellView::Kind::kNull:
    case CellView::Kind::kBinary:
      return std::nullopt;
  }
  return std::nullopt;
}

std::int64_t MillisecondsOf(Date date) noexcept {
  // Before 1899-12-30 the whole days count backwards, but the time of day still counts forwards.
  const double whole = std::trunc(date.days);
  const double milliseconds =
      whole * kMillisecondsPerDay + std::abs(date.days - whole) * kMillisecondsPerDay;
  return std::llround(std::clamp(milliseconds, -kLastMillisecond, kLastMillisecond));
}

int CompareNumbers(const ExactNumber& left, const ExactNumber& right) noexcept {
  if (!IsFinite(left) || !IsFinite(right)) return Compare(Extremity(left), Extremity(right));
  if (left.kind == ExactNumber::Kind::kInteger && right.kind == ExactNumber::Kind::kInteger) {
    return Compare(left.integer, right.integer);
  }
  if (IsExactAsDouble(left) && IsExactAsDouble(right)) {
    return Compare(AsDouble(left), AsDouble(right));
  }
  NumberBuffer left_digits;
  NumberBuffer right_digits;
  return CompareDecimals(DecimalOf(left, left_digits), DecimalOf(right, right_digits));
}

CellRank RankOf(const CellView& cell, CellDomain domain) noexcept {
  if (cell.IsNull()) return CellRank::kNull;
  if (cell.kind == CellView::Kind::kBinary) return CellRank::kBinary;
  return NumberOf(cell, domain) ? CellRank::kNumber : CellRank::kText;
}

int CompareCells(const CellView& left, const CellView& right, CellDomain domain) noexcept {
  const CellRank left_rank = RankOf(left, domain);
  const CellRank right_rank = RankOf(right, domain);
  if (left_rank != right_rank) return Compare(left_rank, right_rank);
  switch (left_rank) {
    case CellRank::kNull:
      return 0;
    case CellRank::kNumber:
      return CompareNumbers(*NumberOf(left, domain), *NumberOf(right, domain));
    case CellRank::kText:
      return CompareFolded(left.bytes, right.bytes);
    case CellRank::kBinary:
      return left.bytes.compare(right.bytes);
  }
  return 0;
}

}  // namespace kel
