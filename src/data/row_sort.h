// Rows in the order of a recordset's Sort.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "data/driver.h"
#include "data/row_store.h"

namespace kel {

struct SortField {
  std::size_t column = 0;
  bool descending = false;
};

/// Reads "[Code] ASC,[Name] DESC"; ASC is what nothing says, brackets are needed around blanks
/// only. Throws Error 3001 for what is no such list, 3265 for a field that there is not.
std::vector<SortField> ParseSort(std::string_view text, std::span<const ColumnInfo> columns);

/// Puts rows into order: Nulls first, numbers and dates by value, texts without regard to case;
/// rows that are equal keep the order they stand in.
void SortRows(const RowStore& store, std::span<const ColumnInfo> columns,
              std::span<const SortField> fields, std::vector<RowId>& rows);

}  // namespace kel
