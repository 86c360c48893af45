#include "listview/list_columns.h"

#include "data/field_value.h"

namespace kel {
namespace {

/// The element of an array of settings for a column; null where it is missing.
const Value* ElementOf(const Value& setting, std::size_t column) {
  if (!setting.IsArray()) return nullptr;
  const Value::Array& elements = setting.ToArray();
  if (column >= elements.size() || elements[column].IsMissing()) return nullptr;
  return &elements[column];
}

void PrepareColumn(const ListSettings& settings, const ColumnInfo& field, std::size_t index,
                   ListColumn& column) {
  column.type = field.type;
  column.locked = !NamesColumn(settings.active_cols, static_cast<int>(index));
  column.caption = column.locked ? field.name : field.name + "*";
  const Value* const format = ElementOf(settings.col_formats, index);
  if (format != nullptr) column.format = FormatPattern(format->ToText());
}

void AppendFormatted(const ListColumn& column, const CellView& cell, std::string& text) {
  NumberBuffer buffer;
  if (column.type == FieldType::kDate || column.type == FieldType::kBoolean) {
    text += column.format.Format(CellValue(cell, column.type));
  } else if (cell.kind == CellView::Kind::kInteger || cell.kind == CellView::Kind::kDouble) {
    column.format.AppendNumber(CellText(cell, column.type, buffer), text);
  } else {
    column.format.AppendText(cell.bytes, text);
  }
}

}  // namespace

GridAlignment ListColumn::Side() const {
  switch (alignment) {
    case gridLeft:
    case gridRight:
    case gridCenter:
      return static_cast<GridAlignment>(alignment);
    default:
      return IsNumericType(type) ? gridRight : gridLeft;
  }
}

std::vector<ListColumn> MakeColumns(const Recordset& records) {
  std::vector<ListColumn> columns;
  for (int i = 0; i < records.FieldCount(); ++i) {
    ListColumn& column = columns.emplace_back();
    column.caption = records.Field(i).name;
    column.type = records.Field(i).type;
  }
  return columns;
}

void PrepareColumns(const ListSettings& settings, const Value& column_alignment,
                    const Recordset& records, std::vector<ListColumn>& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    PrepareColumn(settings, records.Field(static_cast<int>(i)), i, columns[i]);
    const Value* const alignment = ElementOf(column_alignment, i);
    if (alignment != nullptr) {
      columns[i].alignment = alignment->ToInt32();
    } else if (!column_alignment.IsArray()) {
      columns[i].alignment = gridGeneral;
    }
  }
}

void RefreshColumns(const ListSettings& settings, const Recordset& records,
                    std::vector<ListColumn>& columns) {
  PrepareColumns(settings, Value(), records, columns);
}

void AppendCellText(const ListColumn& column, const CellView& cell, std::string& text) {
  if (cell.IsNull()) return;
  if (!column.format.IsEmpty()) return AppendFormatted(column, cell, text);
  NumberBuffer buffer;
  text += CellText(cell, column.type, buffer);
}

}  // namespace kel
