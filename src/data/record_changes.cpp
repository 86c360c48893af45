#include "data/record_changes.h"

#include <algorithm>
#include <utility>

#include "common/names.h"
#include "data/ado_errors.h"
#include "data/sql_text.h"

namespace kel {

/// A statement in the making.
struct BaseTable::Query {
  void Condition(const std::string& text) {
    sql += conditions++ == 0 ? " WHERE " : " AND ";
    sql += text;
  }

  std::string sql;
  std::vector<Parameter> parameters = {};
  int conditions = 0;
};

BaseTable::BaseTable(Driver& driver, std::string_view source, std::vector<ColumnInfo> columns,
                     std::span<const std::size_t> of)
    : driver_(driver), columns_(std::move(columns)) {
  const bool tells_tables = std::any_of(columns_.begin(), columns_.end(),
                                        [](const ColumnInfo& c) { return !c.table.empty(); });
  if (!tells_tables) {
    const std::string table = FirstTableName(source);
    for (ColumnInfo& column : columns_) column.table = table;
  }
  for (const std::size_t column : of) {
    const std::string& table = columns_[column].table;
    if (table.empty()) {
      throw NotSupported("updating: " + columns_[column].name + " is no field of a table");
    }
    if (!name_.empty() && name_ != table) {
      throw NotSupported("updating fields of " + name_ + " and " + table + " at once");
    }
    name_ = table;
  }
  if (name_.empty()) throw NotSupported("updating: its rows come from no table");
}

/// The key is asked for when a row has to be found; adding one does without.
const BaseTable::PrimaryKey& BaseTable::Key() {
  if (!key_) key_ = FindKey();
  return *key_;
}

BaseTable::PrimaryKey BaseTable::FindKey() {
  const std::vector<std::string> names = driver_.KeyOf(name_);
  PrimaryKey key;
  key.exists = !names.empty();
  for (const std::string& name : names) {
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      const ColumnInfo& info = columns_[column];
      if (Has(column) && SameName(info.origin.empty() ? info.name : info.origin, name)) {
        key.columns.push_back(column);
        break;
      }
    }
  }
  if (key.columns.size() < names.size()) key.columns.clear();
  return key;
}

TableCells BaseTable::Insert(std::span<const FieldChange> changes) {
  std::string names;
  std::string values;
  Query query;
  for (const FieldChange& change : changes) {
    names += (names.empty() ? "" : ", ") + NameOf(change.column);
    values += values.empty() ? "?" : ", ?";
    query.parameters.push_back({change.cell, columns_[change.column].type});
  }
  query.sql = "INSERT INTO " + driver_.QuotedName(name_) +
              (changes.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + values + ")");
  return Written(query, changes);
}

TableCells BaseTable::Update(std::span<const CellView> row, std::span<const FieldChange> changes) {
  Query query{"UPDATE " + driver_.QuotedName(name_) + " SET "};
  for (const FieldChange& change : changes) {
    if (!query.parameters.empty()) query.sql += ", ";
    query.sql += NameOf(change.column) + " = ?";
    query.parameters.push_back({change.cell, columns_[change.column].type});
  }
  AddRow(query, row);
  return Written(query, changes);
}

void BaseTable::Delete(std::span<const CellView> row) {
  Query query{"DELETE FROM " + driver_.QuotedName(name_)};
  AddRow(query, row);
  if (driver_.Execute(query.sql, query.parameters) == 0) throw RowChangedMeanwhile();
}

std::optional<TableCells> BaseTable::Read(std::span<const CellView> row) {
  if (Key().columns.empty()) {
    throw KeyIsInsufficient(name_ + " has no primary key among the fields");
  }
  Query query{"SELECT " + OwnColumns() + " FROM " + driver_.QuotedName(name_)};
  for (const std::size_t column : Key().columns) AddEquals(query, column, row[column]);
  const std::unique_ptr<Statement> statement = driver_.Prepare(query.sql, query.parameters);
  if (!statement->Step()) return std::nullopt;
  return CellsOf(*statement);
}

/// Adds the conditions that find a row as it was read, and only that row.
void BaseTable::AddRow(Query& query, std::span<const CellView> row) {
  const bool has_key = Key().exists;
  if (has_key && Key().columns.empty()) {
    throw KeyIsInsufficient("the primary key of " + name_ + " is not among the fields");
  }
  const auto add_all = [&](Query& to) {
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      if (Has(column)) AddEquals(to, column, row[column]);
    }
  };
  add_all(query);
  if (has_key) return;
  Query count{"SELECT COUNT(*) FROM " + driver_.QuotedName(name_)};
  add_all(count);
  query.Condition("(" + count.sql + ") = 1");
  query.parameters.insert(query.parameters.end(), count.parameters.begin(), count.parameters.end());
}

void BaseTable::AddEquals(Query& query, std::size_t column, const CellView& cell) const {
  const ColumnInfo& info = columns_[column];
  if (cell.IsNull()) {
    query.Condition(NameOf(column) + " IS NULL");
  } else if (info.comparable) {
    query.Condition(driver_.EqualsParameter(NameOf(column), info));
    query.parameters.push_back({cell, info.type});
  }
}

/// Runs an INSERT or UPDATE of one row.
TableCells BaseTable::Written(Query& query, std::span<const FieldChange> changes) {
  TableCells cells;
  if (driver_.HasReturning()) {
    query.sql += " RETURNING " + OwnColumns();
    const std::unique_ptr<Statement> statement = driver_.Prepare(query.sql, query.parameters);
    if (!statement->Step()) throw RowChangedMeanwhile();
    cells = CellsOf(*statement);
    while (statement->Step()) {
    }
    return cells;
  }
  if (driver_.Execute(query.sql, query.parameters) == 0) throw RowChangedMeanwhile();
  for (const FieldChange& change : changes) {
    cells.push_back({change.column, HeldCell(change.cell)});
  }
  return cells;
}

std::string BaseTable::NameOf(std::size_t column) const {
  const ColumnInfo& info = columns_[column];
  return driver_.QuotedName(info.origin.empty() ? info.name : info.origin);
}

std::string BaseTable::OwnColumns() const {
  std::string names;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (Has(column)) names += (names.empty() ? "" : ", ") + NameOf(column);
  }
  return names;
}

/// The current row of a statement over OwnColumns.
TableCells BaseTable::CellsOf(const Statement& statement) const {
  TableCells cells;
  int next = 0;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (Has(column)) cells.push_back({column, HeldCell(statement.Cell(next++))});
  }
  return cells;
}

}  // namespace kel
