#include "toolkit/folded_text.h"

#include "common/case_folding.h"

namespace kel {

std::u32string FoldedText(std::string_view text) {
  std::u32string folded;
  folded.reserve(text.size());
  while (!text.empty()) {
    const Character character = FoldedCharacter(text);
    folded.push_back(static_cast<char32_t>(character.value));
    text.remove_prefix(character.bytes);
  }
  return folded;
}

}  // namespace kel
