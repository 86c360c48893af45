// The rows of a statement as a grid, streamed.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_cells.h"
#include "data/Recordset.h"
#include "engine/grid_source.h"

namespace kel {

/// Row 0 holds the field names and is the fixed heading row; the records follow from row 1.
/// Numeric fields are right-aligned, all others left-aligned. One record is held at a time, so a
/// report over ten million rows takes the memory of one. The recordset must stand on its first
/// record and outlive the grid.
class RecordsetGrid : public GridSource {
 public:
  RecordsetGrid(Recordset& records, std::string caption);

  /// Column widths that hold the headings and the first `sample_rows` records, at least 1 and at
  /// most `widest` cells each. Those records are read ahead and handed out afterwards. Call it
  /// before the first SetRow.
  std::vector<Cells> MeasureWidths(std::int32_t sample_rows, Cells widest);

  std::int32_t Cols() const { return static_cast<std::int32_t>(headings_.size()); }

  std::string Caption() override { return caption_; }
  void SetVisible(bool /*visible*/) override {}
  void SetHighLight(int /*high_light*/) override {}
  bool SetRow(std::int32_t row) override;
  void SetCol(std::int32_t /*col*/) override {}
  std::uint32_t CellBackColor() override;
  CellFont Font() override { return {}; }
  std::string_view TextMatrix(std::int32_t row, std::int32_t col) override;
  int ColAlignment(std::int32_t col) override;

 private:
  void ReadAhead(std::int32_t rows);

  Recordset& records_;
  std::string caption_;
  std::vector<std::string> headings_;
  std::vector<int> alignments_;
  std::deque<std::vector<std::string>> ahead_;  // records read for measuring, from row 1 on
  std::int32_t ahead_rows_ = 0;                 // how many there were
  std::int32_t row_ = 0;
};

}  // namespace kel
