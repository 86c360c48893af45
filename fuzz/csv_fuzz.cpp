// Any bytes as a CSV file: the block size never changes what is read, and a report over the rows is
// laid out or refused with an error.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "common/error.h"
#include "data/Recordset.h"
#include "data/csv.h"
#include "engine/recordset_grid.h"
#include "engine/report_layout.h"
#include "fuzz_file.h"

namespace {

// All rows as one text; an error's text in the place where it came.
std::string AllRows(const std::filesystem::path& path, std::size_t block_bytes) {
  std::string all;
  try {
    kel::Recordset records;
    records.Open(kel::OpenCsv(path, block_bytes));
    for (; !records.EndOfFile(); records.MoveNext()) {
      for (int i = 0; i < records.FieldCount(); ++i) {
        all += records.FieldText(i);
        all += '\x1f';
      }
      all += '\x1e';
    }
  } catch (const kel::Error& error) {
    all += error.Description();
  }
  return all;
}

void LayOut(const std::filesystem::path& path) {
  try {
    kel::Recordset records;
    records.Open(kel::OpenCsv(path));
    kel::RecordsetGrid grid(records, "fuzz");
    std::vector<kel::Cells> widths = grid.MeasureWidths(2, 5);
    kel::PrintSettings settings;
    settings.lines = 12;
    settings.bottom_margin = 1;
    settings.end_page = 20;
    kel::OutputFile file("/dev/null");
    kel::PageFileWriter writer(file);
    const kel::ReportRange range = {0, 0, kel::kLastRow, grid.Cols() - 1, 1};
    kel::LayOutReport(grid, widths, settings, range, {{"title"}, "stamp"}, writer,
                      [](kel::PageNumber) {});
  } catch (const kel::Error& error) {
    if (error.Description().empty()) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kel::fuzzing::FuzzFile file;
  const std::filesystem::path& path = file.Fill(data, size);
  const std::string whole = AllRows(path, 1 << 16);
  for (const std::size_t block_bytes : {std::size_t{1}, std::size_t{7}, std::size_t{64}}) {
    if (AllRows(path, block_bytes) != whole) std::abort();
  }
  LayOut(path);
  return 0;
}
