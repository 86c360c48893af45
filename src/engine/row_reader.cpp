#include "engine/row_reader.h"

#include <system_error>
#include <utility>

namespace kel {

namespace {

// Big enough to make the hand-over between threads cheap, small enough to stay in the cache.
constexpr std::size_t kBatchRows = 256;
constexpr std::size_t kBatchBytes = std::size_t{128} * 1024;
constexpr std::size_t kMostReady = 3;

}  // namespace

void RowBatch::AddRow(const Recordset& records) {
  const int fields = records.FieldCount();
  for (int i = 0; i < fields; ++i) {
    texts_ += records.FieldText(i);
    ends_.push_back(texts_.size());
  }
  fields_ = static_cast<std::size_t>(fields);
  ++rows_;
}

void RowBatch::Clear() {
  rows_ = 0;
  texts_.clear();
  ends_.clear();
}

std::string_view RowBatch::Text(std::size_t row, std::size_t field) const {
  const std::size_t index = row * fields_ + field;
  const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
  return {texts_.data() + begin, ends_[index] - begin};
}

void RowReader::StartReadingAhead() {
  if (thread_.joinable() || !records_.MayChangeThread()) return;
  stopping_ = false;
  try {
    thread_ = std::thread([this] { ReadAhead(); });
  } catch (const std::system_error&) {
    // Without a thread to be had the caller's own reads the rows.
  }
}

void RowReader::StopReadingAhead() noexcept {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_all();
  thread_.join();
  thread_ = {};
}

RowBatch RowReader::Next() {
  std::unique_lock lock(mutex_);
  if (thread_.joinable()) {
    changed_.wait(lock, [this] { return !ready_.empty() || ended_; });
  } else if (ready_.empty() && !ended_) {
    HandOver(Fill(TakeSpare()));
  }
  if (!ready_.empty()) {
    RowBatch rows = std::move(ready_.front());
    ready_.pop_front();
    changed_.notify_all();
    return rows;
  }
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  return {};
}

void RowReader::Recycle(RowBatch batch) {
  batch.Clear();
  const std::lock_guard lock(mutex_);
  if (spare_.size() < kMostReady) spare_.push_back(std::move(batch));
}

// The thread. What has been read is handed over even when the reading is to stop.
void RowReader::ReadAhead() {
  std::unique_lock lock(mutex_);
  while (!ended_ && !stopping_) {
    RowBatch rows = TakeSpare();
    lock.unlock();
    Filled filled = Fill(std::move(rows));
    lock.lock();
    try {
      HandOver(std::move(filled));
    } catch (...) {
      // No memory for it; an exception may not leave the thread, so it waits for the caller.
      ended_ = true;
      failure_ = std::current_exception();
    }
    changed_.notify_all();
    changed_.wait(lock, [this] { return ready_.size() < kMostReady || stopping_; });
  }
}

RowReader::Filled RowReader::Fill(RowBatch rows) {
  Filled filled;
  try {
    while (!records_.EndOfFile() && rows.Rows() < kBatchRows && rows.Bytes() < kBatchBytes) {
      rows.AddRow(records_);
      records_.MoveNext();
    }
    filled.last = records_.EndOfFile();
  } catch (...) {
    filled.failure = std::current_exception();
    filled.last = true;
  }
  filled.rows = std::move(rows);
  return filled;
}

void RowReader::HandOver(Filled filled) {
  if (filled.rows.Rows() > 0) ready_.push_back(std::move(filled.rows));
  ended_ = filled.last;
  failure_ = filled.failure;
}

RowBatch RowReader::TakeSpare() {
  if (spare_.empty()) return {};
  RowBatch batch = std::move(spare_.back());
  spare_.pop_back();
  return batch;
}

}  // namespace kel
