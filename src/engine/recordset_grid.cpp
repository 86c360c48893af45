#include "engine/recordset_grid.h"

#include <algorithm>

#include "common/error.h"

namespace kel {

namespace {

constexpr std::uint32_t kWindowBackground = 0x80000005;

Cells WidthInReport(std::string_view text) {
  return IsPlain(text) ? static_cast<Cells>(text.size()) : CellWidth(CleanText(text));
}

}  // namespace

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
  std::vector<Cells> widths;
  for (const std::string& heading : headings_) {
    widths.push_back(std::max<Cells>(1, WidthInReport(heading)));
  }
  for (const std::vector<std::string>& record : ahead_) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      widths[i] = std::max(widths[i], WidthInReport(record[i]));
    }
  }
  for (Cells& width : widths) width = std::min(width, widest);
  return widths;
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
