// Exact decimals as text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kel {

/// The shortest text of the decimal that a text states as a whole: "1,250.00" is "1250", "-.50" is
/// "-0.5". Blanks around it, a sign and group commas between digits are allowed; nothing for other
/// texts, among them those with an exponent.
std::optional<std::string> DecimalText(std::string_view text);

}  // namespace kel
