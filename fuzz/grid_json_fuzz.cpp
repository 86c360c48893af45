// Any bytes as a grid file: it is read or refused with an error, and a grid that was read answers
// for every cell of its own.

#include <cstdlib>

#include "common/error.h"
#include "fuzz_file.h"
#include "keldll/grid_json.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kel::fuzzing::FuzzFile file;
  try {
    kel::command::JsonGrid read = kel::command::ReadGridJson(file.Fill(data, size));
    kel::GridSource& grid = read.grid;
    for (std::int32_t row = 0; row < read.grid.Rows(); ++row) {
      if (!grid.SetRow(row)) std::abort();
      for (std::int32_t col = 0; col < read.grid.Cols(); ++col) {
        grid.SetCol(col);
        if (grid.TextMatrix(row, col).size() > size * 3) std::abort();
        grid.Font();
        grid.ColAlignment(col);
      }
    }
  } catch (const kel::Error& error) {
    if (error.Description().empty()) std::abort();
  }
  return 0;
}
