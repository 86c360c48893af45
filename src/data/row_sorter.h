// Rows on their way into order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <utility>
#include <vector>

#include "data/cell_order.h"
#include "data/row_sort.h"
#include "data/sort_keys.h"

namespace kel {

/// Sorts rows by the keys of their first field: many rows are dealt out into buckets by the keys'
/// leading bits, and the buckets sorted one by one, on as many threads as there are processors.
/// Rows of equal keys are then sorted by what stands behind these, and by the other fields.
class RowSorter {
 public:
  /// Everything given outlives it.
  RowSorter(const RowStore& store, std::span<const ColumnInfo> columns,
            std::span<const SortField> fields, std::span<RowId> rows);

  void Sort();

 private:
  /// A row on its way to its place.
  struct Entry {
    std::uint64_t key;  // of the field and level that the rows are being sorted by
    RowId row;
    std::uint32_t place;  // in the list as it was given
  };
  /// Entries that are equal in all fields before `field`, and in its keys of all levels before.
  struct Run {
    std::size_t begin;
    std::size_t end;
    std::size_t field;
    std::size_t level;
  };
  /// What a thread needs for itself.
  struct Work {
    std::vector<Entry> other_entries;  // where SortByDigits puts them in turn
    std::vector<Run> runs;             // sorted by their keys, equal keys not looked at yet
  };

  static bool Precedes(const Entry& left, const Entry& right) noexcept;

  std::vector<std::size_t> TakeRows();
  std::vector<std::size_t> DealOut(const SortKeys& keys);
  void SortBucket(std::size_t begin, std::size_t end, Work& work);
  const SortKeys& KeysOf(std::size_t field);
  void SortRun(const Run& run, Work& work);
  void SortByKeys(const Run& run, Work& work);
  void SortByDigits(std::size_t begin, std::size_t end, Work& work);
  void SortEqualsOf(const Run& run, Work& work);
  bool HasEqualBeside(std::size_t i, const Run& run) const noexcept;
  void SortEquals(const Run& run, Work& work);
  void SortByComparing(const Run& run, bool is_decided, bool has_tail);
  int CompareTails(const Run& run, const Entry& left, const Entry& right) const noexcept;
  int CompareFields(std::size_t first, const Entry& left, const Entry& right) const noexcept;

  const RowStore& store_;
  std::span<const SortField> fields_;
  std::span<RowId> rows_;
  std::vector<CellDomain> domains_;
  std::mutex making_keys_;
  std::vector<std::unique_ptr<SortKeys>> keys_;  // by field, made when first asked for
  std::unique_ptr<Entry[]> entries_;             // as many as there are rows
};

}  // namespace kel
