// The texts of a list's records for its report.
#pragma once

#include <cstdint>
#include <future>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_cells.h"
#include "data/Recordset.h"
#include "listview/list_columns.h"

namespace kel {

/// Makes texts block by block. The next block is made on threads of its own while the caller works
/// on one, so that a report over millions of records waits for no format.
///
///     for (texts.ReadAhead(0); ...; ) {
///       records = texts.TakeBlock();
///       ... whatever may change the records ...
///       texts.ReadAhead(first + records);
///       ... Take(record), Text(column) of each record of the block ...
///     }
class ListTexts {
 public:
  /// Only columns with a width above 0 have texts. All must outlive it.
  ListTexts(const Recordset& records, std::span<const ListColumn> columns,
            std::span<const Cells> widths)
      : records_(records), columns_(columns), widths_(widths) {}

  /// Begins to make the block from record `first` on; there may be none. Nothing may change the
  /// records until TakeBlock has returned.
  void ReadAhead(std::int64_t first);
  /// Makes that block the current one; how many records it has. Throws what a text threw.
  std::int64_t TakeBlock();

  /// Makes a record of the block, counted from 0 in the list, the current one.
  void Take(std::int64_t record);
  std::string_view Text(std::size_t column) const;

 private:
  // The records that one thread takes at once.
  struct Part {
    std::string text;
    std::vector<std::size_t> ends;  // in text, by record and column
  };
  struct Block {
    std::int64_t first = 0;
    std::int64_t end = 0;
    std::vector<Part> parts;
  };

  void MakeBlock();
  void MakePart(std::int64_t first, std::int64_t end, Part& part) const;

  const Recordset& records_;
  std::span<const ListColumn> columns_;
  std::span<const Cells> widths_;
  Block block_;
  Block ahead_;
  const Part* part_ = nullptr;  // of the current record
  std::size_t cell_ = 0;        // its first one in the part
  std::future<void> reading_;   // its end waits for the thread, so it goes first
};

}  // namespace kel
