#include <algorithm>
#include <cstring>
#include <memory>

#include "data/condition.h"
#include "data/condition_node.h"

namespace kel {
namespace {

bool IsEmpty(const RowMask& mask, std::size_t rows) {
  return std::memchr(mask.data(), 1, rows) == nullptr;
}

void MatchAllParts(const ConditionNode& node, const RowStore& rows, std::size_t chunk,
                   const RowMask& wanted, RowMask& matches) {
  const std::size_t count = rows.Chunk(chunk, 0).Rows();
  const auto left = std::make_unique<RowMask>(wanted);
  for (const ConditionNode& part : node.parts) {
    part.MatchChunk(rows, chunk, *left, matches);
    if (IsEmpty(matches, count)) return;
    *left = matches;
  }
}

void MatchAnyPart(const ConditionNode& node, const RowStore& rows, std::size_t chunk,
                  const RowMask& wanted, RowMask& matches) {
  const std::size_t count = rows.Chunk(chunk, 0).Rows();
  const auto left = std::make_unique<RowMask>(wanted);
  const auto found = std::make_unique<RowMask>();
  matches.fill(0);
  for (const ConditionNode& part : node.parts) {
    part.MatchChunk(rows, chunk, *left, *found);
    for (std::size_t row = 0; row < count; ++row) {
      matches[row] = matches[row] | (*found)[row];
      (*left)[row] = static_cast<std::uint8_t>((*left)[row] & ((*found)[row] ^ 1U));
    }
    if (IsEmpty(*left, count)) return;
  }
}

}  // namespace

std::vector<std::uint8_t> Condition::MatchAll(const RowStore& rows) const {
  std::vector<std::uint8_t> all(rows.Rows());
  const auto wanted = std::make_unique<RowMask>();
  const auto matches = std::make_unique<RowMask>();
  wanted->fill(1);
  for (std::size_t chunk = 0; chunk < rows.Chunks(); ++chunk) {
    root_->MatchChunk(rows, chunk, *wanted, *matches);
    std::copy_n(matches->begin(), rows.Chunk(chunk, 0).Rows(),
                all.begin() + static_cast<std::ptrdiff_t>(chunk * ColumnChunk::kRows));
  }
  return all;
}

bool Condition::Matches(const RowStore& rows, RowId row) const { return root_->Matches(rows, row); }

std::size_t Condition::Comparisons() const noexcept { return root_->Comparisons(); }

std::size_t ConditionNode::Comparisons() const noexcept {
  if (kind == Kind::kComparison) return 1;
  std::size_t comparisons = 0;
  for (const ConditionNode& part : parts) comparisons += part.Comparisons();
  return comparisons;
}

bool ConditionNode::Matches(const RowStore& rows, RowId row) const {
  const auto matches = [&](const ConditionNode& part) { return part.Matches(rows, row); };
  switch (kind) {
    case Kind::kComparison:
      return test->Matches(rows.Cell(row, column));
    case Kind::kAll:
      return std::all_of(parts.begin(), parts.end(), matches);
    case Kind::kAny:
      return std::any_of(parts.begin(), parts.end(), matches);
    case Kind::kNot:
      return !matches(parts[0]);
  }
  return false;
}

void ConditionNode::MatchChunk(const RowStore& rows, std::size_t chunk, const RowMask& wanted,
                               RowMask& matches) const {
  switch (kind) {
    case Kind::kComparison:
      test->MatchChunk(rows.Chunk(chunk, column), wanted, matches);
      break;
    case Kind::kAll:
      MatchAllParts(*this, rows, chunk, wanted, matches);
      break;
    case Kind::kAny:
      MatchAnyPart(*this, rows, chunk, wanted, matches);
      break;
    case Kind::kNot:
      parts[0].MatchChunk(rows, chunk, wanted, matches);
      for (std::size_t row = 0; row < rows.Chunk(chunk, column).Rows(); ++row) {
        matches[row] = static_cast<std::uint8_t>(wanted[row] & (matches[row] ^ 1U));
      }
      break;
  }
}

}  // namespace kel
