#include "listview/list_texts.h"

#include <algorithm>

#include "data/threads.h"

namespace kel {
namespace {

constexpr std::int64_t kPartRecords = 512;
constexpr std::int64_t kBlockParts = 16;

}  // namespace

void ListTexts::Take(std::int64_t record) {
  if (record < first_ || record >= end_) MakeBlock(record);
  const std::int64_t place = record - first_;
  part_ = &parts_[static_cast<std::size_t>(place / kPartRecords)];
  cell_ = static_cast<std::size_t>(place % kPartRecords) * columns_.size();
}

std::string_view ListTexts::Text(std::size_t column) const {
  const std::size_t cell = cell_ + column;
  const std::size_t begin = cell == 0 ? 0 : part_->ends[cell - 1];
  return std::string_view(part_->text).substr(begin, part_->ends[cell] - begin);
}

void ListTexts::MakeBlock(std::int64_t first) {
  end_ = first_ = first;  // nothing, should a text fail
  const std::int64_t end = std::min(first + kPartRecords * kBlockParts, records_.RowsSeen());
  const auto parts = static_cast<std::size_t>((end - first + kPartRecords - 1) / kPartRecords);
  parts_.resize(std::max(parts_.size(), parts));
  RunOnThreads(parts, [&](std::size_t /*thread*/, std::size_t i) {
    const std::int64_t begin = first + static_cast<std::int64_t>(i) * kPartRecords;
    MakePart(begin, std::min(begin + kPartRecords, end), parts_[i]);
  });
  end_ = end;
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
