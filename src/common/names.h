// Names that are the same in any case of letters.
#pragma once

#include <string_view>

namespace kel {

/// Equality without regard to the case of ASCII letters, whatever the locale.
bool SameName(std::string_view left, std::string_view right) noexcept;

}  // namespace kel
