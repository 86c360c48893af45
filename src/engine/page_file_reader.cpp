#include "engine/page_file_reader.h"

#include <algorithm>
#include <cstring>

namespace kel {

namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

std::string_view WithoutCarriageReturn(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

}  // namespace

PageFileReader::PageFileReader(const std::filesystem::path& path, Links links)
    : file_(path, links), block_(kBlockSize) {}

bool PageFileReader::GoToPage(PageNumber page, std::int32_t page_length,
                              std::span<const std::uint64_t> page_offsets) {
  const LineNumber target = FirstLineOfPage(page, page_length);
  std::uint64_t offset = 0;
  LineNumber line = 1;
  if (!page_offsets.empty() && page > 1) {
    const auto known = std::min(static_cast<std::size_t>(page), page_offsets.size());
    offset = page_offsets[known - 1];
    line = FirstLineOfPage(static_cast<PageNumber>(known), page_length);
  }
  GoTo(offset, line);
  return SkipLines(target - line) && !AtEnd();
}

void PageFileReader::GoTo(std::uint64_t offset, LineNumber line) {
  block_offset_ = offset;
  block_size_ = position_ = 0;
  next_line_ = line;
}

bool PageFileReader::SkipLines(LineNumber count) {
  while (count > 0) {
    const char* begin = block_.data() + position_;
    const char* end = block_.data() + block_size_;
    const void* found =
        begin == end ? nullptr : std::memchr(begin, '\n', static_cast<std::size_t>(end - begin));
    if (found == nullptr) {
      position_ = block_size_;
      if (!FillBlock()) return false;
      continue;
    }
    position_ = static_cast<std::size_t>(static_cast<const char*>(found) - block_.data()) + 1;
    ++next_line_;
    --count;
  }
  return true;
}

bool PageFileReader::NextLine(std::string_view& line) {
  std::size_t scanned = 0;
  for (;;) {
    const char* begin = block_.data() + position_;
    const std::size_t size = block_size_ - position_;
    const void* found = std::memchr(begin + scanned, '\n', size - scanned);
    if (found != nullptr) {
      const auto length = static_cast<std::size_t>(static_cast<const char*>(found) - begin);
      line = WithoutCarriageReturn({begin, length});
      position_ += length + 1;
      ++next_line_;
      return true;
    }
    scanned = size;
    if (FillBlock()) continue;
    if (size == 0) return false;
    line = WithoutCarriageReturn({block_.data() + position_, size});
    position_ = block_size_;
    ++next_line_;
    return true;
  }
}

bool PageFileReader::NextLineStart(std::string_view& line, std::size_t most_bytes) {
  const std::size_t wanted = most_bytes + kLineEnd.size();
  for (;;) {
    const std::string_view rest(block_.data() + position_, block_size_ - position_);
    const bool ends = rest.substr(0, wanted).find('\n') != std::string_view::npos;
    if (!ends && rest.size() >= wanted) {
      CutLongLine(rest.substr(0, most_bytes));
      line = {long_line_.data(), long_line_.size()};
      return true;
    }
    if (ends || !FillBlock()) break;
  }
  if (!NextLine(line)) return false;
  line = line.substr(0, most_bytes);
  return true;
}

bool PageFileReader::NextLines(std::string_view& lines) {
  for (;;) {
    lines = {block_.data() + position_, block_size_ - position_};
    const std::size_t last_end = lines.rfind('\n');
    if (last_end != std::string_view::npos) {
      lines = lines.substr(0, last_end + 1);
      break;
    }
    if (FillBlock()) continue;
    if (lines.empty()) return false;
    lines = {block_.data() + position_, block_size_ - position_};
    break;
  }
  position_ += lines.size();
  return true;
}

// Keeps the beginning of the next line while the block moves on over its rest.
void PageFileReader::CutLongLine(std::string_view begin) {
  long_line_.assign(begin.begin(), begin.end());
  const LineNumber next = next_line_ + 1;
  SkipLines(1);
  next_line_ = next;  // also when the line's end is the file's
}

// Moves the unread rest to the front and reads behind it. False when the file has nothing more.
bool PageFileReader::FillBlock() {
  const std::size_t rest = block_size_ - position_;
  std::memmove(block_.data(), block_.data() + position_, rest);
  block_offset_ += position_;
  position_ = 0;
  block_size_ = rest;
  if (rest == block_.size()) block_.resize(block_.size() * 2);
  const std::size_t got = file_.ReadAt(block_offset_ + rest, std::span(block_).subspan(rest));
  block_size_ += got;
  return got > 0;
}

}  // namespace kel
