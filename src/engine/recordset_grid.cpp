#include "engine/recordset_grid.h"

#include <algorithm>
#include <utility>

#include "common/error.h"
#include "engine/column_widths.h"

namespace kel {

RecordsetGrid::RecordsetGrid(Recordset& records, std::string caption)
    : reader_(records), caption_(std::move(caption)) {
  for (int i = 0; i < records.FieldCount(); ++i) {
    const ColumnInfo& field = records.Field(i);
    headings_.push_back(field.name);
    alignments_.push_back(IsNumericType(field.type) ? kAlignRight : kAlignLeft);
  }
}

std::vector<Cells> RecordsetGrid::MeasureWidths(std::int32_t sample_rows, Cells widest) {
  ColumnWidths widths(headings_.size(), widest);
  for (std::size_t i = 0; i < headings_.size(); ++i) widths.Measure(i, headings_[i]);
  auto rows_left = static_cast<std::size_t>(std::max(0, sample_rows));
  while (rows_left > 0 && NextBatch()) {
    const RowBatch& batch = batches_.back();
    const std::size_t rows = std::min(rows_left, batch.Rows());
    for (std::size_t row = 0; row < rows; ++row) {
      for (std::size_t i = 0; i < headings_.size(); ++i) widths.Measure(i, batch.Text(row, i));
    }
    rows_left -= rows;
  }
  return widths.Widths();
}

bool RecordsetGrid::NextBatch() {
  RowBatch batch = reader_.Next();
  if (batch.Rows() == 0) return false;
  batches_.push_back(std::move(batch));
  return true;
}

bool RecordsetGrid::SetRow(std::int32_t row) {
  if (row < row_) {
    throw Error(error_number::kInvalidProcedureCall,
                "a streamed grid cannot go back to row " + std::to_string(row));
  }
  row_ = row;
  if (row == 0) return true;
  for (;;) {
    if (batches_.empty() && !NextBatch()) return false;
    const auto rows = static_cast<std::int32_t>(batches_.front().Rows());
    if (row - first_in_batch_ < rows) return true;
    first_in_batch_ += rows;
    reader_.Recycle(std::move(batches_.front()));
    batches_.pop_front();
  }
}

std::uint32_t RecordsetGrid::CellBackColor() {
  return row_ == 0 ? system_color::kButtonFace : system_color::kWindowBackground;
}

std::string_view RecordsetGrid::TextMatrix(std::int32_t /*row*/, std::int32_t col) {
  const auto index = static_cast<std::size_t>(col);
  if (index >= headings_.size() || (row_ > 0 && batches_.empty())) {
    throw Error(error_number::kSubscriptOutOfRange,
                "Subscript out of range: the rows have no cell [" + std::to_string(row_) + ", " +
                    std::to_string(col) + "]");
  }
  if (row_ == 0) return headings_[index];
  return batches_.front().Text(static_cast<std::size_t>(row_ - first_in_batch_), index);
}

int RecordsetGrid::ColAlignment(std::int32_t col) {
  return alignments_.at(static_cast<std::size_t>(col));
}

}  // namespace kel
