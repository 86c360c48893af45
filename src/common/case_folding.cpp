#include "common/case_folding.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <utility>

#include "common/code_point.h"

namespace kel {

namespace {

constexpr std::int32_t kFirstNonAscii = 0x80;
constexpr std::int32_t kCodePoints = 0x110000;
// The letters of Turkish: their case depends on the language, so they fold to themselves.
constexpr std::int32_t kDottedCapitalI = 0x130;
constexpr std::int32_t kDotlessSmallI = 0x131;

constexpr std::int32_t FoldAscii(std::int32_t value) {
  return value >= 'A' && value <= 'Z' ? value - 'A' + 'a' : value;
}

std::string Encoded(std::int32_t code_point) {
  std::array<utf8proc_uint8_t, 4> bytes{};
  const utf8proc_ssize_t count = utf8proc_encode_char(code_point, bytes.data());
  return {bytes.begin(), bytes.begin() + count};
}

using FoldedPair = std::pair<std::int32_t, std::int32_t>;  // what it folds to, the code point

// Every code point that folds to another, in the order of what it folds to.
std::vector<FoldedPair> AllFolded() {
  std::vector<FoldedPair> folded;
  for (std::int32_t code_point = 0; code_point < kCodePoints; ++code_point) {
    const std::int32_t to = Fold(code_point);
    if (to != code_point) folded.emplace_back(to, code_point);
  }
  std::sort(folded.begin(), folded.end());
  return folded;
}

}  // namespace

Character FoldedCharacter(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < kFirstNonAscii) return {FoldAscii(first), 1};
  const CodePoint character = FirstCodePoint(text);
  if (!character.IsValid()) return {-1 - first, 1};
  return {Fold(character.value), character.bytes};
}

std::int32_t Fold(std::int32_t code_point) {
  if (code_point < kFirstNonAscii) return FoldAscii(code_point);
  if (code_point == kDottedCapitalI || code_point == kDotlessSmallI) return code_point;
  // By way of the capital letter small letters of one capital (the two sigmas) become the same.
  return utf8proc_tolower(utf8proc_toupper(code_point));
}

std::vector<std::string> VariantsOf(std::int32_t folded) {
  if (folded < 0) return {std::string(1, static_cast<char>(-1 - folded))};
  static const std::vector<FoldedPair> all = AllFolded();
  std::vector<std::string> variants = {Encoded(folded)};
  for (auto next = std::lower_bound(all.begin(), all.end(), FoldedPair{folded, 0});
       next != all.end() && next->first == folded; ++next) {
    variants.push_back(Encoded(next->second));
  }
  return variants;
}

}  // namespace kel
