#include "engine/column_widths.h"

#include <algorithm>

namespace kel {

void ColumnWidths::Measure(std::size_t column, std::string_view text) {
  Cells& width = widths_[column];
  if (width == widest_) return;
  // One cell more than counts: a grapheme of two cells may not fit the last one.
  const Cells cells =
      IsPlain(text) ? static_cast<Cells>(std::min(text.size(), static_cast<std::size_t>(widest_)))
                    : FitCells(CleanText(text), widest_ + 1).cells;
  width = std::max(width, std::min(cells, widest_));
}

}  // namespace kel
