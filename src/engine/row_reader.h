// The rows of a recordset, read in batches and ahead of their use.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "data/Recordset.h"

namespace kel {

/// The texts of some rows, packed.
class RowBatch {
 public:
  void AddRow(const Recordset& records);
  void Clear();

  std::size_t Rows() const { return rows_; }
  std::size_t Bytes() const { return texts_.size(); }
  /// REQUIRES row < Rows() and a field of the recordset.
  std::string_view Text(std::size_t row, std::size_t field) const;

 private:
  std::size_t rows_ = 0;
  std::size_t fields_ = 0;
  std::string texts_;
  std::vector<std::size_t> ends_;  // of every text; it begins where the one before it ends
};

/// Hands a recordset's rows out from its current row on. Between StartReadingAhead and
/// StopReadingAhead a thread of the reader's own fetches the next batches while the caller works on
/// the last one, as far as the recordset may leave its thread; the recordset and its connection
/// belong to the reader in that time. A few batches are held, however many rows there are.
class RowReader {
 public:
  /// The recordset must outlive it.
  explicit RowReader(Recordset& records) : records_(records) {}
  ~RowReader() { StopReadingAhead(); }
  RowReader(const RowReader&) = delete;
  RowReader& operator=(const RowReader&) = delete;

  void StartReadingAhead();
  void StopReadingAhead() noexcept;

  /// The next rows; a batch without rows at the end. Throws what the database threw, after the rows
  /// that were read before it.
  RowBatch Next();
  /// Takes a batch back that is no longer needed, for its memory.
  void Recycle(RowBatch batch);

 private:
  struct Filled {
    RowBatch rows;
    bool last = false;
    std::exception_ptr failure;
  };

  void ReadAhead();
  Filled Fill(RowBatch rows);
  void HandOver(Filled filled);
  RowBatch TakeSpare();

  Recordset& records_;

  std::mutex mutex_;  // guards everything below but the thread itself
  std::condition_variable changed_;
  std::deque<RowBatch> ready_;  // none of them empty
  std::vector<RowBatch> spare_;
  bool ended_ = false;          // nothing follows what is ready
  std::exception_ptr failure_;  // what ended it, if not the last row
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace kel
