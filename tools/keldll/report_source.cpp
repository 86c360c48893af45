#include "keldll/report_source.h"

#include <algorithm>

#include "common/error.h"
#include "common/text_cells.h"
#include "data/csv.h"
#include "engine/column_widths.h"
#include "keldll/grid_json.h"

namespace kel::command {
namespace {

constexpr std::int32_t kMeasuredRows = 1000;
constexpr Cells kWidestMeasured = 40;

std::vector<std::int32_t> MeasureGrid(const MemoryGrid& grid) {
  ColumnWidths widths(static_cast<std::size_t>(grid.Cols()), kWidestMeasured);
  const std::int32_t rows = std::min(grid.Rows(), kMeasuredRows + 1);
  for (std::int32_t row = 0; row < rows; ++row) {
    for (std::int32_t col = 0; col < grid.Cols(); ++col) {
      widths.Measure(static_cast<std::size_t>(col), grid.Text(row, col));
    }
  }
  return widths.Widths();
}

}  // namespace

ReportSource::ReportSource(const ReportOptions& options)
    : options_(options), titles_(options.titles) {
  switch (options.source.kind) {
    case SourceKind::kGridFile:
      OpenGridFile();
      break;
    case SourceKind::kCsvFile:
      OpenCsvFile();
      break;
    case SourceKind::kDatabaseFile:
    case SourceKind::kServer:
      OpenStatement();
      break;
  }
}

void ReportSource::OpenGridFile() {
  JsonGrid file = ReadGridJson(options_.source.name);
  loaded_ = std::make_unique<MemoryGrid>(std::move(file.grid));
  if (file.widths) file_widths_ = std::move(*file.widths);
  if (titles_.empty()) titles_ = std::move(file.titles);
  DressGrid(*loaded_, file.caption.value_or(CaptionOf(options_.source)));
}

void ReportSource::OpenCsvFile() {
  records_.Open(OpenCsv(options_.source.name));
  StreamRecords();
}

void ReportSource::OpenStatement() {
  connection_ = OpenDatabase(options_.source, Access::kRead);
  records_.Open(options_.source.sql, connection_);
  StreamRecords();
}

void ReportSource::StreamRecords() {
  const std::string caption = CaptionOf(options_.source);
  stream_ = std::make_unique<RecordsetGrid>(records_, options_.caption.value_or(caption));
  if (!options_.alignments.empty()) DressGrid(*stream_, caption);
}

void ReportSource::DressGrid(GridSource& grid, const std::string& caption) {
  const std::size_t given = options_.alignments.size();
  const auto cols = static_cast<std::size_t>(grid.LastCol()) + 1;
  if (given > cols) {
    throw Error(error_number::kSubscriptOutOfRange, "--align names " + std::to_string(given) +
                                                        " columns, but " + options_.source.name +
                                                        " has " + std::to_string(cols));
  }
  dressed_ =
      std::make_unique<JobGrid>(grid, options_.caption.value_or(caption), options_.alignments);
}

GridSource& ReportSource::Grid() {
  if (dressed_) return *dressed_;
  return *stream_;
}

std::vector<std::int32_t> ReportSource::Widths() {
  if (options_.widths) return *options_.widths;
  if (!file_widths_.empty()) return file_widths_;
  if (stream_) return stream_->MeasureWidths(kMeasuredRows, kWidestMeasured);
  return MeasureGrid(*loaded_);
}

}  // namespace kel::command
