#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "common/number_text.h"
#include "data/cell_tests.h"
#include "data/field_value.h"
#include "data/folded_text.h"

namespace kel {
namespace {

/// Whether characters beyond ASCII fold to a letter: the long s and the sign of Kelvin do.
constexpr bool HasVariantsBeyondAscii(char folded) noexcept {
  return folded == 'k' || folded == 's';
}

bool IsPlainAscii(std::string_view folded) noexcept {
  return std::all_of(folded.begin(), folded.end(),
                     [](char c) { return IsAscii(c) && !HasVariantsBeyondAscii(c); });
}

/// Asks about the text of a cell; Test has MatchesText.
template <typename Test>
class TextCells : public CellTest {
 public:
  TextCells(Test test, FieldType type) : test_(std::move(test)), type_(type) {}

  bool Matches(const CellView& cell) const override {
    if (cell.IsNull()) return false;
    NumberBuffer number;
    return test_.MatchesText(CellText(cell, type_, number));
  }
  void MatchChunk(const ColumnChunk& chunk, const RowMask& wanted,
                  RowMask& matches) const override {
    if (chunk.IsUniform() && chunk.KindOf(0) == CellView::Kind::kText) {
      MatchWanted(chunk, wanted, matches,
                  [&](std::size_t row) { return test_.MatchesText(chunk.BytesAt(row)); });
    } else {
      MatchWanted(chunk, wanted, matches,
                  [&](std::size_t row) { return Matches(chunk.Cell(row)); });
    }
  }

 private:
  Test test_;
  FieldType type_;
};

/// Whether a text is (or is not) the same as another.
class Sameness {
 public:
  Sameness(std::string_view text, bool is_same)
      : folded_(Folded(text)), is_same_(is_same), is_plain_(IsPlainAscii(folded_)) {}

  bool MatchesText(std::string_view text) const noexcept {
    if (is_plain_ && text.size() != folded_.size()) return !is_same_;
    return (CompareFolded(text, folded_) == 0) == is_same_;
  }

 private:
  std::string folded_;
  bool is_same_;
  bool is_plain_;  // all texts that are the same are as long
};

/// Whether a text stands before or behind another.
class Sequence {
 public:
  Sequence(std::string_view text, ComparisonOperator comparison)
      : folded_(Folded(text)), comparison_(comparison) {}

  bool MatchesText(std::string_view text) const noexcept {
    const int order = CompareFolded(text, folded_);
    if (comparison_ == ComparisonOperator::kLess) return order < 0;
    if (comparison_ == ComparisonOperator::kLessOrEqual) return order <= 0;
    return comparison_ == ComparisonOperator::kGreater ? order > 0 : order >= 0;
  }

 private:
  std::string folded_;
  ComparisonOperator comparison_;
};

bool IsAnyRun(char c) noexcept { return c == '*' || c == '%'; }
bool IsAnyOne(char c) noexcept { return c == '?' || c == '_'; }

// Eight bytes of a text at once.
constexpr std::uint64_t kOnes = 0x0101010101010101U;
constexpr std::uint64_t kHighBits = kOnes * 0x80U;

std::uint64_t BlockAt(std::string_view text, std::size_t at) noexcept {
  std::uint64_t block = 0;
  std::memcpy(&block, text.data() + at, sizeof(block));
  return block;
}

bool IsAsciiText(std::string_view text) noexcept {
  constexpr std::size_t kBlock = sizeof(std::uint64_t);
  if (text.size() < kBlock) return std::all_of(text.begin(), text.end(), IsAscii);
  std::uint64_t bits = BlockAt(text, text.size() - kBlock);
  for (std::size_t at = 0; at + kBlock <= text.size(); at += kBlock) bits |= BlockAt(text, at);
  return (bits & kHighBits) == 0;
}

/// The first place of a byte, or of the other case of a letter; the text's size when there is none.
std::size_t FindInAnyCase(char folded, std::string_view text) noexcept {
  std::size_t at = 0;
  if constexpr (std::endian::native == std::endian::little) {
    const std::uint64_t wanted = kOnes * static_cast<unsigned char>(folded);
    const std::uint64_t case_bits = folded >= 'a' && folded <= 'z' ? kOnes * ('a' - 'A') : 0;
    for (; at + sizeof(wanted) <= text.size(); at += sizeof(wanted)) {
      const std::uint64_t differences = (BlockAt(text, at) | case_bits) ^ wanted;
      const std::uint64_t zeros = (differences - kOnes) & ~differences & kHighBits;
      if (zeros != 0) return at + static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
    }
  }
  while (at < text.size() && FoldAscii(text[at]) != folded) ++at;
  return at;
}

constexpr std::size_t kFitsNot = std::string_view::npos;

/// A text whose bytes are its characters, in any case of letters.
struct BytesInAnyCase {
  static char Fold(char c) noexcept { return FoldAscii(c); }
  static std::size_t CharacterBytes(std::string_view /*text*/) noexcept { return 1; }
  static std::size_t Find(char folded, std::string_view text) noexcept {
    return FindInAnyCase(folded, text);
  }
  /// The first place where a text that ends with `piece` may have it.
  static std::size_t FirstEnding(std::string_view text, std::string_view piece) noexcept {
    return text.size() - std::min(piece.size(), text.size());
  }
};

/// A text in UTF-8 that is folded.
struct FoldedCharacters {
  static char Fold(char c) noexcept { return c; }
  static std::size_t CharacterBytes(std::string_view text) { return FoldedCharacter(text).bytes; }
  static std::size_t Find(char folded, std::string_view text) noexcept {
    return std::min(text.find(folded), text.size());
  }
  static std::size_t FirstEnding(std::string_view /*text*/, std::string_view /*piece*/) noexcept {
    return 0;
  }
};

/// How many bytes of the beginning of a text a piece of a pattern takes.
template <typename Text>
std::size_t Fits(std::string_view piece, std::string_view text) noexcept {
  std::size_t at = 0;
  for (const char c : piece) {
    if (at == text.size()) return kFitsNot;
    if (IsAnyOne(c)) {
      at += Text::CharacterBytes(text.substr(at));
    } else if (Text::Fold(text[at]) == c) {
      ++at;
    } else {
      return kFitsNot;
    }
  }
  return at;
}

/// Drops what stands before a piece, and the piece; false where there is none.
template <typename Text>
bool SkipThrough(std::string_view piece, std::string_view& text) noexcept {
  while (true) {
    if (!IsAnyOne(piece[0])) text.remove_prefix(Text::Find(piece[0], text));
    if (text.empty()) return false;
    const std::size_t length = Fits<Text>(piece, text);
    if (length != kFitsNot) {
      text.remove_prefix(length);
      return true;
    }
    text.remove_prefix(Text::CharacterBytes(text));
  }
}

template <typename Text>
bool EndsWith(std::string_view piece, std::string_view text) noexcept {
  text.remove_prefix(Text::FirstEnding(text, piece));
  while (Fits<Text>(piece, text) != text.size()) {
    if (text.empty()) return false;
    text.remove_prefix(Text::CharacterBytes(text));
  }
  return true;
}

/// A pattern of Like: the pieces between its "any runs".
class Pattern {
 public:
  explicit Pattern(std::string_view pattern) {
    const std::string folded = Folded(pattern);
    is_plain_ = IsPlainAscii(folded) && std::none_of(folded.begin(), folded.end(), IsAnyOne);
    std::string piece;
    for (const char c : folded) {
      if (IsAnyRun(c)) {
        AddPiece(piece);
        piece.clear();
      } else {
        piece += c;
      }
    }
    last_ = piece;
  }

  bool MatchesText(std::string_view text) const {
    if (is_plain_ || IsAsciiText(text)) return MatchesAs<BytesInAnyCase>(text);
    thread_local std::string folded;
    folded.clear();
    if (folded.capacity() > kMostKept) folded.shrink_to_fit();
    AppendFolded(text, folded);
    return MatchesAs<FoldedCharacters>(folded);
  }

 private:
  static constexpr std::size_t kMostKept = std::size_t{64} * 1024;

  void AddPiece(const std::string& piece) {
    if (!has_run_) {
      first_ = piece;
    } else if (!piece.empty()) {
      middle_.push_back(piece);
    }
    has_run_ = true;
  }

  template <typename Text>
  bool MatchesAs(std::string_view text) const noexcept {
    if (!has_run_) return Fits<Text>(last_, text) == text.size();
    const std::size_t begin = Fits<Text>(first_, text);
    if (begin == kFitsNot) return false;
    text.remove_prefix(begin);
    for (const std::string& piece : middle_) {
      if (!SkipThrough<Text>(piece, text)) return false;
    }
    return last_.empty() || EndsWith<Text>(last_, text);
  }

  bool has_run_ = false;
  bool is_plain_ = false;            // its bytes are found in any text as they are
  std::string first_;                // begins the text
  std::vector<std::string> middle_;  // found one behind the other
  std::string last_;                 // ends the text
};

}  // namespace

std::unique_ptr<CellTest> TextTest(ComparisonOperator comparison, std::string_view text) {
  const bool is_equal = comparison == ComparisonOperator::kEqual;
  if (is_equal || comparison == ComparisonOperator::kNotEqual) {
    return std::make_unique<TextCells<Sameness>>(Sameness(text, is_equal), FieldType::kText);
  }
  return std::make_unique<TextCells<Sequence>>(Sequence(text, comparison), FieldType::kText);
}

std::unique_ptr<CellTest> LikeTest(std::string_view pattern, FieldType type) {
  return std::make_unique<TextCells<Pattern>>(Pattern(pattern), type);
}

}  // namespace kel
