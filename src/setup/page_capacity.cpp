#include "setup/page_capacity.h"

#include <algorithm>
#include <cmath>

#include "common/numeric_value.h"

namespace kel {
namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kTextModeLine = 240;  // 6 lines an inch
constexpr double kUsualPitch = 10;     // characters per inch
constexpr double kUsualHeight = 12;    // inches
constexpr double kHeightAllowance = 0.15;
constexpr double kWidthAllowance = 0.5;

// The room is taken in whole twips, and a hair more of them, or binary fractions of an inch would
// now and then cost the last cell.
std::int32_t CellsIn(double inches, double cell) {
  constexpr double kHair = 1e-6;
  const double room = std::nearbyint(inches * kTwipsPerInch) + kHair;
  return static_cast<std::int32_t>(
      std::clamp(std::floor(room / std::max(cell, 1.)), 0., double{kMostCells}));
}

}  // namespace

CellSize TextModeCell(std::string_view character_set) {
  const double named = ExVal(character_set);
  const double pitch = named > 0 ? named : kUsualPitch;
  return {std::clamp(kTwipsPerInch / pitch, 1., kTwipsPerInch), kTextModeLine};
}

double PageHeightOf(std::string_view typed) {
  const double height = ExVal(typed);
  return height == 0 ? kUsualHeight : height;
}

PageCapacity CapacityOf(double page_height, double page_width, const CellSize& cell) {
  return {CellsIn(page_height - kHeightAllowance, cell.height),
          CellsIn(page_width - kWidthAllowance, cell.width)};
}

std::string LinesText(const PageCapacity& capacity) {
  return "Total Number Of Lines Supported : " + std::to_string(capacity.lines);
}

std::string ColumnsText(const PageCapacity& capacity) {
  return "Total Number Of Columns Supported : " + std::to_string(capacity.columns) + " (char.)";
}

}  // namespace kel
