// The blocks in which a file is searched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "common/file.h"
#include "common/text_cells.h"
#include "engine/page_format.h"

namespace kel {

/// A part of the file, moving from a line's beginning to the end of the file. It holds whole lines;
/// only a line longer than a block comes in pieces, its codes removed, so that no line ever has to
/// be held whole. A searched text of up to `most_bytes` is seen whole from wherever it begins.
class SearchWindow {
 public:
  /// `offset` is where line number `line` begins. The file must outlive this object. A block is
  /// made larger than `block_size` where the searched text needs it.
  SearchWindow(const InputFile& file, std::uint64_t offset, LineNumber line, std::size_t most_bytes,
               std::size_t block_size);

  /// Moves on. False at the file's end. Throws Error when the file cannot be read.
  bool Next();

  /// What is looked at; it may hold more than the places that belong to this window.
  std::string_view Text() const { return {bytes_.data(), text_}; }
  /// A text that begins at this byte or behind it belongs to the next window.
  std::size_t Limit() const { return limit_; }
  /// Whether codes have already been removed. An ESC that is left is none of a code.
  bool CodesRemoved() const { return codes_removed_; }

  /// Number of the line with which the text begins, and the cells of that line before it. The
  /// first is costly: what was passed over is read again for it.
  LineNumber FirstLine();
  std::int64_t CellsBefore() const { return cells_before_; }

 private:
  void PassOver();
  void CountUncounted();
  bool Fill();
  bool TakeWholeLines();
  bool TakePiece(bool at_end);

  const InputFile& file_;
  std::uint64_t offset_;  // of the next byte to be read
  std::size_t overlap_;
  std::vector<char> bytes_;
  std::size_t size_ = 0;  // bytes in bytes_

  std::size_t text_ = 0;
  std::size_t limit_ = 0;
  std::size_t without_codes_ = 0;  // leading bytes of bytes_ whose codes are removed
  bool codes_removed_ = false;
  LineNumber line_;  // but for the lines of the uncounted bytes before the window
  std::uint64_t uncounted_from_ = 0;
  std::uint64_t uncounted_ = 0;
  std::int64_t cells_before_ = 0;
};

/// How often a byte stands in a text.
std::int64_t CountOf(char wanted, std::string_view text);

/// Cells of a text without its codes as they are drawn: form feeds and ESC take none.
std::int64_t DrawnCells(std::string_view text);

/// The same of the first grapheme of a text that is not empty.
TextPiece FirstDrawn(std::string_view text);

}  // namespace kel
