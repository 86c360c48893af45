#include "data/cell_tests.h"

#include <cmath>
#include <limits>
#include <optional>

#include "data/cell_order.h"
#include "data/folded_text.h"

namespace kel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// All values from `low` to `high`, or all but these.
template <typename Number>
struct Range {
  /// Without a branch, so that many rows are compared at once.
  bool Holds(Number number) const noexcept {
    const unsigned is_within = static_cast<unsigned>(number >= low) & (number <= high ? 1U : 0U);
    return is_within != static_cast<unsigned>(is_inverted);
  }

  Number low;
  Number high;
  bool is_inverted = false;
};

/// Whether `comparison` is true for a value that is above (below 0: below) the literal.
bool HoldsFor(ComparisonOperator comparison, int order) noexcept {
  switch (comparison) {
    case ComparisonOperator::kEqual:
      return order == 0;
    case ComparisonOperator::kNotEqual:
      return order != 0;
    case ComparisonOperator::kLess:
      return order < 0;
    case ComparisonOperator::kLessOrEqual:
      return order <= 0;
    case ComparisonOperator::kGreater:
      return order > 0;
    case ComparisonOperator::kGreaterOrEqual:
      return order >= 0;
  }
  return false;
}

class Nulls : public CellTest {
 public:
  explicit Nulls(bool wanted) : wanted_(wanted) {}

  bool Matches(const CellView& cell) const override { return cell.IsNull() == wanted_; }
  void MatchChunk(const ColumnChunk& chunk, const RowMask& wanted,
                  RowMask& matches) const override {
    MatchWanted(chunk, wanted, matches, [&](std::size_t row) {
      return (chunk.KindOf(row) == CellView::Kind::kNull) == wanted_;
    });
  }

 private:
  bool wanted_;
};

/// A number as the integer at or below it.
struct Whole {
  std::int64_t floor = 0;
  bool is_exact = false;
  int beyond = 0;  // -1 and 1: below and above all integers of 64 bits
};

Whole WholeOf(const Decimal& number) noexcept {
  constexpr std::int64_t kMostDigits = 19;
  constexpr std::uint64_t kLimit = std::uint64_t{1} << 63;
  if (number.magnitude > kMostDigits) return {0, false, number.negative ? -1 : 1};
  if (number.magnitude <= 0) return {number.negative ? -1 : 0, number.IsZero()};
  const auto digits = static_cast<std::size_t>(number.magnitude);
  std::uint64_t whole = 0;
  for (std::size_t i = 0; i < digits; ++i) {
    whole = whole * 10 + static_cast<std::uint64_t>(number.Digit(i));
  }
  const bool is_exact = number.Digits() <= digits;
  if (!number.negative) {
    if (whole >= kLimit) return {0, false, 1};
    return {static_cast<std::int64_t>(whole), is_exact};
  }
  if (!is_exact) ++whole;
  if (whole > kLimit) return {0, false, -1};
  return {static_cast<std::int64_t>(0 - whole), is_exact};
}

Range<std::int64_t> IntegerRange(ComparisonOperator comparison, const Whole& literal) noexcept {
  constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  constexpr Range<std::int64_t> kAll{kLeast, kMost};
  constexpr Range<std::int64_t> kNone{kMost, kLeast};
  const auto [floor, is_exact, beyond] = literal;
  if (beyond != 0) return HoldsFor(comparison, -beyond) ? kAll : kNone;
  const Range<std::int64_t> above = floor == kMost ? kNone : Range<std::int64_t>{floor + 1, kMost};
  const Range<std::int64_t> below =
      floor == kLeast ? kNone : Range<std::int64_t>{kLeast, floor - 1};
  switch (comparison) {
    case ComparisonOperator::kEqual:
      return is_exact ? Range<std::int64_t>{floor, floor} : kNone;
    case ComparisonOperator::kNotEqual:
      return is_exact ? Range<std::int64_t>{floor, floor, true} : kAll;
    case ComparisonOperator::kLess:
      return is_exact ? below : Range<std::int64_t>{kLeast, floor};
    case ComparisonOperator::kLessOrEqual:
      return {kLeast, floor};
    case ComparisonOperator::kGreater:
      return above;
    case ComparisonOperator::kGreaterOrEqual:
      return is_exact ? Range<std::int64_t>{floor, kMost} : above;
  }
  return kNone;
}

Range<double> DoubleRange(ComparisonOperator comparison, double literal) noexcept {
  switch (comparison) {
    case ComparisonOperator::kEqual:
      return {literal, literal};
    case ComparisonOperator::kNotEqual:
      return {literal, literal, true};
    case ComparisonOperator::kLess:
      return {-kInfinity, std::nextafter(literal, -kInfinity)};
    case ComparisonOperator::kLessOrEqual:
      return {-kInfinity, literal};
    case ComparisonOperator::kGreater:
      return {std::nextafter(literal, kInfinity), kInfinity};
    case ComparisonOperator::kGreaterOrEqual:
      return {literal, kInfinity};
  }
  return {literal, literal};
}

class Numbers : public CellTest {
 public:
  Numbers(ComparisonOperator comparison, const Decimal& literal)
      : comparison_(comparison),
        digits_(std::string(literal.whole).append(literal.fraction)),
        literal_{literal.negative, literal.magnitude, digits_, {}},
        integers_(IntegerRange(comparison, WholeOf(literal))),
        doubles_(DoubleRange(comparison, NearestDouble(literal))) {}
  // `literal_` looks at `digits_`.
  Numbers(const Numbers&) = delete;
  Numbers& operator=(const Numbers&) = delete;

  bool Matches(const CellView& cell) const override {
    switch (cell.kind) {
      case CellView::Kind::kNull:
        return false;
      case CellView::Kind::kInteger:
        return integers_.Holds(cell.integer);
      case CellView::Kind::kDouble:
        return doubles_.Holds(cell.number);
      case CellView::Kind::kText:
        if (const auto number = ParseDecimal(cell.bytes)) {
          return HoldsFor(comparison_, CompareDecimals(*number, literal_));
        }
        break;
      case CellView::Kind::kBinary:
        break;
    }
    return HoldsFor(comparison_, 1);
  }

  void MatchChunk(const ColumnChunk& chunk, const RowMask& wanted,
                  RowMask& matches) const override {
    const bool is_uniform = chunk.IsUniform();
    if (is_uniform && chunk.KindOf(0) == CellView::Kind::kInteger) {
      MatchRange(chunk, wanted, matches, integers_,
                 [&](std::size_t row) { return chunk.IntegerAt(row); });
    } else if (is_uniform && chunk.KindOf(0) == CellView::Kind::kDouble) {
      MatchRange(chunk, wanted, matches, doubles_,
                 [&](std::size_t row) { return chunk.DoubleAt(row); });
    } else {
      MatchWanted(chunk, wanted, matches,
                  [&](std::size_t row) { return Matches(chunk.Cell(row)); });
    }
  }

 private:
  template <typename Number, typename NumberAt>
  static void MatchRange(const ColumnChunk& chunk, const RowMask& wanted, RowMask& matches,
                         const Range<Number> range, const NumberAt& number_at) {
    const std::size_t rows = chunk.Rows();
    for (std::size_t row = 0; row < rows; ++row) {
      const unsigned holds = range.Holds(number_at(row)) ? 1 : 0;
      matches[row] = static_cast<std::uint8_t>(wanted[row] & holds);
    }
  }

  ComparisonOperator comparison_;
  std::string digits_;
  Decimal literal_;
  Range<std::int64_t> integers_;
  Range<double> doubles_;
};

class Dates : public CellTest {
 public:
  Dates(ComparisonOperator comparison, std::int64_t milliseconds)
      : comparison_(comparison), range_(IntegerRange(comparison, Whole{milliseconds, true})) {}

  bool Matches(const CellView& cell) const override {
    if (cell.IsNull()) return false;
    const std::optional<ExactNumber> moment = NumberOf(cell, CellDomain::kDate);
    return moment ? range_.Holds(moment->integer) : HoldsFor(comparison_, 1);
  }
  void MatchChunk(const ColumnChunk& chunk, const RowMask& wanted,
                  RowMask& matches) const override {
    MatchWanted(chunk, wanted, matches, [&](std::size_t row) { return Matches(chunk.Cell(row)); });
  }

 private:
  ComparisonOperator comparison_;
  Range<std::int64_t> range_;
};

class Truths : public CellTest {
 public:
  Truths(bool equal, bool truth) : equal_(equal), truth_(truth) {}

  bool Matches(const CellView& cell) const override {
    if (cell.IsNull()) return false;
    const std::optional<bool> truth = TruthOf(cell);
    return (truth == truth_) == equal_;
  }
  void MatchChunk(const ColumnChunk& chunk, const RowMask& wanted,
                  RowMask& matches) const override {
    MatchWanted(chunk, wanted, matches, [&](std::size_t row) { return Matches(chunk.Cell(row)); });
  }

 private:
  static std::optional<bool> TruthOf(const CellView& cell) noexcept {
    if (cell.kind == CellView::Kind::kInteger) return cell.integer != 0;
    if (cell.kind == CellView::Kind::kDouble) return cell.number != 0;
    if (CompareFolded(cell.bytes, "true") == 0) return true;
    if (CompareFolded(cell.bytes, "false") == 0) return false;
    const std::optional<Decimal> number = ParseDecimal(cell.bytes);
    return number ? std::optional(!number->IsZero()) : std::nullopt;
  }

  bool equal_;
  bool truth_;
};

}  // namespace

std::unique_ptr<CellTest> NullTest(bool is_null) { return std::make_unique<Nulls>(is_null); }

std::unique_ptr<CellTest> NumberTest(ComparisonOperator comparison, const Decimal& number) {
  return std::make_unique<Numbers>(comparison, number);
}

std::unique_ptr<CellTest> DateTest(ComparisonOperator comparison, Date date) {
  return std::make_unique<Dates>(comparison, MillisecondsOf(date));
}

std::unique_ptr<CellTest> TruthTest(bool equal, bool truth) {
  return std::make_unique<Truths>(equal, truth);
}

}  // namespace kel
