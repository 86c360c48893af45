// The texts of a list's records for its report.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_cells.h"
#include "data/Recordset.h"
#include "listview/list_columns.h"

namespace kel {

/// Makes texts block by block, with all processors, which formats of many columns are worth.
/// Nothing may change the records while Take runs; no events come in it.
class ListTexts {
 public:
  /// Only columns with a width above 0 have texts. All must outlive it.
  ListTexts(const Recordset& records, std::span<const ListColumn> columns,
            std::span<const Cells> widths)
      : records_(records), columns_(columns), widths_(widths) {}

  /// Makes a record, counted from 0, the current one.
  void Take(std::int64_t record);
  /// A text of the current record, good until the next Take.
  std::string_view Text(std::size_t column) const;

 private:
  // The records that one thread takes at once.
  struct Part {
    std::string text;
    std::vector<std::size_t> ends;  // in text, by record and column
  };

  void MakeBlock(std::int64_t first);
  void MakePart(std::int64_t first, std::int64_t end, Part& part) const;

  const Recordset& records_;
  std::span<const ListColumn> columns_;
  std::span<const Cells> widths_;
  std::vector<Part> parts_;
  std::int64_t first_ = 0;  // record of the block
  std::int64_t end_ = 0;
  const Part* part_ = nullptr;  // of the current record
  std::size_t cell_ = 0;        // its first one in the part
};

}  // namespace kel
