// A cell that keeps its bytes.
#pragma once

#include <string>

#include "data/driver.h"

namespace kel {

class HeldCell {
 public:
  HeldCell() = default;
  explicit HeldCell(const CellView& cell)
      : kind_(cell.kind), integer_(cell.integer), number_(cell.number), bytes_(cell.bytes) {}
  explicit HeldCell(std::string text) : kind_(CellView::Kind::kText), bytes_(std::move(text)) {}

  /// Good as long as the held cell stays where it is.
  CellView View() const noexcept { return {kind_, integer_, number_, bytes_}; }

 private:
  CellView::Kind kind_ = CellView::Kind::kNull;
  std::int64_t integer_ = 0;
  double number_ = 0;
  std::string bytes_;
};

}  // namespace kel
