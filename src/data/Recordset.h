// The rows of a statement, with ADO's meaning.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/number_text.h"
#include "common/value.h"
#include "data/Connection.h"
#include "data/driver.h"

namespace kel {

/// ADO's codes of an object's state.
enum class ObjectState : int { kClosed = 0, kOpen = 1 };

/// A forward-only, read-only recordset: it holds one row, so its memory does not grow with the
/// number of rows.
///
///     for (rs.Open(sql, connection); !rs.EndOfFile(); rs.MoveNext()) Use(rs.FieldText(0));
class Recordset {
 public:
  Recordset() = default;

  /// Runs `source` and goes to its first row. Throws Error for a statement without a result.
  void Open(std::string_view source, Connection& connection);
  /// The rows of a statement that is already prepared.
  void Open(std::unique_ptr<Statement> statement);
  void Close();
  ObjectState State() const noexcept;

  /// BOF and EOF: true for both when there are no rows. EOF is true after the last row.
  bool BeginOfFile() const noexcept;
  bool EndOfFile() const noexcept;
  /// Throws Error 3021 at EOF.
  void MoveNext();
  /// -1: a forward-only recordset does not know.
  std::int64_t RecordCount() const noexcept { return -1; }

  /// Whether another thread may use the open recordset, one thread at a time.
  bool MayChangeThread() const noexcept;

  int FieldCount() const;
  /// Throws Error 3265 for an index that there is not.
  const ColumnInfo& Field(int index) const;
  /// The field's value by its ADO type. Throws Error 3021 without a current row.
  Value FieldValue(int index) const;
  /// The field's text as a report shows it, without an allocation per call: numbers in their
  /// shortest decimal form that reads back the same, Null as "". Good until the next MoveNext.
  std::string_view FieldText(int index) const;

 private:
  CellView CurrentCell(int index) const;
  void RequireField(int index) const;

  std::unique_ptr<Statement> statement_;
  bool on_row_ = false;
  bool had_rows_ = false;
  mutable std::vector<NumberBuffer> number_texts_;  // one for each field
};

}  // namespace kel
