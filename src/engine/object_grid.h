// A caller's flex grid, reached by its published member names.
#pragma once

#include <deque>
#include <string>

#include "common/object.h"
#include "engine/grid_source.h"

namespace kel {

/// Makes a grid source of any object that has the members of a flex grid: Rows, Cols, Parent (with
/// Caption), Visible, HighLight, Row, Col, TextMatrix, CellBackColor, cellfontbold,
/// cellfontunderline and ColAlignment. The object must outlive it.
class ObjectGrid : public GridSource {
 public:
  explicit ObjectGrid(Object& grid);

  std::int32_t LastRow() override { return rows_.Get().ToInt32() - 1; }
  std::int32_t LastCol() override { return cols_.Get().ToInt32() - 1; }
  std::string Caption() override;
  void SetVisible(bool visible) override { visible_.Put(visible); }
  void SetHighLight(int high_light) override { high_light_.Put(high_light); }
  bool SetRow(std::int32_t row) override;
  void SetCol(std::int32_t col) override { col_.Put(col); }
  std::uint32_t CellBackColor() override;
  CellFont Font() override;
  std::string_view TextMatrix(std::int32_t row, std::int32_t col) override;
  int ColAlignment(std::int32_t col) override;

 private:
  Member rows_;
  Member cols_;
  Member parent_;
  Member visible_;
  Member high_light_;
  Member row_;
  Member col_;
  Member text_matrix_;
  Member cell_back_color_;
  Member cell_font_bold_;
  Member cell_font_underline_;
  Member col_alignment_;
  std::deque<std::string> texts_;  // of the current row, by column; growing moves no text
};

}  // namespace kel
