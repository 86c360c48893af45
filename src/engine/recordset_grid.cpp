#include "engine/recordset_grid.h"

#include "common/error.h"
#include "engine/column_widths.h"

namespace kel {

RecordsetGrid::RecordsetGrid(Recordset& records, std::string caption)
    : records_(records), caption_(std::move(caption)) {
  for (int i = 0; i < records.FieldCount(); ++i) {
    const ColumnInfo& field = records.Field(i);
    headings_.push_back(field.name);
    alignments_.push_back(IsNumericType(field.type) ? kAlignRight : kAlignLeft);
  }
}

std::vector<Cells> RecordsetGrid::MeasureWidths(std::int32_t sample_rows, Cells widest) {
  ReadAhead(sample_rows);
  ColumnWidths widths(headings_.size(), widest);
  for (std::size_t i = 0; i < headings_.size(); ++i) {
    widths.Measure(i, headings_[i]);
    for (const std::vector<std::string>& record : ahead_) widths.Measure(i, record[i]);
  }
  return widths.Widths();
}

void RecordsetGrid::ReadAhead(std::int32_t rows) {
  while (ahead_rows_ < rows && !records_.EndOfFile()) {
    std::vector<std::string>& record = ahead_.emplace_back();
    for (int i = 0; i < Cols(); ++i) record.emplace_back(records_.FieldText(i));
    records_.MoveNext();
    ++ahead_rows_;
  }
}

bool RecordsetGrid::SetRow(std::int32_t row) {
  if (row < row_) {
    throw Error(error_number::kInvalidProcedureCall,
                "a streamed grid cannot go back to row " + std::to_string(row));
  }
  // Row 1 is the record that the recordset stands on; with records read ahead, the first of those.
  for (; row_ < row; ++row_) {
    if (row_ == 0) continue;
    if (row_ <= ahead_rows_) {
      ahead_.pop_front();
    } else if (!records_.EndOfFile()) {
      records_.MoveNext();
    }
  }
  return row_ <= ahead_rows_ || !records_.EndOfFile();
}

std::uint32_t RecordsetGrid::CellBackColor() { return row_ == 0 ? kButtonFace : kWindowBackground; }

std::string_view RecordsetGrid::TextMatrix(std::int32_t /*row*/, std::int32_t col) {
  const auto index = static_cast<std::size_t>(col);
  if (index >= headings_.size()) {
    throw Error(error_number::kSubscriptOutOfRange,
                "Subscript out of range: the rows have no column " + std::to_string(col));
  }
  if (row_ == 0) return headings_[index];
  if (row_ <= ahead_rows_) return ahead_.front()[index];
  return records_.FieldText(col);
}

int RecordsetGrid::ColAlignment(std::int32_t col) {
  return alignments_.at(static_cast<std::size_t>(col));
}

}  // namespace kel
