#include "data/folded_text.h"

#include <algorithm>
#include <cstdint>

namespace kel {
namespace {

constexpr std::uint32_t kEndOfOneByte = 0x80;
constexpr std::uint32_t kEndOfTwoBytes = 0x800;
constexpr std::uint32_t kEndOfThreeBytes = 0x10000;

/// UTF-8's bytes of a character behind the first.
unsigned char Continuation(std::uint32_t code_point, unsigned shift) noexcept {
  return static_cast<unsigned char>(0x80U | ((code_point >> shift) & 0x3FU));
}

}  // namespace

int FoldedBytes::Next() noexcept {
  if (at_ == count_) {
    if (rest_.empty()) return -1;
    FoldOne();
  }
  return bytes_[at_++];
}

void FoldedBytes::FoldOne() noexcept {
  const Character character = FoldedCharacter(rest_);
  rest_.remove_prefix(character.bytes);
  at_ = 0;
  count_ = 1;
  if (character.value < 0) {
    bytes_[0] = static_cast<unsigned char>(-1 - character.value);
    return;
  }
  const auto code_point = static_cast<std::uint32_t>(character.value);
  if (code_point < kEndOfOneByte) {
    bytes_[0] = static_cast<unsigned char>(code_point);
  } else if (code_point < kEndOfTwoBytes) {
    count_ = 2;
    bytes_ = {static_cast<unsigned char>(0xC0U | (code_point >> 6U)), Continuation(code_point, 0)};
  } else if (code_point < kEndOfThreeBytes) {
    count_ = 3;
    bytes_ = {static_cast<unsigned char>(0xE0U | (code_point >> 12U)), Continuation(code_point, 6),
              Continuation(code_point, 0)};
  } else {
    count_ = 4;
    bytes_ = {static_cast<unsigned char>(0xF0U | (code_point >> 18U)), Continuation(code_point, 12),
              Continuation(code_point, 6), Continuation(code_point, 0)};
  }
}

std::string Folded(std::string_view text) {
  std::string folded;
  AppendFolded(text, folded);
  return folded;
}

void AppendFolded(std::string_view text, std::string& folded) {
  const auto other = std::find_if_not(text.begin(), text.end(), IsAscii);
  const auto ascii = static_cast<std::size_t>(other - text.begin());
  const std::size_t begin = folded.size();
  folded += text.substr(0, ascii);
  std::transform(folded.begin() + static_cast<std::ptrdiff_t>(begin), folded.end(),
                 folded.begin() + static_cast<std::ptrdiff_t>(begin), FoldAscii);
  FoldedBytes bytes(text.substr(ascii));
  for (int byte = bytes.Next(); byte >= 0; byte = bytes.Next()) folded += static_cast<char>(byte);
}

int CompareFolded(std::string_view left, std::string_view right) noexcept {
  const std::size_t common = std::min(left.size(), right.size());
  std::size_t i = 0;
  for (; i < common && IsAscii(left[i]) && IsAscii(right[i]); ++i) {
    const int difference = FoldAscii(left[i]) - FoldAscii(right[i]);
    if (difference != 0) return difference;
  }
  FoldedBytes left_rest(left.substr(i));
  FoldedBytes right_rest(right.substr(i));
  while (true) {
    const int left_byte = left_rest.Next();
    const int right_byte = right_rest.Next();
    if (left_byte != right_byte) return left_byte - right_byte;
    if (left_byte < 0) return 0;
  }
}

}  // namespace kel
