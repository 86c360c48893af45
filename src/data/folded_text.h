// Texts compared without regard to letter case, in the order of their folded UTF-8 bytes.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "common/case_folding.h"

namespace kel {

constexpr bool IsAscii(char c) noexcept { return static_cast<unsigned char>(c) < 0x80; }
constexpr char FoldAscii(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The bytes of a text whose characters are folded, one after the other.
class FoldedBytes {
 public:
  explicit FoldedBytes(std::string_view text) : rest_(text) {}

  /// 0 to 255; -1 at the end.
  int Next() noexcept;

 private:
  void FoldOne() noexcept;

  std::string_view rest_;
  std::array<unsigned char, 4> bytes_{};  // of the character that is read
  std::size_t at_ = 0;
  std::size_t count_ = 0;
};

std::string Folded(std::string_view text);
void AppendFolded(std::string_view text, std::string& folded);

/// Below, equal to or above 0 as `left` is below, equal to or above `right`.
int CompareFolded(std::string_view left, std::string_view right) noexcept;

}  // namespace kel
