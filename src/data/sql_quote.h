// The safe way to put names and values into SQL texts.
#pragma once

#include <string>
#include <string_view>

#include "common/value.h"

namespace kel {

/// A field or table name in brackets, as every concatenating operation takes it:
///
///     zur.FillControl(books, combo, QuoteName("Account Name"), QuoteName("Ledger"));
///
/// Throws Error 5 for an empty name, and one with a bracket or a NUL in it.
std::string QuoteName(std::string_view name);

/// A value as it stands in an SQL text on every database: texts in single quotes with quotes inside
/// them doubled, numbers with a decimal point and a blank before a minus sign, dates between "#"
/// signs, Null for Null and Empty.
///
///     const std::string pattern = "AccName = " + QuoteValue(typed_by_the_user);
///
/// Throws Error 5 for a text with a NUL and a number that is not finite, 13 for objects and arrays.
std::string QuoteValue(const Value& value);

}  // namespace kel
