// Paper sizes as workbooks name them.
#pragma once

#include <cstdint>

namespace kel {

/// The code (ECMA-376, 18.3.1.63) of upright paper of `width` by `height` inches; 0, the
/// printer's own paper, for a size that has none.
std::uint8_t PaperCode(double width, double height);

}  // namespace kel
