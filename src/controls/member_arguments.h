// What members of widgets are given, and the errors that answer what they cannot take.
#pragma once

#include <QString>
#include <QVariant>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "common/object.h"
#include "common/value.h"

namespace kel {

// Error numbers that clients of controls know.
namespace control_error {
inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kInvalidArrayIndex = 381;
inline constexpr int kPropertyIsReadOnly = 383;
inline constexpr int kWrongNumberOfArguments = 450;
inline constexpr int kControlNotFound = 730;
inline constexpr int kIndexOutOfBounds = 35600;
inline constexpr int kElementNotFound = 35601;
inline constexpr int kKeyNotUnique = 35602;
}  // namespace control_error

/// The arguments of a property, as in TextMatrix(row, col).
using Indexes = std::span<const Value>;

/// An argument that must be there. Throws Error 450 when it is not, 13 when it is no number.
std::int32_t IndexAt(Indexes indexes, std::size_t position);

/// The argument of a method by its place or its name; Missing when it was left out.
const Value& ArgumentAt(const Arguments& arguments, std::size_t position, std::string_view name);

/// A whole number within limits. Throws Error 380, naming the member, for one outside.
std::int32_t NumberWithin(const Value& value, std::int32_t least, std::int32_t most,
                          std::string_view member);

QString QTextOf(const Value& value);
Value ValueOf(const QString& text);

/// What a view would show of an item's data. (QVariant itself would write 100000000.0 with an
/// exponent.)
std::string ShownText(const QVariant& data);
/// An item's data as it is: numbers as numbers, dates as dates, the rest as text; Empty for none.
Value ValueOf(const QVariant& data);

[[noreturn]] void ThrowNoMember(const std::string& called, std::string_view member);
/// Throws Error 383, which clients know as the answer to writing what can only be read.
[[noreturn]] void ThrowReadOnly(std::string_view member);
/// Throws Error 380.
[[noreturn]] void ThrowInvalidValue(std::string_view member);
/// Throws Error 5: the thing refuses what the method asks.
[[noreturn]] void ThrowRefused(const std::string& what);

}  // namespace kel
