#include "engine/memory_grid.h"

#include <algorithm>

#include "common/error.h"
#include "common/text_cells.h"

namespace kel {

namespace {

[[noreturn]] void ThrowOutOfRange(std::int32_t row, std::int32_t col) {
  throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range: the grid has no cell [" +
                                                      std::to_string(row) + ", " +
                                                      std::to_string(col) + "]");
}

}  // namespace

void MemoryGrid::AddRow(std::span<const std::string_view> cells) {
  for (const std::string_view text : cells) {
    texts_ += text;
    ends_.push_back(texts_.size());
  }
  row_starts_.push_back(ends_.size());
  cols_ = std::max(cols_, static_cast<std::int32_t>(cells.size()));
}

void MemoryGrid::ColAlignment(std::int32_t col, int alignment) {
  if (col < 0) ThrowOutOfRange(0, col);
  const auto index = static_cast<std::size_t>(col);
  if (index >= alignments_.size()) alignments_.resize(index + 1, kAlignLeft);
  alignments_[index] = alignment;
}

void MemoryGrid::Font(std::int32_t row, std::int32_t col, CellFont font) {
  Text(row, col);
  const auto r = static_cast<std::size_t>(row);
  const auto c = static_cast<std::size_t>(col);
  if (r >= fonts_.size()) fonts_.resize(r + 1);
  if (c >= fonts_[r].size()) fonts_[r].resize(c + 1);
  fonts_[r][c] = font;
}

std::string_view MemoryGrid::Text(std::int32_t row, std::int32_t col) const {
  if (row < 0 || row >= Rows() || col < 0 || col >= cols_) ThrowOutOfRange(row, col);
  const std::size_t start = row_starts_[static_cast<std::size_t>(row)];
  const std::size_t index = start + static_cast<std::size_t>(col);
  if (index >= row_starts_[static_cast<std::size_t>(row) + 1]) return {};
  const std::uint64_t begin = ends_[index - 1];
  return std::string_view(texts_).substr(begin, ends_[index] - begin);
}

bool MemoryGrid::SetRow(std::int32_t row) {
  if (row < 0 || row >= Rows()) ThrowOutOfRange(row, 0);
  row_ = row;
  row_begin_ = row_starts_[static_cast<std::size_t>(row)];
  row_end_ = row_starts_[static_cast<std::size_t>(row) + 1];
  return true;
}

std::string_view MemoryGrid::TextMatrix(std::int32_t row, std::int32_t col) {
  const std::size_t index = row_begin_ + static_cast<std::size_t>(col);
  if (row != row_ || col < 0 || index >= row_end_) return Text(row, col);
  return {texts_.data() + ends_[index - 1], ends_[index] - ends_[index - 1]};
}

std::uint32_t MemoryGrid::CellBackColor() {
  return row_ < fixed_rows_ ? system_color::kButtonFace : system_color::kWindowBackground;
}

CellFont MemoryGrid::Font() {
  const auto row = static_cast<std::size_t>(row_);
  const auto col = static_cast<std::size_t>(col_);
  return row < fonts_.size() && col < fonts_[row].size() ? fonts_[row][col] : CellFont{};
}

int MemoryGrid::ColAlignment(std::int32_t col) {
  const auto index = static_cast<std::size_t>(col);
  return index < alignments_.size() ? alignments_[index] : kAlignLeft;
}

}  // namespace kel
