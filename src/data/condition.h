// The conditions of a recordset's Filter and Find.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "data/driver.h"
#include "data/row_store.h"

namespace kel {

struct ConditionNode;

/// A condition, parsed once and asked of many rows.
///
///     [Field] = 'text'     also <>, <, >, <=, >=, Like
///     Amount >= 100 AND ([Date] < #31/March/2026# OR Name Like 'Sundry*')
///     [Remarks] = Null     also <> Null, Is Null, Is Not Null
///
/// A field name with blanks stands in brackets. Texts stand in single quotes (a quote inside is
/// doubled) and are compared without regard to case; Like knows * and % for any run of characters,
/// and _ and ? for one. Dates stand between "#" signs. AND binds closer than OR. A comparison
/// with a Null cell is false, but for <> Null.
class Condition {
 public:
  /// Throws Error 3001 for what is no condition, 3265 for a field that there is not. `columns` are
  /// those of the store.
  Condition(std::string_view text, std::span<const ColumnInfo> columns);
  ~Condition();
  Condition(Condition&&) noexcept;
  Condition& operator=(Condition&&) noexcept;

  /// How many comparisons it is made of; Find takes one only.
  std::size_t Comparisons() const noexcept;

  bool Matches(const RowStore& rows, RowId row) const;

  /// One byte for each stored row, 1 where it matches.
  std::vector<std::uint8_t> MatchAll(const RowStore& rows) const;

 private:
  std::unique_ptr<ConditionNode> root_;
};

}  // namespace kel
