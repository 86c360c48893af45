// The characters of UTF-8 text.
#pragma once

#include <utf8proc.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kel {

/// A Unicode code point and the bytes that it takes.
struct CodePoint {
  std::int32_t value = -1;  // negative: the byte is not part of valid UTF-8
  std::size_t bytes = 1;

  bool IsValid() const noexcept { return value >= 0; }
};

/// The first character of a text. REQUIRES !text.empty().
inline CodePoint FirstCodePoint(std::string_view text) noexcept {
  CodePoint first;
  const utf8proc_ssize_t bytes =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                       static_cast<utf8proc_ssize_t>(text.size()), &first.value);
  if (bytes <= 0) return {};
  first.bytes = static_cast<std::size_t>(bytes);
  return first;
}

/// By its bidirectional class (Unicode annex 9). REQUIRES one that is valid.
inline bool IsRightToLeft(CodePoint character) noexcept {
  const auto direction = utf8proc_get_property(character.value)->bidi_class;
  return direction == UTF8PROC_BIDI_CLASS_R || direction == UTF8PROC_BIDI_CLASS_AL;
}

}  // namespace kel
