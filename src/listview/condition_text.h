// The conditions that the condition dialog puts together.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "data/driver.h"

namespace kel {

/// The operations of the dialog, in order.
inline constexpr std::array<std::string_view, 9> kConditionOperations = {
    "=", "<>", ">=", "<=", ">", "<", "Like", "Is Null", "Expression"};
inline constexpr std::string_view kIsNullOperation = "Is Null";
inline constexpr std::string_view kExpressionOperation = "Expression";

/// "[Amount] >= 100", "[Name] Like 'A*'", "[Dt] = #05/March/2009#", "[Remarks] = Null", or `value`
/// itself for "Expression". Published quirks: quotes in the value are not doubled; memos and texts
/// of fixed length are written without quotes, as numbers are.
std::string ConditionText(std::string_view field, FieldType type, std::string_view operation,
                          std::string_view value);

}  // namespace kel
