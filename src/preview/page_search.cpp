#include "preview/page_search.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

#include "engine/line_codes.h"
#include "preview/search_window.h"

namespace kel {

namespace {

// Codes are removed from so many bytes at once: where one line has to be looked at, others do.
constexpr std::size_t kRemovedAtOnce = 4096;
// The anchor is chosen by a sample of every so-manieth window.
constexpr std::size_t kSample = std::size_t{16} * 1024;
constexpr int kWindowsPerSample = 16;

class PageSearch {
 public:
  PageSearch(const PageFileReader& reader, const SearchText& text, std::size_t block_size)
      : text_(text),
        window_(reader.File(), reader.Offset(), reader.NextLineNumber(), text.MostBytes(),
                block_size) {}

  std::optional<Match> Run(Cells after_column);

 private:
  void ChooseAnchor();
  std::optional<Match> FindAcrossCodes(std::size_t from);
  std::optional<Match> FindIn(std::size_t begin, std::size_t end, Cells after_column);
  Match MatchAt(std::string_view piece, SearchText::Found found, std::size_t begin);
  std::int64_t CellsBefore(std::size_t begin) const;

  const SearchText& text_;
  SearchWindow window_;
  const SearchText::Anchor* anchor_ = nullptr;
  int windows_ = 0;
  std::string without_codes_;
};

Cells ToCells(std::int64_t cells) {
  return static_cast<Cells>(std::min<std::int64_t>(cells, std::numeric_limits<Cells>::max()));
}

std::size_t LineBegin(std::string_view text, std::size_t inside) {
  return text.substr(0, inside).rfind('\n') + 1;  // npos + 1 is 0
}

std::size_t LineEnd(std::string_view text, std::size_t inside) {
  return std::min(text.find('\n', inside), text.size());
}

// Byte of the first grapheme whose column is greater than `column`.
std::size_t BehindColumn(std::string_view line, std::int64_t cells_before, Cells column) {
  std::size_t offset = 0;
  for (std::int64_t cells = cells_before; offset < line.size() && cells < column;) {
    const TextPiece grapheme = FirstDrawn(line.substr(offset));
    offset += grapheme.bytes;
    cells += grapheme.cells;
  }
  return offset;
}

std::optional<Match> PageSearch::Run(Cells after_column) {
  while (window_.Next()) {
    ChooseAnchor();
    const std::string_view text = window_.Text();
    std::size_t from = 0;
    if (after_column > window_.CellsBefore()) {
      from = LineEnd(text, 0);
      std::optional<Match> match = FindIn(0, from, after_column);
      if (match) return match;
      if (from >= window_.Limit()) continue;  // the line goes on in the next window
      after_column = 0;
    }
    // One byte alone is never parted by a code.
    const bool codes = !window_.CodesRemoved() && (anchor_->pair.IsOneByte() || MayHoldCodes(text));
    std::optional<Match> match = codes ? FindAcrossCodes(from) : FindIn(from, text.size(), 0);
    if (match) return match;
  }
  return std::nullopt;
}

void PageSearch::ChooseAnchor() {
  if (windows_++ % kWindowsPerSample != 0) return;
  anchor_ = &text_.BestAnchor(window_.Text().substr(0, kSample));
}

// Codes are removed only where a part of the text stands, or the beginning of such a part in front
// of a code.
std::optional<Match> PageSearch::FindAcrossCodes(std::size_t from) {
  const std::string_view text = window_.Text();
  const BytePair pair = anchor_->pair.AcrossCodes();
  for (std::size_t place = pair.FindIn(text, from); place != std::string_view::npos;
       place = pair.FindIn(text, from)) {
    const std::size_t begin = LineBegin(text, place);
    from = LineEnd(text, std::min(std::max(place, begin + kRemovedAtOnce), text.size()));
    std::optional<Match> match = FindIn(begin, from, 0);
    if (match) return match;
  }
  return std::nullopt;
}

// `begin` and `end` are a line's beginning and a line's end in the window, or the window's own.
std::optional<Match> PageSearch::FindIn(std::size_t begin, std::size_t end, Cells after_column) {
  std::string_view piece = window_.Text().substr(begin, end - begin);
  if (!window_.CodesRemoved() && MayHoldCodes(piece)) {
    without_codes_ = piece;
    without_codes_.resize(RemoveCodes(without_codes_.data(), without_codes_.size()));
    piece = without_codes_;
  }
  const std::size_t from = BehindColumn(piece, CellsBefore(begin), after_column);
  const SearchText::Found found = text_.FindByAnchor(*anchor_, piece, from);
  const bool in_next_window = window_.CodesRemoved() && begin + found.offset >= window_.Limit();
  if (found.bytes == 0 || in_next_window) return std::nullopt;
  return MatchAt(piece, found, begin);
}

// A match covers whole graphemes.
Match PageSearch::MatchAt(std::string_view piece, SearchText::Found found, std::size_t begin) {
  std::size_t offset = LineBegin(piece, found.offset);
  const LineNumber line = window_.FirstLine() + CountOf('\n', window_.Text().substr(0, begin)) +
                          CountOf('\n', piece.substr(0, offset));
  std::int64_t end = offset == 0 ? CellsBefore(begin) : 0;
  std::int64_t column = end;
  while (offset < found.offset + found.bytes) {
    const TextPiece grapheme = FirstDrawn(piece.substr(offset));
    if (offset <= found.offset) column = end;
    end += grapheme.cells;
    offset += grapheme.bytes;
  }
  return {line, ToCells(column + 1), std::max<Cells>(ToCells(end - column), 1)};
}

std::int64_t PageSearch::CellsBefore(std::size_t begin) const {
  return begin == 0 ? window_.CellsBefore() : 0;
}

}  // namespace

std::optional<Match> FindMatch(PageFileReader& reader, const SearchText& text, LineNumber line,
                               Cells after_column, std::size_t block_size) {
  if (text.IsFoundNowhere() || !reader.SkipLines(line - reader.NextLineNumber())) {
    return std::nullopt;
  }
  return PageSearch(reader, text, block_size).Run(after_column);
}

}  // namespace kel
