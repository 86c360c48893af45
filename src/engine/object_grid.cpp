#include "engine/object_grid.h"

#include <array>
#include <cmath>

#include "common/error.h"

namespace kel {

ObjectGrid::ObjectGrid(Object& grid)
    : rows_(grid, "Rows"),
      cols_(grid, "Cols"),
      parent_(grid, "Parent"),
      visible_(grid, "Visible"),
      high_light_(grid, "HighLight"),
      row_(grid, "Row"),
      col_(grid, "Col"),
      text_matrix_(grid, "TextMatrix"),
      cell_back_color_(grid, "CellBackColor"),
      cell_font_bold_(grid, "cellfontbold"),
      cell_font_underline_(grid, "cellfontunderline"),
      col_alignment_(grid, "ColAlignment") {}

std::string ObjectGrid::Caption() {
  const Value parent = parent_.Get();
  return Member(parent.ToObject(), "Caption").Get().ToText();
}

bool ObjectGrid::SetRow(std::int32_t row) {
  row_.Put(row);
  return true;
}

std::uint32_t ObjectGrid::CellBackColor() {
  // Automation hands the colour out as a signed number: &H8000000F is negative there.
  constexpr double kSignedRange = 4294967296.0;
  const double colour = cell_back_color_.Get().ToDouble();
  if (!(std::fabs(colour) < kSignedRange)) {
    throw Error(error_number::kOverflow, "Overflow: CellBackColor is no colour");
  }
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(colour));
}

CellFont ObjectGrid::Font() {
  CellFont font;
  font.bold = cell_font_bold_.Get().ToBoolean();
  font.underline = cell_font_underline_.Get().ToBoolean();
  return font;
}

std::string_view ObjectGrid::TextMatrix(std::int32_t row, std::int32_t col) {
  if (col < 0) throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range");
  const auto index = static_cast<std::size_t>(col);
  if (index >= texts_.size()) texts_.resize(index + 1);
  const std::array<Value, 2> indexes = {row, col};
  texts_[index] = text_matrix_.Get(indexes).ToText();
  return texts_[index];
}

int ObjectGrid::ColAlignment(std::int32_t col) {
  const std::array<Value, 1> indexes = {col};
  return col_alignment_.Get(indexes).ToInt32();
}

}  // namespace kel
