// Cells of a database as values of their field's ADO type.
#pragma once

#include <optional>
#include <string_view>

#include "common/number_text.h"
#include "common/value.h"
#include "data/driver.h"
#include "data/held_cell.h"

namespace kel {

/// The value of a cell in a field of `type`. An exact decimal (FieldType::kNumeric) is a Currency
/// where that holds it exactly, else the text that states it. A cell that its field's type does not
/// fit (SQLite holds anything anywhere) keeps the value it has: a text that is no date stays a
/// String, an amount beyond Currency stays the number it is. Binary is a String of its bytes.
Value CellValue(const CellView& cell, FieldType type);

/// The text of a cell as a report shows it: numbers in their shortest decimal form that reads back
/// the same, booleans as "True" and "False", Null as "". The view is into the cell or the buffer.
std::string_view CellText(const CellView& cell, FieldType type, NumberBuffer& buffer) noexcept;

/// The cell that a field of `type` keeps for a value. Null, Empty and Missing are Null; a number
/// for a whole-number field is rounded half to even; a text for a date field may be any that
/// ReadDate takes, day first; a decimal or currency field takes a decimal text exactly, group
/// commas left out. Throws Error 13 for a value that the type cannot take, 6 for one out of range.
HeldCell CellFor(const Value& value, FieldType type);

/// The amount that a decimal text ("-1250.5") states exactly, rounded half to even beyond four
/// decimals; nothing when the whole text is no such number or is beyond Currency.
std::optional<Currency> ParseCurrency(std::string_view text) noexcept;

/// ISO 8601 as SQLite writes it: "2026-03-31", with " " or "T" and "hh:mm", "hh:mm:ss" or
/// "hh:mm:ss.fff" behind it; nothing for other texts, days that the calendar does not have and
/// years before 100.
std::optional<Date> ParseIsoDate(std::string_view text) noexcept;

}  // namespace kel
