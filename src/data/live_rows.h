// Which of the stored rows a recordset has, and in which form.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "data/row_store.h"

namespace kel {

/// A recordset knows a row by the number under which it was stored first. The row's values may
/// stand elsewhere: a change stores the row anew.
class LiveRows {
 public:
  /// The rows in the order of their storing, without those removed.
  const std::vector<RowId>& All() const noexcept { return rows_; }

  void Add(RowId row) { rows_.push_back(row); }
  void Remove(RowId row);
  bool Contains(RowId row) const;
  /// From now on the row's values are those stored as `values`.
  void Replace(RowId row, RowId values);

  /// Where the row's values stand.
  RowId Values(RowId row) const {
    if (values_.empty()) return row;
    const auto found = values_.find(row);
    return found == values_.end() ? row : found->second;
  }
  /// The two ways between rows and where their values stand, for a whole list.
  void ToValues(std::vector<RowId>& rows) const;
  void FromValues(std::vector<RowId>& values) const;

 private:
  std::vector<RowId> rows_;                      // ascending
  std::unordered_map<RowId, RowId> values_;      // of the rows that were changed
  std::unordered_map<RowId, RowId> changed_by_;  // the way back
};

}  // namespace kel
