#include "data/live_rows.h"

#include <algorithm>

namespace kel {

void LiveRows::Remove(RowId row) {
  const auto found = std::lower_bound(rows_.begin(), rows_.end(), row);
  if (found != rows_.end() && *found == row) rows_.erase(found);
}

bool LiveRows::Contains(RowId row) const {
  return std::binary_search(rows_.begin(), rows_.end(), row);
}

void LiveRows::Replace(RowId row, RowId values) {
  changed_by_.erase(Values(row));
  values_[row] = values;
  changed_by_[values] = row;
}

void LiveRows::ToValues(std::vector<RowId>& rows) const {
  if (values_.empty()) return;
  for (RowId& row : rows) row = Values(row);
}

void LiveRows::FromValues(std::vector<RowId>& values) const {
  if (changed_by_.empty()) return;
  for (RowId& value : values) {
    const auto found = changed_by_.find(value);
    if (found != changed_by_.end()) value = found->second;
  }
}

}  // namespace kel
