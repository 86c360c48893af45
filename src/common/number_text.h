// Numbers as text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kel {

/// Room for the text of any number.
using NumberBuffer = std::array<char, 64>;

/// The shortest decimal text that reads back as the same number: 0.1, 1250, 1E+22.
std::string NumberText(double number);

/// The same without an allocation; the view is into the buffer.
std::string_view NumberText(double number, NumberBuffer& buffer) noexcept;
std::string_view NumberText(std::int64_t number, NumberBuffer& buffer) noexcept;

}  // namespace kel
