// A text that is looked for without regard to letter case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "preview/byte_pair.h"

namespace kel {

/// A text is compared code point by code point, each by its simple case folding (Unicode's
/// CaseFolding.txt, status C and S); a byte that is no UTF-8 equals itself only. The empty text,
/// and a text with a line end in it, are found nowhere.
class SearchText {
 public:
  explicit SearchText(std::string_view text);

  /// Where the text stands, in bytes; `bytes` is 0 when it does not.
  struct Found {
    std::size_t offset = 0;
    std::size_t bytes = 0;
  };

  bool IsFoundNowhere() const { return anchors_.empty(); }
  /// The most bytes that any writing of the text takes.
  std::size_t MostBytes() const { return most_bytes_; }

  /// A part of the searched text that is quickly found, and where the whole may begin then.
  struct Anchor {
    BytePair pair;
    // The place of the pair, plus `ahead`, less `least_before`..`most_before` bytes.
    std::ptrdiff_t ahead = 0;
    std::size_t least_before = 0;
    std::size_t most_before = 0;
  };

  /// The anchor that stands in `sample` least often. REQUIRES: !IsFoundNowhere().
  const Anchor& BestAnchor(std::string_view sample) const;

  /// The text's first place at or after byte `from`, by way of an anchor.
  Found FindByAnchor(const Anchor& anchor, std::string_view text, std::size_t from) const;

 private:
  void AddAnchors();
  Found FindAround(const Anchor& anchor, std::string_view text, std::size_t place,
                   std::size_t from) const;
  std::size_t BytesAt(std::string_view text, std::size_t offset) const;

  std::vector<std::int32_t> folded_;
  std::vector<Anchor> anchors_;
  std::size_t most_bytes_ = 0;
};

}  // namespace kel
