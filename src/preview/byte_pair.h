// A fast test for where a searched text may stand.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace kel {

/// Two bytes beside each other, each one of a few. Every place of the searched text holds the pair.
class BytePair {
 public:
  /// `distance` is 1, or 0 for one byte alone (with `second` the same as `first`).
  BytePair(std::vector<unsigned char> first, std::vector<unsigned char> second,
           std::size_t distance);

  bool IsOneByte() const { return distance_ == 0; }

  /// The same pair where codes may stand between its bytes: the second may be ESC or Chr(1) too.
  BytePair AcrossCodes() const;

  /// Where the pair's first byte stands at or after `from`; npos when it doesn't.
  std::size_t FindIn(std::string_view text, std::size_t from) const;

  /// How often the pair stands in a text; counted no further than `most`.
  std::size_t CountIn(std::string_view text, std::size_t most) const;

 private:
  template <std::size_t kBytes>
  std::size_t Find(std::string_view text, std::size_t from) const;
  std::size_t FindSingly(std::string_view text, std::size_t from) const;

  std::vector<unsigned char> first_;
  std::vector<unsigned char> second_;
  std::size_t distance_;
  std::array<unsigned char, 256> kinds_{};  // kFirst, kSecond
};

}  // namespace kel
