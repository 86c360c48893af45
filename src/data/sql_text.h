// What the library reads out of SQL texts.
#pragma once

#include <string>
#include <string_view>

namespace kel {

/// The name, without quotes and schema, of the first table that a statement reads FROM; empty when
/// there is none. Comments, texts and the definitions of WITH are passed over; a sub-query at that
/// place is looked into. Only a statement without a FROM of its own is named by a sub-query
/// elsewhere in it: SELECT EXISTS (SELECT 1 FROM Ledger).
std::string FirstTableName(std::string_view sql);

/// A statement as an error message shows it: runs of blanks and line breaks are one blank, a long
/// statement is cut before a character and ends in "...".
std::string OneLineSql(std::string_view sql);

}  // namespace kel
