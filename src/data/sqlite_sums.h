// SUM and TOTAL of SQLite without the drift of binary numbers.
#pragma once

#include <sqlite3.h>

namespace kel {

/// Puts exact sums in the place of SQLite's own on this connection: SUM of 0.1 and 0.2 is 0.3.
/// Everything else about them is as SQLite documents it (sqlite.org/lang_aggfunc.html): Null, or
/// 0.0 for TOTAL, without rows; an integer of integers, else a REAL, here the one nearest to the
/// sum of the shortest decimal texts of the numbers. They work as window functions too. The result
/// is SQLite's code.
int UseExactSums(sqlite3* database);

}  // namespace kel
