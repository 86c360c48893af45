#include "export/line_cells.h"

#include <algorithm>

namespace kel {
namespace {

constexpr Cells kDividerWidth = 1;

std::string_view TrimEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// What `room` cells hold. A character without a width that stands behind them is the next cell's.
TextPiece FitRoom(std::string_view text, Cells room) {
  if (room <= 0) return {};
  TextPiece piece = FitCells(text, room - 1);
  if (piece.bytes == text.size()) return piece;
  const TextPiece last = FirstGrapheme(text.substr(piece.bytes));
  if (piece.cells + last.cells > room) return piece;
  return {piece.bytes + last.bytes, piece.cells + last.cells};
}

}  // namespace

LineCells::LineCells(std::span<const ReportColumn> columns, Cells left_margin)
    : left_margin_(std::max<Cells>(left_margin, 0)) {
  for (const ReportColumn& column : columns) widths_.push_back(column.width + kDividerWidth);
  cells_.resize(std::max<std::size_t>(widths_.size(), 1));
}

std::span<const std::string_view> LineCells::Cut(std::string_view line) {
  std::string_view left = TrimEnd(line);
  // A wide grapheme on the border of two columns belongs to the second; the columns behind it stay
  // where they are all the same.
  Cells done = 0;
  const TextPiece margin = FitRoom(left, left_margin_);
  if (margin.bytes < left.size()) {
    left.remove_prefix(margin.bytes);
    done = margin.cells - left_margin_;
  }
  if (widths_.empty()) {
    cells_.front() = left;
    rest_ = {};
    return cells_;
  }
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    const Cells room = widths_[i] - done;
    const TextPiece piece = FitRoom(left, room);
    done = piece.cells - room;
    cells_[i] = TrimEnd(left.substr(0, piece.bytes));
    left.remove_prefix(piece.bytes);
  }
  rest_ = left;
  return cells_;
}

}  // namespace kel
