// What the condition dialog asks of a list.
#include "data/field_value.h"
#include "data/folded_text.h"
#include "listview/list_model.h"
#include "listview/list_model_p.h"
#include "toolkit/hourglass.h"

namespace kel {
namespace {

constexpr std::int64_t kRowsPerProgress = 4096;

void FindRecord(Recordset& records, const std::string& condition, FindOption option) {
  switch (option) {
    case FindOption::kFirst:
      records.MoveFirst();
      return records.Find(condition, 0, SearchDirection::kForward, bookmark::kFirst);
    case FindOption::kNext:
      return records.Find(condition, 1, SearchDirection::kForward);
    case FindOption::kPrevious:
      return records.Find(condition, 1, SearchDirection::kBackward);
    case FindOption::kLast:
      records.MoveLast();
      return records.Find(condition, 0, SearchDirection::kBackward);
  }
}

/// A cell as a value that is offered for a condition.
std::string ValueText(const CellView& cell, FieldType type) {
  if (type == FieldType::kDate) return DateEntry(CellValue(cell, type));
  NumberBuffer buffer;
  return std::string(CellText(cell, type, buffer));
}

}  // namespace

bool ListModel::ApplyFilter(const std::string& condition) {
  Recordset& records = Required();
  if (!LoadAll()) return false;
  const Hourglass hourglass;
  const auto wait = WaitForRows(records, "Filtering Records...");
  records.Filter(condition);
  caption_ = settings_.caption + " - (" + condition + ")";
  return true;
}

ListModel::Found ListModel::Find(const std::string& condition, FindOption option) {
  Recordset& records = Required();
  if (!LoadAll()) return Found::kStopped;
  const Hourglass hourglass;
  const std::int64_t before = records.AbsolutePosition();
  try {
    FindRecord(records, condition, option);
  } catch (...) {
    if (before > 0) records.AbsolutePosition(before);
    throw;
  }
  return records.EndOfFile() || records.BeginOfFile() ? Found::kNo : Found::kYes;
}

void ListModel::LeaveEnd() {
  Recordset& records = Required();
  if (!records.BeginOfFile()) records.MoveFirst();
}

bool ListModel::PossibleValues(int field, const std::function<void(std::string)>& add,
                               const std::function<void(std::int64_t, std::int64_t)>& progress) {
  Recordset& records = Required();
  const ColumnInfo column = records.Field(field);
  if (!LoadAll()) return false;
  SortBy(records, Bracketed(column.name));
  const Hourglass hourglass;
  const std::int64_t rows = records.RowsSeen();
  std::string previous;
  for (std::int64_t row = 0; row < rows; ++row) {
    if (row % kRowsPerProgress == 0) progress(row, rows);
    const CellView cell = records.CellSeen(row, field);
    if (cell.IsNull()) continue;
    std::string value = ValueText(cell, column.type);
    if (value == previous || CompareFolded(value, previous) == 0) continue;
    add(value);
    previous = std::move(value);
  }
  progress(rows, rows);
  if (rows > 0) records.MoveFirst();
  return true;
}

}  // namespace kel
