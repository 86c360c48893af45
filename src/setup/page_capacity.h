// How many lines and columns a printed page has room for.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace kel {

/// The room that one character takes on paper, in twips: fractions where a pitch makes them.
struct CellSize {
  double width = 0;
  double height = 0;
};

/// In text mode: the pitch that the set's name begins with ("17 cpi"), 10 without one; 6 lines an
/// inch.
CellSize TextModeCell(std::string_view character_set);

struct PageCapacity {
  std::int32_t lines = 0;
  std::int32_t columns = 0;
  bool operator==(const PageCapacity&) const = default;
};

/// The most lines or columns that a 16-bit setting holds.
inline constexpr std::int32_t kMostCells = std::numeric_limits<std::int16_t>::max();

/// The page height in inches that a typed one stands for: 12 when it is empty or zero.
double PageHeightOf(std::string_view typed);

/// The whole cells that fit on a page of so many inches, after an allowance of 0.15 inch in height
/// and 0.5 inch in width. Never negative, nor more than kMostCells.
PageCapacity CapacityOf(double page_height, double page_width, const CellSize& cell);

/// What the setup window says of it.
std::string LinesText(const PageCapacity& capacity);
std::string ColumnsText(const PageCapacity& capacity);

}  // namespace kel
