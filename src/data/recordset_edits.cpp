// Changes of a Recordset's rows, and what others have changed.
#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

#include "data/Recordset.h"
#include "data/ado_errors.h"
#include "data/field_value.h"

namespace kel {
namespace {

/// Cells as one text that only equal cells have.
std::string KeyText(std::span<const CellView> cells, std::span<const std::size_t> columns) {
  std::string key;
  for (const std::size_t column : columns) {
    const CellView& cell = cells[column];
    NumberBuffer number;
    const std::string_view text = CellText(cell, FieldType::kText, number);
    key += std::to_string(static_cast<int>(cell.kind)) + ':' + std::to_string(text.size()) + ':';
    key += text;
  }
  return key;
}

}  // namespace

void Recordset::AddNew() {
  RequireChangeable();
  FinishEdit();
  FetchAll();
  edit_ = {EditMode::kAdd, {}};
  edit_.cells.resize(columns_.size());
}

void Recordset::SetFieldValue(int index, const Value& value) {
  RequireField(index);
  RequireChangeable();
  const auto field = static_cast<std::size_t>(index);
  HeldCell cell = CellFor(value, columns_[field].type);
  if (edit_.mode == EditMode::kNone) {
    CurrentRow();  // there has to be one
    edit_ = {EditMode::kInProgress, {}};
    edit_.cells.resize(columns_.size());
  }
  edit_.cells[field] = std::move(cell);
  listeners_.Tell(&RecordsetEvents::RecordChangeComplete);
}

void Recordset::Update() {
  RequireChangeable();
  const std::vector<FieldChange> changes = Changes();
  if (edit_.mode == EditMode::kNone) {
    CurrentRow();
    return;
  }
  if (edit_.mode == EditMode::kAdd) {
    std::vector<std::size_t> columns;
    for (const FieldChange& change : changes) columns.push_back(change.column);
    BaseTable table = TableOf(columns.empty() ? ColumnsOfFirstTable() : columns);
    const TableCells written = table.Insert(changes);
    const RowId row = store_->Append(std::vector<CellView>(columns_.size()));
    live_.Add(row);
    StoreCells(row, written);
    if (view_) view_->push_back(row);
    GoTo(SeenRows() - 1);
  } else if (!changes.empty()) {
    FetchAll();
    std::vector<std::size_t> columns;
    for (const FieldChange& change : changes) columns.push_back(change.column);
    const RowId row = CurrentRow();
    StoreCells(row, TableOf(columns).Update(CellsOf(row), changes));
  }
  edit_ = {};
  listeners_.Tell(&RecordsetEvents::RecordChangeComplete);
}

void Recordset::CancelUpdate() {
  RequireRows();
  edit_ = {};
  listeners_.Tell(&RecordsetEvents::RecordChangeComplete);
}

void Recordset::Delete() {
  RequireChangeable();
  if (edit_.mode == EditMode::kAdd) throw NotAllowedHere("a new record is being added");
  FetchAll();
  const RowId row = CurrentRow();
  TableOf(ColumnsOfFirstTable()).Delete(CellsOf(row));
  live_.Remove(row);
  if (view_) view_->erase(view_->begin() + position_);
  edit_ = {};
  on_deleted_ = true;
  listeners_.Tell(&RecordsetEvents::RecordChangeComplete);
}

EditMode Recordset::EditMode() const noexcept { return edit_.mode; }

void Recordset::Requery() {
  RequireOpen();
  if (connection_ == nullptr) throw NotSupported("requery");
  if (edit_.mode != EditMode::kNone) throw NotAllowedHere("a record is being edited");
  Recordset fresh;
  fresh.max_records_ = max_records_;
  fresh.in_slices_ = in_slices_;
  fresh.Open(source_, *connection_, HoldsRows() ? CursorType::kKeyset : CursorType::kForwardOnly,
             lock_);
  if (!sort_.empty()) fresh.Sort(sort_);
  if (filter_ != Value("") && !filter_.IsArray()) fresh.Filter(filter_);
  *this = std::move(fresh);
  listeners_.Tell(&RecordsetEvents::RecordsetChangeComplete);
}

void Recordset::Resync(AffectRecords affected) {
  RequireRows();
  if (connection_ == nullptr) throw NotSupported("resync");
  FetchAll();
  BaseTable table = TableOf(ColumnsOfFirstTable());
  if (table.Key().columns.empty()) throw KeyIsInsufficient("no primary key is among the fields");
  std::vector<RowId> rows;
  if (affected == AffectRecords::kCurrent) {
    rows.push_back(CurrentRow());
  } else if (ReadsOneTable()) {
    rows = ResyncFromSource(table);
  } else {
    rows = live_.All();  // of a join many rows may have the same key
  }
  bool missing = false;
  for (const RowId row : rows) {
    if (const auto cells = table.Read(CellsOf(row))) {
      StoreCells(row, *cells);
    } else {
      missing = true;
    }
  }
  listeners_.Tell(&RecordsetEvents::RecordsetChangeComplete);
  if (missing) throw RowIsDeleted();
}

/// Runs the statement once more and takes its values for the rows that it still gives. The result
/// are the others.
std::vector<RowId> Recordset::ResyncFromSource(BaseTable& table) {
  std::unordered_map<std::string, RowId> by_key;
  for (const RowId row : live_.All()) by_key[KeyText(CellsOf(row), table.Key().columns)] = row;
  const std::unique_ptr<Statement> statement = connection_->Driver().Prepare(source_);
  if (static_cast<std::size_t>(statement->ColumnCount()) != columns_.size()) {
    throw NotAllowedHere("the statement gives other fields than before");
  }
  std::vector<CellView> cells(columns_.size());
  while (statement->Step()) {
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = statement->Cell(static_cast<int>(i));
    const auto found = by_key.find(KeyText(cells, table.Key().columns));
    if (found == by_key.end()) continue;
    if (cells != CellsOf(found->second)) live_.Replace(found->second, store_->Append(cells));
    by_key.erase(found);
  }
  std::vector<RowId> rest;
  for (const auto& [key, row] : by_key) rest.push_back(row);
  return rest;
}

void Recordset::RequireChangeable() const {
  RequireOpen();
  if (!HoldsRows() || connection_ == nullptr || lock_ == LockType::kReadOnly) {
    throw NotSupported("updating");
  }
}

std::vector<FieldChange> Recordset::Changes() const {
  std::vector<FieldChange> changes;
  for (std::size_t i = 0; i < edit_.cells.size(); ++i) {
    if (edit_.cells[i]) changes.push_back({i, edit_.cells[i]->View()});
  }
  return changes;
}

std::vector<CellView> Recordset::CellsOf(RowId row) const {
  std::vector<CellView> cells;
  cells.reserve(columns_.size());
  const RowId values = live_.Values(row);
  for (std::size_t i = 0; i < columns_.size(); ++i) cells.push_back(store_->Cell(values, i));
  return cells;
}

/// Puts the cells of a table in the place of those that a row has.
void Recordset::StoreCells(RowId row, const TableCells& cells) {
  std::vector<CellView> all = CellsOf(row);
  for (const TableCell& cell : cells) all[cell.column] = cell.cell.View();
  live_.Replace(row, store_->Append(all));
}

BaseTable Recordset::TableOf(std::span<const std::size_t> columns) const {
  return {connection_->Driver(), source_, columns_, columns};
}

bool Recordset::ReadsOneTable() const {
  const std::string& table = columns_[ColumnsOfFirstTable().front()].table;
  return std::all_of(columns_.begin(), columns_.end(), [&](const ColumnInfo& column) {
    return column.table.empty() || column.table == table;
  });
}

/// The first column that comes from a table, which stands for that table.
std::vector<std::size_t> Recordset::ColumnsOfFirstTable() const {
  const auto found = std::find_if(columns_.begin(), columns_.end(),
                                  [](const ColumnInfo& column) { return !column.table.empty(); });
  return {found == columns_.end() ? 0 : static_cast<std::size_t>(found - columns_.begin())};
}

}  // namespace kel
