// Cells of a database as values of their field's ADO type.
#pragma once

#include <optional>
#include <string_view>

#include "common/value.h"
#include "data/driver.h"

namespace kel {

/// The value of a cell in a field of `type`. A cell that its field's type does not fit (SQLite
/// holds anything anywhere) keeps the value it has: a text that is no date stays a String, an
/// amount beyond Currency stays the number it is. Binary is a String of its bytes.
Value CellValue(const CellView& cell, FieldType type);

/// The amount that a decimal text ("-1250.5") states exactly, rounded half to even beyond four
/// decimals; nothing when the whole text is no such number or is beyond Currency.
std::optional<Currency> ParseCurrency(std::string_view text) noexcept;

/// ISO 8601 as SQLite writes it: "2026-03-31", with " " or "T" and "hh:mm", "hh:mm:ss" or
/// "hh:mm:ss.fff" behind it; nothing for other texts, days that the calendar does not have and
/// years before 100.
std::optional<Date> ParseIsoDate(std::string_view text) noexcept;

}  // namespace kel
