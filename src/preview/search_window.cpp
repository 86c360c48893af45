#include "preview/search_window.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "common/control_codes.h"
#include "engine/line_codes.h"

namespace kel {

namespace {

// What is seen of a line's piece behind a searched text: enough for its last grapheme.
constexpr std::size_t kCountedAtOnce = std::size_t{256} * 1024;
constexpr std::size_t kLookAhead = 64;
constexpr std::size_t kMostBackToAscii = 4096;

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

// Where a line that begins with `text` may be cut at or before `wanted`: before an ASCII character,
// which always begins a grapheme, else between two graphemes; 0 when one is as long as that.
std::size_t CutAt(std::string_view text, std::size_t wanted) {
  const std::size_t least = wanted > kMostBackToAscii ? wanted - kMostBackToAscii : 1;
  for (std::size_t cut = wanted; cut >= least; --cut) {
    if (IsAscii(text[cut])) return cut;
  }
  std::size_t cut = 0;
  for (std::size_t next = 0; next <= wanted; next += FirstGrapheme(text.substr(next)).bytes) {
    cut = next;
  }
  return cut;
}

}  // namespace

SearchWindow::SearchWindow(const InputFile& file, std::uint64_t offset, LineNumber line,
                           std::size_t most_bytes, std::size_t block_size)
    : file_(file),
      offset_(offset),
      overlap_(most_bytes + kLookAhead),
      bytes_(std::max(block_size, 4 * overlap_)),
      line_(line) {}

bool SearchWindow::Next() {
  PassOver();
  for (;;) {
    const bool at_end = !Fill();
    if (size_ == 0) return false;
    if (TakeWholeLines() || TakePiece(at_end)) return true;
  }
}

// Drops what belonged to this window.
void SearchWindow::PassOver() {
  const std::string_view passed = Text().substr(0, limit_);
  if (!codes_removed_) {
    if (uncounted_ == 0) uncounted_from_ = offset_ - size_;
    uncounted_ += limit_;
    cells_before_ = 0;
  } else if (limit_ > 0) {
    CountUncounted();
    const LineNumber lines = CountOf('\n', passed);
    line_ += lines;
    cells_before_ = lines > 0 ? 0 : cells_before_ + DrawnCells(passed);
  }
  std::memmove(bytes_.data(), bytes_.data() + limit_, size_ - limit_);
  size_ -= limit_;
  text_ = limit_ = 0;
}

LineNumber SearchWindow::FirstLine() {
  CountUncounted();
  return line_;
}

// Only who has found something asks for line numbers, so the lines of whole windows are counted
// then, out of the file.
void SearchWindow::CountUncounted() {
  std::vector<char> block(uncounted_ > 0 ? kCountedAtOnce : 0);
  while (uncounted_ > 0) {
    const std::uint64_t wanted = std::min<std::uint64_t>(uncounted_, block.size());
    const std::size_t got =
        file_.ReadAt(uncounted_from_, std::span(block).first(static_cast<std::size_t>(wanted)));
    if (got == 0) break;  // the file was cut meanwhile
    line_ += CountOf('\n', {block.data(), got});
    uncounted_from_ += got;
    uncounted_ -= got;
  }
  uncounted_ = 0;
}

// False when the file has nothing more.
bool SearchWindow::Fill() {
  const std::size_t got = file_.ReadAt(offset_, std::span(bytes_).subspan(size_));
  offset_ += got;
  size_ += got;
  return size_ == bytes_.size();
}

bool SearchWindow::TakeWholeLines() {
  if (without_codes_ > 0) return false;
  const std::size_t last = std::string_view(bytes_.data(), size_).rfind('\n');
  if (last == std::string_view::npos) return false;
  text_ = limit_ = last + 1;
  codes_removed_ = false;
  return true;
}

// A line whose end is not in the block, or the end of such a line. False when too little of it is
// left to look at.
bool SearchWindow::TakePiece(bool at_end) {
  char* const begin = bytes_.data();
  const std::string_view unread(begin + without_codes_, size_ - without_codes_);
  const std::size_t line_end = unread.find('\n');
  const bool ends = line_end != std::string_view::npos;
  const std::size_t ready = ends     ? line_end
                            : at_end ? unread.size()
                                     : unread.size() - UnfinishedCode(unread);
  const std::size_t left = RemoveCodes(begin + without_codes_, ready);
  std::memmove(begin + without_codes_ + left, begin + without_codes_ + ready,
               unread.size() - ready);
  size_ -= ready - left;
  without_codes_ += left;

  codes_removed_ = true;
  text_ = without_codes_ + (ends ? 1 : 0);
  if (ends || at_end) {
    limit_ = text_;
    without_codes_ = 0;
    return true;
  }
  if (text_ <= overlap_) return false;
  const std::size_t cut = CutAt(Text(), text_ - overlap_);
  limit_ = cut > 0 ? cut : text_ - overlap_;
  without_codes_ = text_ - limit_;
  return true;
}

std::int64_t CountOf(char wanted, std::string_view text) {
  // Counted in bytes, that is in whole vectors, as far as a byte can count.
  constexpr std::size_t kMostInByte = 255;
  constexpr std::size_t kLanes = 64;
  std::int64_t count = 0;
  while (text.size() >= kLanes) {
    std::array<unsigned char, kLanes> counts{};
    const std::size_t rounds = std::min(text.size() / kLanes, kMostInByte);
    for (std::size_t round = 0; round < rounds; ++round) {
      const char* at = text.data() + round * kLanes;
      for (std::size_t i = 0; i < kLanes; ++i) {
        counts[i] = static_cast<unsigned char>(counts[i] + (at[i] == wanted ? 1 : 0));
      }
    }
    for (const unsigned char lane : counts) count += lane;
    text.remove_prefix(rounds * kLanes);
  }
  return count + std::count(text.begin(), text.end(), wanted);
}

std::int64_t DrawnCells(std::string_view text) {
  return CellWidth(text) - CountOf(kFormFeed, text) - CountOf(kEsc, text);
}

TextPiece FirstDrawn(std::string_view text) {
  TextPiece piece = FirstGrapheme(text);
  if (text.front() == kFormFeed || text.front() == kEsc) piece.cells = 0;
  return piece;
}

}  // namespace kel
