#include "listview/list_texts.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "data/threads.h"

namespace kel {
namespace {

constexpr std::int64_t kPartRecords = 512;
constexpr std::int64_t kBlockRecords = 8 * kPartRecords;

}  // namespace

void ListTexts::ReadAhead(std::int64_t first) {
  ahead_.first = first;
  ahead_.end = std::min(first + kBlockRecords, records_.RowsSeen());
  try {
    reading_ = std::async(std::launch::async, [this] { MakeBlock(); });
  } catch (const std::system_error&) {
    reading_ = std::async(std::launch::deferred, [this] { MakeBlock(); });  // in TakeBlock
  }
}

std::int64_t ListTexts::TakeBlock() {
  reading_.get();
  std::swap(block_, ahead_);
  return block_.end - block_.first;
}

void ListTexts::Take(std::int64_t record) {
  const std::int64_t place = record - block_.first;
  part_ = &block_.parts[static_cast<std::size_t>(place / kPartRecords)];
  cell_ = static_cast<std::size_t>(place % kPartRecords) * columns_.size();
}

std::string_view ListTexts::Text(std::size_t column) const {
  const std::size_t cell = cell_ + column;
  const std::size_t begin = cell == 0 ? 0 : part_->ends[cell - 1];
  return std::string_view(part_->text).substr(begin, part_->ends[cell] - begin);
}

void ListTexts::MakeBlock() {
  const std::int64_t records = std::max<std::int64_t>(ahead_.end - ahead_.first, 0);
  const auto parts = static_cast<std::size_t>((records + kPartRecords - 1) / kPartRecords);
  ahead_.parts.resize(std::max(ahead_.parts.size(), parts));
  RunOnThreads(parts, [&](std::size_t /*thread*/, std::size_t i) {
    const std::int64_t first = ahead_.first + static_cast<std::int64_t>(i) * kPartRecords;
    MakePart(first, std::min(first + kPartRecords, ahead_.end), ahead_.parts[i]);
  });
}

void ListTexts::MakePart(std::int64_t first, std::int64_t end, Part& part) const {
  part.text.clear();
  part.ends.clear();
  for (std::int64_t record = first; record < end; ++record) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (widths_[i] > 0) {
        const CellView cell = records_.CellSeen(record, static_cast<int>(i));
        AppendCellText(columns_[i], cell, part.text);
      }
      part.ends.push_back(part.text.size());
    }
  }
}

}  // namespace kel
