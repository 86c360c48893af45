// What is typed into the cells of a list.
#include <cmath>

#include "common/decimal_text.h"
#include "common/error.h"
#include "data/field_value.h"
#include "listview/list_model.h"
#include "listview/list_model_p.h"

namespace kel {
namespace {

bool HoldsText(FieldType type) { return type == FieldType::kText || type == FieldType::kMemo; }

/// Group commas are what people type; the database is given the number.
Value TypedValue(std::string_view typed, FieldType type) {
  if (typed.empty() && !HoldsText(type)) return Value::Null();
  if (IsNumericType(type)) {
    if (const auto number = DecimalText(typed)) return *number;
  }
  return typed;
}

}  // namespace

std::string DateEntry(const Value& date) {
  const bool with_time =
      date.Kind() == ValueKind::kDate && date.ToDouble() != std::floor(date.ToDouble());
  return FormatPattern(with_time ? "dd/mm/yyyy hh:nn:ss" : "dd/mm/yyyy").Format(date);
}

std::string ListModel::EntryText(int column) const {
  const CellView cell = records_->FieldCell(column);
  const FieldType type = records_->Field(column).type;
  if (cell.IsNull()) return {};
  if (type == FieldType::kDate) return DateEntry(CellValue(cell, type));
  NumberBuffer buffer;
  return std::string(CellText(cell, type, buffer));
}

void ListModel::Enter(int column, std::string_view typed) {
  if (typed == EntryText(column)) return;
  const std::shared_ptr<Recordset> records = records_;
  const Value value = TypedValue(typed, records->Field(column).type);
  if (!LoadAll()) {
    throw Error(error_number::kInvalidProcedureCall,
                "The cell is not changed: the reading of the records was stopped.");
  }
  try {
    records->SetFieldValue(column, value);
    records->Update();
  } catch (...) {
    records->CancelUpdate();
    throw;
  }
}

}  // namespace kel
