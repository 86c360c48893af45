// Comparing characters without regard to letter case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kel {

/// One character of a text, by code point; a byte that is not part of valid UTF-8 is one too.
struct Character {
  std::int32_t value = 0;  // the code point; -1 - byte for a byte that is no UTF-8
  std::size_t bytes = 1;
};

/// The first character of a text, folded (Fold). REQUIRES: text is not empty.
Character FoldedCharacter(std::string_view text);

/// Simple case folding (Unicode's CaseFolding.txt, status C and S).
std::int32_t Fold(std::int32_t code_point);

/// All characters, as the bytes of a text, that fold to `folded`.
std::vector<std::string> VariantsOf(std::int32_t folded);

}  // namespace kel
