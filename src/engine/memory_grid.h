// A grid that a program fills itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/grid_source.h"

namespace kel {

/// Rows of texts, packed. Rows may have different lengths: a cell that a row does not have is an
/// empty text, as far as the widest row goes.
///
///     MemoryGrid grid("Trial Balance");
///     grid.AddRow({"Code", "Account", "Balance"});
///     grid.AddRow({"1001", "Cash in hand", "1,250.00"});
///     grid.ColAlignment(2, kAlignRight);
class MemoryGrid : public GridSource {
 public:
  explicit MemoryGrid(std::string caption) : caption_(std::move(caption)) {}

  void AddRow(std::span<const std::string_view> cells);
  void AddRow(std::initializer_list<std::string_view> cells) {
    AddRow(std::span(cells.begin(), cells.size()));
  }

  std::int32_t Rows() const { return static_cast<std::int32_t>(row_starts_.size()) - 1; }
  /// Cells of the widest row.
  std::int32_t Cols() const { return cols_; }

  /// Rows 0 to `rows` - 1 have the button-face colour; 1 unless set.
  void FixedRows(std::int32_t rows) { fixed_rows_ = rows; }
  std::int32_t FixedRows() const { return fixed_rows_; }
  /// Sets the alignment of a column; left unless set. Throws Error 9 for a negative column.
  void ColAlignment(std::int32_t col, int alignment);
  /// Sets the font of a cell. Throws Error 9 for a cell that there is not.
  void Font(std::int32_t row, std::int32_t col, CellFont font);

  /// The text of any cell. Throws Error 9 for an index out of range.
  std::string_view Text(std::int32_t row, std::int32_t col) const;

  std::int32_t LastRow() override { return Rows() - 1; }
  std::int32_t LastCol() override { return Cols() - 1; }
  std::string Caption() override { return caption_; }
  void SetVisible(bool /*visible*/) override {}
  void SetHighLight(int /*high_light*/) override {}
  bool SetRow(std::int32_t row) override;
  void SetCol(std::int32_t col) override { col_ = col; }
  std::uint32_t CellBackColor() override;
  CellFont Font() override;
  std::string_view TextMatrix(std::int32_t row, std::int32_t col) override;
  int ColAlignment(std::int32_t col) override;

 private:
  std::string caption_;
  std::string texts_;
  // The end of every cell in texts_, in row order; a cell begins where the one before it ends.
  std::vector<std::uint64_t> ends_ = {0};
  std::vector<std::size_t> row_starts_ = {1};  // each row's first cell in ends_, and the end
  std::vector<std::vector<CellFont>> fonts_;   // by row and column, as far as any were set
  std::vector<int> alignments_;
  std::int32_t cols_ = 0;
  std::int32_t fixed_rows_ = 1;
  std::int32_t row_ = 0;
  std::size_t row_begin_ = 1;  // of the current row in ends_
  std::size_t row_end_ = 1;
  std::int32_t col_ = 0;
};

}  // namespace kel
