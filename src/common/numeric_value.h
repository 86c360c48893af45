// The tolerant numeric conversion: a number out of half-typed or decorated text.
#pragma once

#include <optional>
#include <string_view>

namespace kel {

class Value;

/// The number that a text begins with: leading blanks are skipped, then one sign, digits, one
/// decimal point and an exponent are read as far as they go. 0 when there is no number; never an
/// error. A number too large for a double (1E999) is read again without its exponent, and is 0
/// when it is too large even so. 1+2 is 1.
double ExVal(std::string_view expression) noexcept;

/// The same of a value's text; the value is replaced by that text. Throws Error 94 for Null.
double ExVal(Value& expression);

/// True when the whole text is a number within the range of a double: blanks around it, one sign
/// before or behind, digits with group commas, one decimal point, an exponent. The commas may
/// stand anywhere between two digits before the point (1,00,000.00).
bool IsNumeric(std::string_view text) noexcept;

/// The number that IsNumeric describes; infinite when it is too large for a double, nothing when
/// the text is no number.
std::optional<double> ReadNumber(std::string_view text);

}  // namespace kel
