#include "data/row_store.h"

#include <algorithm>
#include <limits>

#include "common/error.h"

namespace kel {

void ColumnChunk::Append(const CellView& cell) {
  AppendKind(cell.kind);
  switch (cell.kind) {
    case CellView::Kind::kNull:
      break;
    case CellView::Kind::kInteger:
      AppendNumber(cell.integer);
      break;
    case CellView::Kind::kDouble:
      AppendNumber(std::bit_cast<std::int64_t>(cell.number));
      break;
    case CellView::Kind::kText:
    case CellView::Kind::kBinary:
      AppendBytes(cell.bytes);
      break;
  }
  ++rows_;
}

void ColumnChunk::AppendKind(CellView::Kind kind) {
  if (rows_ == 0) uniform_ = kind;
  if (kinds_.empty() && kind == uniform_) return;
  if (kinds_.empty()) kinds_.assign(rows_, uniform_);
  kinds_.push_back(kind);
}

void ColumnChunk::AppendNumber(std::int64_t bits) {
  if (numbers_.size() < rows_) numbers_.resize(rows_);
  numbers_.push_back(bits);
}

void ColumnChunk::AppendBytes(std::string_view bytes) {
  const auto end = static_cast<std::uint32_t>(bytes_.size());
  if (ends_.size() < rows_) ends_.resize(rows_, end);
  if (bytes.size() > kLongText) {
    long_texts_.emplace_back(rows_, bytes);
    ends_.push_back(end);
    return;
  }
  bytes_ += bytes;
  ends_.push_back(static_cast<std::uint32_t>(bytes_.size()));
}

std::string_view ColumnChunk::LongTextAt(std::size_t row) const noexcept {
  const auto found = std::lower_bound(
      long_texts_.begin(), long_texts_.end(), row,
      [](const auto& long_text, std::size_t wanted) { return long_text.first < wanted; });
  if (found == long_texts_.end() || found->first != row) return {};
  return found->second;
}

void ColumnChunk::CutTo(std::size_t rows) noexcept {
  if (kinds_.size() > rows) kinds_.resize(rows);
  if (numbers_.size() > rows) numbers_.resize(rows);
  if (ends_.size() > rows) ends_.resize(rows);
  bytes_.resize(ends_.empty() ? 0 : ends_.back());
  while (!long_texts_.empty() && long_texts_.back().first >= rows) long_texts_.pop_back();
  rows_ = static_cast<std::uint32_t>(rows);
}

void ColumnChunk::Seal() {
  kinds_.shrink_to_fit();
  numbers_.shrink_to_fit();
  ends_.shrink_to_fit();
  bytes_.shrink_to_fit();
  long_texts_.shrink_to_fit();
}

std::size_t ColumnChunk::Memory() const noexcept {
  std::size_t memory = sizeof(*this) + kinds_.capacity() * sizeof(kinds_[0]) +
                       numbers_.capacity() * sizeof(numbers_[0]) +
                       ends_.capacity() * sizeof(ends_[0]) + bytes_.capacity() +
                       long_texts_.capacity() * sizeof(long_texts_[0]);
  for (const auto& long_text : long_texts_) memory += long_text.second.capacity();
  return memory;
}

RowId RowStore::Append(const Statement& statement) {
  return AppendCells([&](std::size_t column) { return statement.Cell(static_cast<int>(column)); });
}

RowId RowStore::Append(std::span<const CellView> row) {
  return AppendCells([&](std::size_t column) -> const CellView& { return row[column]; });
}

template <typename CellOf>
RowId RowStore::AppendCells(CellOf cell_of) {
  if (rows_ > std::numeric_limits<RowId>::max()) {
    throw Error(error_number::kOverflow, "Overflow: too many rows to hold");
  }
  std::vector<ColumnChunk>& chunk = OpenChunk();
  try {
    for (std::size_t column = 0; column < columns_; ++column) chunk[column].Append(cell_of(column));
  } catch (...) {
    // Every column has as many rows as the others.
    for (ColumnChunk& column : chunk) column.CutTo(rows_ % ColumnChunk::kRows);
    throw;
  }
  const auto row = static_cast<RowId>(rows_++);
  // Not before the row is in: its cells may be views into this very chunk.
  if (rows_ % ColumnChunk::kRows == 0) Seal();
  return row;
}

void RowStore::Seal() {
  if (chunks_.empty()) return;
  for (ColumnChunk& column : chunks_.back()) column.Seal();
}

std::vector<ColumnChunk>& RowStore::OpenChunk() {
  if (rows_ == chunks_.size() * ColumnChunk::kRows) chunks_.emplace_back(columns_);
  return chunks_.back();
}

std::size_t RowStore::Memory() const noexcept {
  std::size_t memory = chunks_.capacity() * sizeof(chunks_[0]);
  for (const std::vector<ColumnChunk>& chunk : chunks_) {
    for (const ColumnChunk& column : chunk) memory += column.Memory();
  }
  return memory;
}

}  // namespace kel
