#include "preview/page_index.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/error.h"

namespace kel {

namespace {

constexpr std::uint64_t kBetweenPlaces = std::uint64_t{64} * 1024;  // bytes

bool CanBeOf(const std::vector<std::uint64_t>& offsets, const FileStamp& file) {
  return !offsets.empty() && offsets.front() == 0 && offsets.back() < file.size &&
         std::is_sorted(offsets.begin(), offsets.end());
}

}  // namespace

PageIndex::PageIndex(const std::filesystem::path& file, std::int32_t page_length,
                     std::shared_ptr<const std::vector<std::uint64_t>> offsets)
    : page_length_(page_length) {
  try {
    stamp_ = InputFile(file, Links::kRefuse).Stamp();
    if (offsets != nullptr && CanBeOf(*offsets, stamp_)) written_ = std::move(offsets);
  } catch (const Error&) {
    // Whoever reads the file is told; a file that appears later is another one.
    written_.reset();
  }
}

bool PageIndex::GoToPage(PageFileReader& reader, PageNumber page) {
  Refresh(reader);
  Place place = NearestBefore(page);
  reader.GoTo(place.offset, FirstLineOfPage(place.page, page_length_));
  std::uint64_t last = found_.empty() ? place.offset : found_.back().offset;
  while (place.page < page) {
    if (!reader.SkipLines(page_length_)) return false;
    place = {place.page + 1, reader.Offset()};
    if (place.offset < last + kBetweenPlaces) continue;
    found_.push_back(place);
    last = place.offset;
  }
  return !reader.AtEnd();
}

void PageIndex::Refresh(const PageFileReader& reader) {
  const FileStamp stamp = reader.File().Stamp();
  if (stamp == stamp_) return;
  stamp_ = stamp;
  written_.reset();
  found_.clear();
}

PageIndex::Place PageIndex::NearestBefore(PageNumber page) const {
  if (written_ != nullptr && static_cast<std::size_t>(page) <= written_->size()) {
    return {page, (*written_)[static_cast<std::size_t>(page) - 1]};
  }
  const auto behind =
      std::upper_bound(found_.begin(), found_.end(), page,
                       [](PageNumber wanted, const Place& place) { return wanted < place.page; });
  if (behind != found_.begin()) return *std::prev(behind);
  if (written_ == nullptr) return {};
  return {static_cast<PageNumber>(written_->size()), written_->back()};
}

}  // namespace kel
