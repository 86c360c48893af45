// The parts of a condition.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "data/cell_tests.h"

namespace kel {

/// A comparison, or what joins others.
struct ConditionNode {
  enum class Kind { kComparison, kAll, kAny, kNot };

  std::size_t Comparisons() const noexcept;
  bool Matches(const RowStore& rows, RowId row) const;
  /// Answers for the rows of a chunk that are in `wanted`; the others do not match.
  void MatchChunk(const RowStore& rows, std::size_t chunk, const RowMask& wanted,
                  RowMask& matches) const;

  Kind kind = Kind::kComparison;
  std::vector<ConditionNode> parts = {};  // kNot has one
  std::size_t column = 0;
  std::unique_ptr<CellTest> test = nullptr;
};

}  // namespace kel
