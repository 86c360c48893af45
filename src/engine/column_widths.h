// Column widths found from the texts that stand in the columns.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "common/text_cells.h"

namespace kel {

/// The widths that hold every text measured so far, at least 1 and at most `widest` cells each.
class ColumnWidths {
 public:
  ColumnWidths(std::size_t columns, Cells widest) : widest_(widest), widths_(columns, 1) {}

  /// REQUIRES column < the number of columns.
  void Measure(std::size_t column, std::string_view text);
  const std::vector<Cells>& Widths() const { return widths_; }

 private:
  Cells widest_;
  std::vector<Cells> widths_;
};

}  // namespace kel
