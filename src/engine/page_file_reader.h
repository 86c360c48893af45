// Reads the lines of a report page file, or of any text file in its format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

#include "common/file.h"
#include "engine/page_format.h"

namespace kel {

/// Hands out the lines of a page file in order, from a page of the caller's choice on. The file is
/// open as long as the object lives: make one per operation. Blocks of bounded size are read; only
/// for NextLine does a line longer than a block make the buffer grow. Lines may end with CR LF, LF,
/// or the file's end.
///
///     PageFileReader reader(path);
///     reader.GoToPage(12, page_length, offsets);
///     while (reader.NextLine(line)) ...
class PageFileReader {
 public:
  /// Throws Error when the file cannot be opened. Links are followed to a caller's own file only.
  explicit PageFileReader(const std::filesystem::path& path, Links links = Links::kRefuse);

  /// Makes the first line of page `page` (counted from 1 in the file) the next one. Where the page
  /// stands is taken from `page_offsets` (the writer's) as far as these go; otherwise line ends are
  /// counted from the nearest known place. False when the file ends before that page.
  bool GoToPage(PageNumber page, std::int32_t page_length,
                std::span<const std::uint64_t> page_offsets = {});

  /// Makes the line that begins at byte `offset`, number `line` of the file, the next one.
  void GoTo(std::uint64_t offset, LineNumber line);

  /// Passes over lines. False when the file ends before.
  bool SkipLines(LineNumber count);
  /// Whether there is no next line.
  bool AtEnd() { return position_ == block_size_ && !FillBlock(); }

  /// The next line without its line end; the view is good until the next call. False at the end.
  /// Throws Error when the file cannot be read.
  bool NextLine(std::string_view& line);
  /// The same of the line's first `most_bytes` bytes. The buffer does not grow with the rest.
  bool NextLineStart(std::string_view& line, std::size_t most_bytes);

  /// The next lines as they stand in the file, with their ends: at least one, at most what a block
  /// holds. Only the file's last line may lack its end. Good until the next call. They are not
  /// counted: GoTo before NextLineNumber is asked again.
  bool NextLines(std::string_view& lines);

  /// Number of the next line, counted from 1.
  LineNumber NextLineNumber() const { return next_line_; }
  /// Where the next line begins in the file.
  std::uint64_t Offset() const { return block_offset_ + position_; }
  /// The file itself, for copying its bytes.
  const InputFile& File() const { return file_; }

 private:
  void CutLongLine(std::string_view begin);
  bool FillBlock();

  InputFile file_;
  std::vector<char> block_;
  std::size_t block_size_ = 0;      // bytes of the file in block_
  std::size_t position_ = 0;        // of the next line in block_
  std::uint64_t block_offset_ = 0;  // of block_ in the file
  LineNumber next_line_ = 1;
  std::vector<char> long_line_;  // the beginning of a line that NextLineStart had to cut
};

}  // namespace kel
