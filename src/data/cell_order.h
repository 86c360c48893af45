// How the cells of one column stand to each other.
#pragma once

#include <cstdint>
#include <optional>

#include "common/value.h"
#include "data/decimal.h"
#include "data/driver.h"

namespace kel {

/// What the cells of a field are compared as.
enum class CellDomain { kNumber, kDate, kBoolean, kText };

CellDomain DomainOf(FieldType type) noexcept;

/// A number in the form that holds it exactly. A double is the shortest decimal text that reads
/// back as it.
struct ExactNumber {
  enum class Kind { kInteger, kDouble, kDecimal };

  Kind kind = Kind::kInteger;
  std::int64_t integer = 0;
  double number = 0;
  Decimal decimal = {};
};

/// The number that a cell of a number, date or boolean field is: for dates, milliseconds since
/// 1899-12-30. Nothing for Null and for what no such number can be read from.
std::optional<ExactNumber> NumberOf(const CellView& cell, CellDomain domain) noexcept;

/// A date in milliseconds since 1899-12-30, in the order of time.
std::int64_t MillisecondsOf(Date date) noexcept;

/// Below, equal to or above 0. What is not a number is below all that are.
int CompareNumbers(const ExactNumber& left, const ExactNumber& right) noexcept;

/// The kinds that stand one behind the other in a column.
enum class CellRank { kNull, kNumber, kText, kBinary };

CellRank RankOf(const CellView& cell, CellDomain domain) noexcept;

/// Below, equal to or above 0 as a Sort has them: Null, numbers and dates by value, texts without
/// regard to case, binary by its bytes. A text that is no number stays a text in a number's field.
int CompareCells(const CellView& left, const CellView& right, CellDomain domain) noexcept;

}  // namespace kel
