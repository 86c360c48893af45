#include "engine/page_range.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "common/file.h"
#include "engine/page_file_reader.h"

namespace kel {

namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

std::uint64_t PageOffset(PageFileReader& reader, PageNumber page, std::int32_t page_length,
                         std::span<const std::uint64_t> page_offsets) {
  return reader.GoToPage(page, page_length, page_offsets) ? reader.Offset() : reader.File().Size();
}

}  // namespace

void CopyPages(const std::filesystem::path& page_file, const std::filesystem::path& range_file,
               PageNumber from, PageNumber to, std::int32_t page_length,
               std::span<const std::uint64_t> page_offsets) {
  PageFileReader reader(page_file);
  const std::uint64_t begin =
      PageOffset(reader, std::max<PageNumber>(from, 1), page_length, page_offsets);
  const std::uint64_t end =
      to < std::numeric_limits<PageNumber>::max()
          ? PageOffset(reader, std::max<PageNumber>(to, 0) + 1, page_length, page_offsets)
          : reader.File().Size();
  OutputFile copy(range_file, Links::kRefuse);
  std::vector<char> block(kBlockSize);
  for (std::uint64_t position = begin; position < end;) {
    const std::size_t wanted = std::min<std::uint64_t>(block.size(), end - position);
    const std::size_t got = reader.File().ReadAt(position, std::span(block).first(wanted));
    if (got == 0) break;
    copy.Write({block.data(), got});
    position += got;
  }
  copy.Commit();
}

}  // namespace kel
