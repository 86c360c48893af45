// The cells of a field as numbers that sort as they do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/cell_order.h"
#include "data/row_sort.h"
#include "data/row_store.h"

namespace kel {

/// A key for each row, made on several threads where there are many, by its place in the list that
/// is sorted. Keys that are not equal stand as the cells do; of equal ones Decides tells whether
/// the cells are equal, too.
///
/// Numbers and dates have the bits of their double. A text has its kind, its first seven bytes
/// folded, and how many it has; its further bytes are the tail, in keys of seven bytes as well.
class SortKeys {
 public:
  SortKeys(const RowStore& store, const SortField& field, CellDomain domain,
           std::span<const RowId> rows);

  /// Level 0 is the cell's key, the levels above those of its tail, seven bytes each.
  std::uint64_t KeyAt(std::size_t place, std::size_t level) const noexcept;
  /// Whether cells whose keys of this and all levels before are equal are equal themselves.
  bool Decides(std::uint64_t key, std::size_t level) const noexcept;
  /// Whether the cell behind such a key is a text or binary, with a tail.
  bool HasTail(std::uint64_t key, std::size_t level) const noexcept;
  /// What no key up to `level` holds.
  std::string_view TailBehind(std::size_t place, std::size_t level) const noexcept;

  /// Brings what TailBehind looks at near, without waiting for it: first where the tail of a row
  /// stands, a while later the tail itself.
  void FetchTailPlace(std::size_t place) const noexcept;
  void FetchTail(std::size_t place) const noexcept;

  /// Keys are not asked for any more, tails are.
  void DropKeys() { keys_ = {}; }

 private:
  void MakeNumberKeys(const RowStore& store, std::size_t column, std::span<const RowId> rows);
  void MakeIntegerKeys(const RowStore& store, std::size_t column, std::span<const RowId> rows);
  void MakeTextKeys(const RowStore& store, std::size_t column, std::span<const RowId> rows);
  std::uint64_t TextKey(const CellView& cell, std::string& folded, std::string& tails) const;

  CellDomain domain_;
  std::uint64_t flip_;  // all ones where the order is descending
  std::vector<std::uint64_t> keys_;
  bool numbers_are_exact_ = true;
  std::vector<std::size_t> tail_ends_;
  std::string tails_;
};

}  // namespace kel
