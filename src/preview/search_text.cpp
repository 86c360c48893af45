#include "preview/search_text.h"

#include <algorithm>
#include <string>
#include <utility>

#include "common/case_folding.h"

namespace kel {

namespace {

constexpr std::size_t kMostAnchors = 64;
constexpr std::size_t kMostContinuations = 3;

// The ways in which one character of the searched text may be written.
struct Writings {
  explicit Writings(std::int32_t folded) : all(VariantsOf(folded)) {
    const auto [least_at, most_at] = std::minmax_element(
        all.begin(), all.end(),
        [](const auto& left, const auto& right) { return left.size() < right.size(); });
    least = least_at->size();
    most = most_at->size();
  }

  std::vector<unsigned char> At(std::size_t offset) const {
    std::vector<unsigned char> bytes;
    for (const std::string& one : all) Add(bytes, one[offset]);
    return bytes;
  }
  std::vector<unsigned char> Last() const {
    std::vector<unsigned char> bytes;
    for (const std::string& one : all) Add(bytes, one.back());
    return bytes;
  }

  static void Add(std::vector<unsigned char>& bytes, char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::find(bytes.begin(), bytes.end(), byte) == bytes.end()) bytes.push_back(byte);
  }

  std::vector<std::string> all;
  std::size_t least = 0;
  std::size_t most = 0;
};

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80; }

// False when the byte at `offset` is inside of a valid character.
bool BeginsCharacter(std::string_view text, std::size_t offset) {
  if (!IsContinuation(text[offset])) return true;
  for (std::size_t back = 1; back <= std::min(offset, kMostContinuations); ++back) {
    if (IsContinuation(text[offset - back])) continue;
    return FoldedCharacter(text.substr(offset - back)).bytes <= back;
  }
  return true;
}

}  // namespace

SearchText::SearchText(std::string_view text) {
  if (text.find_first_of("\r\n") != std::string_view::npos) return;
  while (!text.empty()) {
    const Character next = FoldedCharacter(text);
    folded_.push_back(next.value);
    text.remove_prefix(next.bytes);
  }
  AddAnchors();
}

// Bytes that are written in one way only come first: they are found fastest where they are rare.
void SearchText::AddAnchors() {
  std::vector<Anchor> pairs;
  std::size_t least_before = 0;
  std::size_t most_before = 0;
  std::vector<unsigned char> last;
  for (const std::int32_t folded : folded_) {
    const Writings writings(folded);
    const auto add = [&](std::vector<Anchor>& anchors, BytePair pair, std::ptrdiff_t ahead) {
      if (anchors.size() >= kMostAnchors) return;
      anchors.push_back({std::move(pair), ahead, least_before, most_before});
    };
    if (!last.empty()) add(pairs, {last, writings.At(0), 1}, 1);
    const std::size_t fixed = writings.least == writings.most ? writings.least : 0;
    for (std::size_t i = 0; i < fixed; ++i) {
      const auto ahead = -static_cast<std::ptrdiff_t>(i);
      if (i + 1 < fixed) add(pairs, {writings.At(i), writings.At(i + 1), 1}, ahead);
      if (writings.all.size() == 1) add(anchors_, {writings.At(i), writings.At(i), 0}, ahead);
    }
    if (folded_.size() == 1) add(pairs, {writings.At(0), writings.At(0), 0}, 0);
    last = writings.Last();
    least_before += writings.least;
    most_before += writings.most;
  }
  anchors_.insert(anchors_.end(), pairs.begin(), pairs.end());
  most_bytes_ = most_before;
}

const SearchText::Anchor& SearchText::BestAnchor(std::string_view sample) const {
  const Anchor* best = &anchors_.front();
  std::size_t fewest = best->pair.CountIn(sample, sample.size());
  for (const Anchor& anchor : anchors_) {
    if (fewest == 0) break;
    const std::size_t count = anchor.pair.CountIn(sample, fewest);
    if (count < fewest) {
      best = &anchor;
      fewest = count;
    }
  }
  return *best;
}

SearchText::Found SearchText::FindByAnchor(const Anchor& anchor, std::string_view text,
                                           std::size_t from) const {
  for (std::size_t place = anchor.pair.FindIn(text, from); place != std::string_view::npos;
       place = anchor.pair.FindIn(text, place + 1)) {
    const Found found = FindAround(anchor, text, place, from);
    if (found.bytes > 0) return found;
  }
  return {};
}

// The text's place around its anchor's at `place`, beginning at or after `from`.
SearchText::Found SearchText::FindAround(const Anchor& anchor, std::string_view text,
                                         std::size_t place, std::size_t from) const {
  const std::ptrdiff_t ahead = static_cast<std::ptrdiff_t>(place) + anchor.ahead;
  if (ahead < 0) return {};
  const auto anchored = static_cast<std::size_t>(ahead);
  for (std::size_t before = anchor.least_before; before <= anchor.most_before; ++before) {
    if (before > anchored || anchored - before < from) break;
    const std::size_t bytes = BytesAt(text, anchored - before);
    if (bytes > 0) return {anchored - before, bytes};
  }
  return {};
}

// How many bytes the text takes that stands at `offset`; 0 when it does not stand there.
std::size_t SearchText::BytesAt(std::string_view text, std::size_t offset) const {
  std::size_t end = offset;
  for (const std::int32_t folded : folded_) {
    if (end == text.size()) return 0;
    const Character next = FoldedCharacter(text.substr(end));
    if (next.value != folded) return 0;
    end += next.bytes;
  }
  return BeginsCharacter(text, offset) ? end - offset : 0;
}

}  // namespace kel
