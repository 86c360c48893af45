// Writing reports as workbooks.
//
//     sheet_benchmark speed FOLDER ROWS      beside a bare loop that gives libxlsxwriter the cells
//     sheet_benchmark memory FOLDER ROWS     how much memory a report of so many rows takes

#include <sys/resource.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "common/file.h"
#include "engine/page_file_writer.h"
#include "export/workbook_report.h"

namespace {

constexpr std::int32_t kLines = 65;  // of a page, without its form feed
constexpr int kRuns = 3;

/// The least processor time of some runs, in seconds.
class Timer {
 public:
  void Run(const std::function<void()>& work) {
    const std::clock_t start = std::clock();
    work();
    const auto ticks = static_cast<double>(std::clock() - start);
    least_ = std::min(least_, ticks / CLOCKS_PER_SEC);
  }
  double Least() const { return least_; }

 private:
  double least_ = std::numeric_limits<double>::infinity();
};

constexpr std::array<kel::Cells, 6> kWidths = {8, 12, 28, 14, 14, 20};
constexpr std::array<bool, 6> kNumbers = {true, false, false, true, true, false};

// The cells of one row; numbers are made of their texts.
struct Row {
  std::array<std::string, 6> texts;
  std::array<double, 6> values{};
};

Row MakeRow(std::int64_t row) {
  const double debit = static_cast<double>(row % 100000) + 0.25;
  const double credit = static_cast<double>(row % 777) * 17.5;
  Row cells;
  cells.values = {static_cast<double>(row), 0, 0, debit, credit, 0};
  std::array<char, 64> text{};
  const auto set = [&](std::size_t column, int size) {
    cells.texts.at(column).assign(text.data(), static_cast<std::size_t>(size));
  };
  set(0, std::snprintf(text.data(), text.size(), "%lld", static_cast<long long>(row)));
  set(1, std::snprintf(text.data(), text.size(), "V/%07lld", static_cast<long long>(row)));
  cells.texts[2] = "Sundry debtors, northern reg";
  set(3, std::snprintf(text.data(), text.size(), "%.2f", debit));
  set(4, std::snprintf(text.data(), text.size(), "%.2f", credit));
  cells.texts[5] = "Voucher entry";
  return cells;
}

// Ready-made, so that the bare loop pays for nothing but the library.
const Row& RowOf(std::int64_t row) {
  constexpr std::int64_t kDistinct = 10000;
  static const std::vector<Row> rows = [] {
    std::vector<Row> made;
    for (std::int64_t i = 0; i < kDistinct; ++i) made.push_back(MakeRow(i));
    return made;
  }();
  return rows[static_cast<std::size_t>(row % kDistinct)];
}

kel::ReportSnapshot WriteReport(const std::string& path, std::int64_t rows) {
  kel::ReportSnapshot report;
  kel::OutputFile file(path);
  kel::PageFileWriter writer(file);
  std::string line;
  const std::int64_t pages = (rows + kLines - 1) / kLines;
  for (std::int64_t row = 0; row < pages * kLines; ++row) {
    const Row& cells = RowOf(row);
    line.clear();
    for (std::size_t i = 0; i < kWidths.size(); ++i) {
      const int side = kNumbers.at(i) ? kel::kAlignRight : kel::kAlignLeft;
      kel::AppendAligned(line, cells.texts.at(i), kWidths.at(i), side);
      line += ' ';
    }
    writer.WriteLine(line);
    if (row % kLines == kLines - 1) writer.WriteLine("\x0c");
  }
  writer.Finish();
  file.Commit();
  report.page_file = path;
  for (std::size_t i = 0; i < kWidths.size(); ++i) {
    report.job.columns.push_back(
        {kWidths.at(i), kNumbers.at(i) ? kel::TextSide::kRight : kel::TextSide::kLeft});
  }
  report.job.first_page = 1;
  report.job.page_count = static_cast<std::int32_t>(pages);
  report.job.page_length = kLines + 1;
  report.settings.mode = "DOS";
  return report;
}

void WriteBare(const std::string& path, const std::string& folder, std::int64_t rows) {
  std::string temporary = folder;
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  options.tmpdir = temporary.data();
  lxw_workbook* const book = workbook_new_opt(path.c_str(), &options);
  lxw_worksheet* const sheet = workbook_add_worksheet(book, nullptr);
  lxw_format* const text = workbook_add_format(book);
  format_set_font_name(text, "Courier New");
  lxw_format* const whole = workbook_add_format(book);
  format_set_num_format(whole, "0");
  lxw_format* const decimals = workbook_add_format(book);
  format_set_num_format(decimals, "0.00");
  lxw_row_t line = 0;
  for (std::int64_t row = 0; row < rows; ++row, ++line) {
    const Row& cells = RowOf(row);
    for (std::size_t i = 0; i < kWidths.size(); ++i) {
      const auto column = static_cast<lxw_col_t>(i);
      if (kNumbers.at(i)) {
        worksheet_write_number(sheet, line, column, cells.values.at(i), i == 0 ? whole : decimals);
      } else {
        worksheet_write_string(sheet, line, column, cells.texts.at(i).c_str(), text);
      }
    }
    if (row % kLines == kLines - 1) ++line;
  }
  if (workbook_close(book) != LXW_NO_ERROR) std::abort();
}

void MeasureSpeed(const std::string& folder, std::int64_t rows) {
  const kel::ReportSnapshot report = WriteReport(folder + "/r.rpt", rows);
  Timer ours;
  Timer yardstick;
  for (int run = 0; run < kRuns; ++run) {  // in turn, so that both meet the same computer
    ours.Run([&] {
      if (!kel::WriteWorkbook(report, folder + "/r.xlsx", {}, {})) std::abort();
    });
    yardstick.Run([&] { WriteBare(folder + "/b.xlsx", folder, rows); });
  }
  std::printf(
      "sheet: %lld rows to .xlsx in %.2f s, their cells by libxlsxwriter alone in %.2f s, ratio "
      "%.2f (at most 1.3)\n",
      static_cast<long long>(rows), ours.Least(), yardstick.Least(),
      ours.Least() / yardstick.Least());
}

void MeasureMemory(const std::string& folder, std::int64_t rows) {
  const kel::ReportSnapshot report = WriteReport(folder + "/r.rpt", rows);
  kel::WriteWorkbook(report, folder + "/r.xlsx", {}, {});
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("sheet: %lld rows take %ld KiB at most\n", static_cast<long long>(rows),
              usage.ru_maxrss);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view mode = argc == 4 ? argv[1] : "";
  const std::int64_t rows = argc == 4 ? std::atoll(argv[3]) : 0;
  if (rows < 1 || (mode != "speed" && mode != "memory")) {
    std::fputs("usage: sheet_benchmark speed|memory FOLDER ROWS\n", stderr);
    return 2;
  }
  if (mode == "memory") {
    MeasureMemory(argv[2], rows);
  } else {
    MeasureSpeed(argv[2], rows);
  }
  return 0;
}
