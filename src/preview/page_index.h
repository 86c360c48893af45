// Where the pages of a page file begin.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "common/file.h"
#include "engine/page_file_reader.h"
#include "engine/page_format.h"

namespace kel {

/// The places of a file's pages: the writer's byte offsets as long as the file is the one it wrote,
/// else found by counting line ends, no further than was asked for and never twice. What is found
/// is remembered at intervals that one read of the file bridges.
class PageIndex {
 public:
  /// `offsets` are the writer's, of the file as it is now; null when not known. Offsets that
  /// cannot be this file's are not used.
  PageIndex(const std::filesystem::path& file, std::int32_t page_length,
            std::shared_ptr<const std::vector<std::uint64_t>> offsets);

  /// Makes the first line of `page` the reader's next one; false when the file ends before.
  /// Notices that the file was written anew, or grew or shrank, and forgets what it knew.
  bool GoToPage(PageFileReader& reader, PageNumber page);
  /// How many pages have to be read through to come to that page, by what is known now.
  PageNumber PagesToScan(PageNumber page) const { return page - NearestBefore(page).page; }

 private:
  struct Place {
    PageNumber page = 1;
    std::uint64_t offset = 0;
  };

  void Refresh(const PageFileReader& reader);
  Place NearestBefore(PageNumber page) const;

  std::int32_t page_length_;
  std::shared_ptr<const std::vector<std::uint64_t>> written_;
  std::vector<Place> found_;  // behind the written ones
  FileStamp stamp_;
};

}  // namespace kel
