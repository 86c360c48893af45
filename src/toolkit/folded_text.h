// Texts for comparing without regard to letter case.
#pragma once

#include <string>
#include <string_view>

namespace kel {

/// The folded characters of a text (common/case_folding.h); texts that are the same but for case
/// have the same. A byte that is no UTF-8 is a character beyond Unicode.
std::u32string FoldedText(std::string_view text);

}  // namespace kel
