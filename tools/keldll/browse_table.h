// The table of a `browse` job, opened.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/Connection.h"
#include "data/Recordset.h"
#include "keldll/browse_options.h"

namespace kel::command {

struct BrowseTable {
  std::shared_ptr<Connection> connection;
  std::shared_ptr<Recordset> records;  // opened; its rows come in slices
  std::string caption;
  std::vector<GridAlignment> alignments;  // of the first columns; the option wins over the file
};

/// Opens what the options name; Requery reads it again. A database can be changed only when there
/// are columns to be edited. Throws Error naming the file or the SQL text, for columns to be edited
/// in a file (5), and for columns that the table does not have (9).
BrowseTable OpenTable(const BrowseOptions& options);

}  // namespace kel::command
