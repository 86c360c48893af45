// Rows of a result written back to the table that they come from.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/driver.h"
#include "data/held_cell.h"

namespace kel {

/// A field that is to get another value.
struct FieldChange {
  std::size_t column = 0;
  CellView cell;
};

/// A row as the database holds it: the cells of the columns that belong to the table, by column of
/// the result.
struct TableCell {
  std::size_t column = 0;
  HeldCell cell;
};
using TableCells = std::vector<TableCell>;

/// The table behind the rows of a result, or behind some of their columns in a join.
///
/// A row is found again by its primary key; it is changed or deleted only if its other columns are
/// still what they were when it was read. Without a primary key all columns have to tell the row
/// from all others.
class BaseTable {
 public:
  /// The table of the given columns. Throws Error 3251 when there is none, or more than one.
  BaseTable(Driver& driver, std::string_view source, std::vector<ColumnInfo> columns,
            std::span<const std::size_t> of);

  /// The results are what the database made of the row, where it tells, else what was written.
  TableCells Insert(std::span<const FieldChange> changes);
  /// `row` gives the cells as they were read, one for each column of the result. Throws Error
  /// kRowNotFound when the row has been changed or deleted since.
  TableCells Update(std::span<const CellView> row, std::span<const FieldChange> changes);
  void Delete(std::span<const CellView> row);
  /// The row as it is now; nothing when it is gone.
  std::optional<TableCells> Read(std::span<const CellView> row);

  struct PrimaryKey {
    bool exists = false;               // in the table; its columns need not be in the result
    std::vector<std::size_t> columns;  // of the result; empty when not all of them are in it
  };
  const PrimaryKey& Key();
  bool Has(std::size_t column) const { return columns_[column].table == name_; }

 private:
  struct Query;

  PrimaryKey FindKey();
  std::string NameOf(std::size_t column) const;
  void AddEquals(Query& query, std::size_t column, const CellView& cell) const;
  void AddRow(Query& query, std::span<const CellView> row);
  std::string OwnColumns() const;
  TableCells CellsOf(const Statement& statement) const;
  TableCells Written(Query& query, std::span<const FieldChange> changes);

  Driver& driver_;
  std::vector<ColumnInfo> columns_;
  std::string name_;
  std::optional<PrimaryKey> key_;
};

}  // namespace kel
