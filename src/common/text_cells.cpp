#include "common/text_cells.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "common/code_point.h"

namespace kel {
namespace {

constexpr Cells kWidest = 2;
constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7f;
constexpr unsigned char kFirstNonAscii = 0x80;
constexpr unsigned char kEscape = 0x1b;

// Eight bytes at once, in the manner of the well-known bit tricks on words.
using Word = std::uint64_t;
constexpr Word kOnes = 0x0101010101010101;
constexpr Word kHighBits = kOnes * 0x80;

Word LoadWord(const char* bytes) {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// Exact as a whole: non-zero when, and only when, some byte is a control code, DEL or not ASCII.
Word NotPrintable(Word word) {
  const Word below_blank = (word - kOnes * kFirstPrintable) & ~word;
  const Word del_or_above = word + kOnes;
  return (word | below_blank | del_or_above) & kHighBits;
}

bool IsAscii(char c) { return static_cast<unsigned char>(c) < kFirstNonAscii; }

bool IsPlainByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= kFirstPrintable && byte < kDelete) || byte == kEscape;
}

// The number of ASCII bytes before the first other byte, looking at `limit` bytes at most.
std::size_t AsciiRun(std::string_view text, std::size_t limit) {
  const std::size_t end = std::min(text.size(), limit);
  std::size_t run = 0;
  while (end - run >= sizeof(Word) && (LoadWord(text.data() + run) & kHighBits) == 0) {
    run += sizeof(Word);
  }
  while (run < end && IsAscii(text[run])) ++run;
  return run;
}

Cells WidthOf(CodePoint decoded) {
  if (decoded.value < kFirstNonAscii) return 1;  // ASCII, and bytes that are no UTF-8
  return std::clamp<Cells>(utf8proc_charwidth(decoded.value), 0, kWidest);
}

}  // namespace

bool IsPlain(std::string_view text) noexcept {
  std::size_t done = 0;
  for (; text.size() - done >= sizeof(Word); done += sizeof(Word)) {
    if (NotPrintable(LoadWord(text.data() + done)) == 0) continue;
    const std::string_view eight = text.substr(done, sizeof(Word));
    if (!std::all_of(eight.begin(), eight.end(), IsPlainByte)) return false;
  }
  return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(done), text.end(), IsPlainByte);
}

std::string_view TrimBlanks(std::string_view text) noexcept {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string CleanText(std::string_view text) {
  constexpr std::string_view kTurnedBlank("\r\n\t\f\x01\0", 6);
  std::string clean;
  clean.reserve(text.size());
  for (std::size_t done = 0; done < text.size();) {
    const std::size_t found = std::min(text.find_first_of(kTurnedBlank, done), text.size());
    clean.append(text, done, found - done);
    if (found == text.size()) break;
    clean.push_back(' ');
    done = found + (text.substr(found, 2) == "\r\n" ? 2 : 1);
  }
  return clean;
}

TextPiece FirstGrapheme(std::string_view text) noexcept {
  CodePoint last = FirstCodePoint(text);
  TextPiece grapheme{last.bytes, WidthOf(last)};
  if (!last.IsValid()) return grapheme;
  utf8proc_int32_t break_state = 0;
  // An ASCII character never continues a grapheme, also not one that Unicode would join to it.
  while (grapheme.bytes < text.size() && !IsAscii(text[grapheme.bytes])) {
    const CodePoint next = FirstCodePoint(text.substr(grapheme.bytes));
    if (!next.IsValid() || utf8proc_grapheme_break_stateful(last.value, next.value, &break_state)) {
      break;
    }
    grapheme.bytes += next.bytes;
    grapheme.cells = std::max(grapheme.cells, WidthOf(next));
    last = next;
  }
  return grapheme;
}

Cells CellWidth(std::string_view text) noexcept {
  std::size_t cells = 0;
  for (;;) {
    const std::size_t run = AsciiRun(text, text.size());
    if (run == text.size()) {
      cells += run;
      return static_cast<Cells>(std::min<std::size_t>(cells, std::numeric_limits<Cells>::max()));
    }
    // The last ASCII character may carry a combining mark.
    const std::size_t alone = run == 0 ? 0 : run - 1;
    const TextPiece grapheme = FirstGrapheme(text.substr(alone));
    cells += alone + static_cast<std::size_t>(grapheme.cells);
    text.remove_prefix(alone + grapheme.bytes);
  }
}

TextPiece FitCells(std::string_view text, Cells width) noexcept {
  const Cells room = std::max<Cells>(width, 0);
  const auto most_ascii = static_cast<std::size_t>(room);
  const std::size_t run = AsciiRun(text, most_ascii + 1);
  if (run > most_ascii) return {most_ascii, room};
  if (run == text.size()) return {run, static_cast<Cells>(run)};

  const std::size_t alone = run == 0 ? 0 : run - 1;
  TextPiece fitting{alone, static_cast<Cells>(alone)};
  while (fitting.bytes < text.size()) {
    const TextPiece grapheme = FirstGrapheme(text.substr(fitting.bytes));
    if (grapheme.cells > room - fitting.cells) break;
    fitting.bytes += grapheme.bytes;
    fitting.cells += grapheme.cells;
  }
  return fitting;
}

void AppendAligned(std::string& line, std::string_view text, Cells width, int alignment) {
  const Cells room = std::max<Cells>(width, 0);
  const TextPiece piece = FitCells(text, room);
  const auto blanks = static_cast<std::size_t>(room - piece.cells);
  // A blank left by a cut stands for the half of a wide grapheme, at the end of every alignment.
  const bool blanks_behind = alignment == kAlignLeft || piece.bytes < text.size();
  if (!blanks_behind) line.append(blanks, ' ');
  line.append(text.data(), piece.bytes);
  if (blanks_behind) line.append(blanks, ' ');
}

}  // namespace kel
