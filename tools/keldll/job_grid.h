// A source's grid as one report job wants it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "engine/grid_source.h"

namespace kel::command {

/// Another grid with a caption of the job's and, for the first columns, alignments of the job's.
class JobGrid : public GridSource {
 public:
  JobGrid(GridSource& beneath, std::string caption, std::vector<int> alignments)
      : beneath_(beneath), caption_(std::move(caption)), alignments_(std::move(alignments)) {}

  void BeginWalk() override { beneath_.BeginWalk(); }
  void EndWalk() noexcept override { beneath_.EndWalk(); }
  std::int32_t LastRow() override { return beneath_.LastRow(); }
  std::int32_t LastCol() override { return beneath_.LastCol(); }
  std::string Caption() override { return caption_; }
  void SetVisible(bool visible) override { beneath_.SetVisible(visible); }
  void SetHighLight(int high_light) override { beneath_.SetHighLight(high_light); }
  bool SetRow(std::int32_t row) override { return beneath_.SetRow(row); }
  void SetCol(std::int32_t col) override { beneath_.SetCol(col); }
  std::uint32_t CellBackColor() override { return beneath_.CellBackColor(); }
  CellFont Font() override { return beneath_.Font(); }
  std::string_view TextMatrix(std::int32_t row, std::int32_t col) override {
    return beneath_.TextMatrix(row, col);
  }
  int ColAlignment(std::int32_t col) override;

 private:
  GridSource& beneath_;
  std::string caption_;
  std::vector<int> alignments_;
};

}  // namespace kel::command
