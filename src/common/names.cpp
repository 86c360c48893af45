#include "common/names.h"

#include <algorithm>

namespace kel {

bool SameName(std::string_view left, std::string_view right) noexcept {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace kel
