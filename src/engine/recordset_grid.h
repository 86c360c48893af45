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
#include "engine/row_reader.h"

namespace kel {

/// Row 0 holds the field names and is the fixed heading row; the records follow from row 1.
/// Numeric fields are right-aligned, all others left-aligned. A few hundred records are held at a
/// time, so a report over ten million rows takes no more memory than one over a thousand. The
/// recordset must stand on its first record and outlive the grid. While the grid is walked the
/// records may be read ahead on another thread; recordset and connection belong to the grid then.
class RecordsetGrid : public GridSource {
 public:
  RecordsetGrid(Recordset& records, std::string caption);

  /// Column widths that hold the headings and the first `sample_rows` records, at least 1 and at
  /// most `widest` cells each. Those records are held until they are walked over. Call it before
  /// the first SetRow.
  std::vector<Cells> MeasureWidths(std::int32_t sample_rows, Cells widest);

  std::int32_t Cols() const { return static_cast<std::int32_t>(headings_.size()); }

  void BeginWalk() override { reader_.StartReadingAhead(); }
  void EndWalk() noexcept override { reader_.StopReadingAhead(); }
  std::int32_t LastRow() override { return kLastRow; }
  std::int32_t LastCol() override { return Cols() - 1; }
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
  bool NextBatch();

  RowReader reader_;
  std::string caption_;
  std::vector<std::string> headings_;
  std::vector<int> alignments_;
  std::deque<RowBatch> batches_;     // the first one holds the current row, as soon as it is one
  std::int32_t first_in_batch_ = 1;  // row number of that batch's first row
  std::int32_t row_ = 0;
};

}  // namespace kel
