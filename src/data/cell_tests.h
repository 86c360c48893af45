// What one comparison of a condition asks of a cell.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "common/value.h"
#include "data/decimal.h"
#include "data/driver.h"
#include "data/row_store.h"

namespace kel {

enum class ComparisonOperator { kEqual, kNotEqual, kLess, kLessOrEqual, kGreater, kGreaterOrEqual };

/// A byte for each row of a chunk: 1 where it is meant.
using RowMask = std::array<std::uint8_t, ColumnChunk::kRows>;

/// A question to the cells of one column. Except where it is asked about Null itself, the answer
/// for Null is no.
class CellTest {
 public:
  virtual ~CellTest() = default;

  virtual bool Matches(const CellView& cell) const = 0;
  /// Answers for the rows in `wanted`, the others do not match. The same as Matches, faster.
  virtual void MatchChunk(const ColumnChunk& chunk, const RowMask& wanted,
                          RowMask& matches) const = 0;
};

std::unique_ptr<CellTest> NullTest(bool is_null);

/// By value. A text that is no number is not equal to one, and above all.
std::unique_ptr<CellTest> NumberTest(ComparisonOperator comparison, const Decimal& number);

/// By the moment. A cell that is no date is not equal to one, and above all.
std::unique_ptr<CellTest> DateTest(ComparisonOperator comparison, Date date);

/// Numbers other than 0 and the texts "True" are true.
std::unique_ptr<CellTest> TruthTest(bool equal, bool truth);

/// Without regard to case; a number in a text's field is compared as its text.
std::unique_ptr<CellTest> TextTest(ComparisonOperator comparison, std::string_view text);

/// Of a cell's text as a recordset shows it. Without regard to case; * and % stand for any run of
/// characters, ? and _ for one.
std::unique_ptr<CellTest> LikeTest(std::string_view pattern, FieldType type);

/// Asks each wanted row of a chunk; `matches_row` takes a row's place in the chunk.
template <typename MatchesRow>
void MatchWanted(const ColumnChunk& chunk, const RowMask& wanted, RowMask& matches,
                 const MatchesRow& matches_row) {
  for (std::size_t row = 0; row < chunk.Rows(); ++row) {
    matches[row] = wanted[row] != 0 && matches_row(row) ? 1 : 0;
  }
}

}  // namespace kel
