// Writes the lines of a report page file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/file.h"
#include "engine/page_format.h"

namespace kel {

/// Collects lines in a big block before they go to the file, and remembers where each page begins.
/// It knows nothing of what a page holds. The file must outlive it.
class PageFileWriter {
 public:
  explicit PageFileWriter(OutputFile& file);
  PageFileWriter(const PageFileWriter&) = delete;
  PageFileWriter& operator=(const PageFileWriter&) = delete;

  /// The next line is the first of a page.
  void BeginPage() { page_offsets_.push_back(written_ + block_.size()); }

  /// A line and its line end. Throws Error when the file cannot take it.
  void WriteLine(std::string_view line);
  void WriteEmptyLines(std::int32_t count);

  /// Hands what is left in the block to the file.
  void Finish();

  /// Byte offsets of the pages begun so far. Call it last.
  std::vector<std::uint64_t> TakePageOffsets() { return std::move(page_offsets_); }

 private:
  void Append(std::string_view bytes);

  OutputFile& file_;
  std::string block_;
  std::uint64_t written_ = 0;  // bytes already handed to the file
  std::vector<std::uint64_t> page_offsets_;
};

}  // namespace kel
