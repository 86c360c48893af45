#include "keldll/job_grid.h"

namespace kel::command {

int JobGrid::ColAlignment(std::int32_t col) {
  const auto index = static_cast<std::size_t>(col);
  return index < alignments_.size() ? alignments_[index] : beneath_.ColAlignment(col);
}

}  // namespace kel::command
