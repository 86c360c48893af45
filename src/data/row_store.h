// Rows of a statement, packed by column.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/driver.h"

namespace kel {

/// The number of a stored row, from 0 in the order of storing.
using RowId = std::uint32_t;

/// One column of up to kRows rows. Numbers take 8 bytes, a text its bytes and 4 more; a kind per
/// cell is kept only where the kinds differ.
class ColumnChunk {
 public:
  static constexpr std::size_t kRows = 4096;

  void Append(const CellView& cell);
  /// Drops the rows behind the first `rows`.
  void CutTo(std::size_t rows) noexcept;
  /// Gives back what memory appending has taken too much.
  void Seal();

  std::size_t Rows() const noexcept { return rows_; }
  /// True when all cells are of one kind, that of KindOf(0).
  bool IsUniform() const noexcept { return kinds_.empty(); }
  CellView::Kind KindOf(std::size_t row) const noexcept {
    return kinds_.empty() ? uniform_ : kinds_[row];
  }
  CellView Cell(std::size_t row) const noexcept;
  /// REQUIRES KindOf(row) == kInteger.
  std::int64_t IntegerAt(std::size_t row) const noexcept { return numbers_[row]; }
  /// REQUIRES KindOf(row) == kDouble.
  double DoubleAt(std::size_t row) const noexcept { return std::bit_cast<double>(numbers_[row]); }
  /// REQUIRES KindOf(row) == kText or kBinary.
  std::string_view BytesAt(std::size_t row) const noexcept;

  /// Bytes of memory that the chunk takes.
  std::size_t Memory() const noexcept;

 private:
  // A longer text lies on its own, so that 32 bits hold every end within a chunk.
  static constexpr std::size_t kLongText = std::size_t{256} * 1024;

  void AppendKind(CellView::Kind kind);
  void AppendNumber(std::int64_t bits);
  void AppendBytes(std::string_view bytes);
  std::string_view LongTextAt(std::size_t row) const noexcept;

  std::uint32_t rows_ = 0;
  CellView::Kind uniform_ = CellView::Kind::kNull;
  std::vector<CellView::Kind> kinds_;  // empty while all are `uniform_`
  // Of every row up to the last that holds such a cell: integers and the bits of doubles, and
  // where the texts end in `bytes_`.
  std::vector<std::int64_t> numbers_;
  std::vector<std::uint32_t> ends_;
  std::string bytes_;
  std::vector<std::pair<std::uint32_t, std::string>> long_texts_;  // by row, in order
};

inline std::string_view ColumnChunk::BytesAt(std::size_t row) const noexcept {
  const std::uint32_t begin = row == 0 ? 0 : ends_[row - 1];
  const std::uint32_t size = ends_[row] - begin;
  if (size == 0 && !long_texts_.empty()) return LongTextAt(row);
  return {bytes_.data() + begin, size};
}

inline CellView ColumnChunk::Cell(std::size_t row) const noexcept {
  const CellView::Kind kind = KindOf(row);
  switch (kind) {
    case CellView::Kind::kNull:
      return {};
    case CellView::Kind::kInteger:
      return CellView::Integer(IntegerAt(row));
    case CellView::Kind::kDouble:
      return CellView::Double(DoubleAt(row));
    case CellView::Kind::kText:
    case CellView::Kind::kBinary:
      return {kind, 0, 0, BytesAt(row)};
  }
  return {};
}

/// The rows of a statement, held in memory. A view of a cell's bytes is good until the next Append
/// or Seal.
class RowStore {
 public:
  explicit RowStore(std::size_t columns) : columns_(columns) {}

  /// Takes the statement's current row; the statement has the store's columns. When it fails the
  /// store is as before. Throws Error 6 for more rows than RowId counts.
  RowId Append(const Statement& statement);
  RowId Append(std::span<const CellView> row);
  /// Call it when no more rows are to come soon.
  void Seal();

  std::size_t Columns() const noexcept { return columns_; }
  std::size_t Rows() const noexcept { return rows_; }
  CellView Cell(RowId row, std::size_t column) const noexcept {
    return Chunk(row / ColumnChunk::kRows, column).Cell(row % ColumnChunk::kRows);
  }

  /// Chunks hold the rows from index * kRows on; all columns of one index have the same rows.
  std::size_t Chunks() const noexcept { return chunks_.size(); }
  const ColumnChunk& Chunk(std::size_t index, std::size_t column) const noexcept {
    return chunks_[index][column];
  }

  /// Bytes of memory that the rows take.
  std::size_t Memory() const noexcept;

 private:
  template <typename CellOf>
  RowId AppendCells(CellOf cell_of);
  /// The chunk that takes the next row, as one ColumnChunk for each column.
  std::vector<ColumnChunk>& OpenChunk();

  std::size_t columns_;
  std::size_t rows_ = 0;
  std::vector<std::vector<ColumnChunk>> chunks_;
};

}  // namespace kel
