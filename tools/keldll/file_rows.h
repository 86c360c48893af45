// The rows of files as those of a table.
#pragma once

#include <memory>

#include "data/driver.h"
#include "engine/memory_grid.h"

namespace kel::command {

/// The rows of a grid below its fixed rows; row 0 gives the column names, also when it is not
/// fixed. A column is numeric (FieldType::kDouble) when every text in it that is not empty is a
/// number, and there is one.
std::unique_ptr<Statement> OpenGrid(MemoryGrid grid);

/// The rows of a statement over a file, so that conditions, sorting and sums work on them:
///
/// - Column names are different in more than case and have no brackets: "Name (2)" is the second
///   Name, "Column 3" the third column when that has none, "Rate (Rs.)" is "Rate [Rs.]".
/// - Numbers have no group commas and no sign behind them; an empty text in a numeric column is
///   Null.
std::unique_ptr<Statement> TableRows(std::unique_ptr<Statement> rows);

}  // namespace kel::command
