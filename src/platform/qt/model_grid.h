// A Qt model as the grid of a report.
#pragma once

#include <QAbstractItemModel>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/grid_source.h"

namespace kel {

/// Any QAbstractItemModel as report rows: row 0 is the horizontal header, row n the model's top
/// level row n - 1, with the texts, fonts and alignment that a view would show.
///
///     kel::ModelGrid grid(model, "Trial Balance");
///     print.PrepareReport(grid, 0, 0, kel::kLastRow, model.columnCount() - 1, 0);
///
/// A model that fetches its rows bit by bit is asked for more as the report reaches them, and may
/// be printed up to kLastRow; for any other a row beyond the last is Error 9. The model must
/// outlive the grid and must not change while a report is made of it.
class ModelGrid : public GridSource {
 public:
  ModelGrid(QAbstractItemModel& model, std::string caption);

  std::int32_t LastRow() override { return length_known_ ? model_.rowCount() : kLastRow; }
  std::int32_t LastCol() override { return model_.columnCount() - 1; }
  std::string Caption() override { return caption_; }
  void SetVisible(bool /*visible*/) override {}
  void SetHighLight(int /*high_light*/) override {}

  bool SetRow(std::int32_t row) override;
  void SetCol(std::int32_t col) override;

  /// The button face in row 0, the window's background elsewhere.
  std::uint32_t CellBackColor() override;
  /// Bold and underline of the FontRole.
  CellFont Font() override;
  std::string_view TextMatrix(std::int32_t row, std::int32_t col) override;
  /// Right when the TextAlignmentRole of the column in the current row says so. Headings that say
  /// nothing stand as the first row of their column.
  int ColAlignment(std::int32_t col) override;

 private:
  bool HasRow(std::int32_t row);
  void RequireColumn(std::int32_t col) const;
  QVariant Data(std::int32_t row, std::int32_t col, int role) const;

  QAbstractItemModel& model_;
  std::string caption_;
  bool length_known_;
  std::int32_t row_ = 0;
  std::int32_t col_ = 0;
  std::vector<std::string> texts_;  // of the current row, by column
};

}  // namespace kel
