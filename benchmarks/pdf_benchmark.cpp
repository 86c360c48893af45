// Writing reports as PDF.
//
//     pdf_benchmark speed FOLDER PAGES     beside a bare loop that draws the same lines with Qt
//     pdf_benchmark memory FOLDER PAGES    how much memory a report of so many pages takes

#include <sys/resource.h>

#include <QFont>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QStringList>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "common/file.h"
#include "engine/page_file_reader.h"
#include "engine/page_file_writer.h"
#include "export/pdf_printer.h"
#include "export/pdf_report.h"

namespace {

constexpr std::int32_t kLines = 66;
constexpr int kColumns = 80;
constexpr int kRuns = 3;
constexpr float kPoints = 10;
constexpr double kPaperWidth = 8.5;  // inches
constexpr double kPaperHeight = 12;
constexpr double kMillimetres = 25.4;

/// The least time of some runs, in milliseconds.
class Timer {
 public:
  void Run(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    least_ = std::min(least_, time.count());
  }
  double Least() const { return least_; }

 private:
  double least_ = std::numeric_limits<double>::infinity();
};

std::string Line(std::int32_t page, std::int32_t line, std::string_view name) {
  if (line + 1 == kLines) return "\x0c";
  std::array<char, 400> text{};
  std::snprintf(text.data(), text.size(), "%08d %04d %.*s %12.2f Dr  %-21s", page, line,
                static_cast<int>(name.size()), name.data(), page * 17.25 + line, "Voucher entry");
  return text.data();
}

kel::ReportSnapshot WriteReport(const std::string& path, std::int32_t pages,
                                std::string_view name) {
  kel::OutputFile file(path);
  kel::PageFileWriter writer(file);
  for (std::int32_t page = 1; page <= pages; ++page) {
    for (std::int32_t line = 0; line < kLines; ++line) writer.WriteLine(Line(page, line, name));
  }
  writer.Finish();
  file.Commit();

  kel::ReportSnapshot report;
  report.page_file = path;
  report.job.first_page = 1;
  report.job.page_count = pages;
  report.job.page_width = kColumns;
  report.job.page_length = kLines;
  report.settings.mode = "WINDOWS";
  report.settings.font = "Courier New";
  report.settings.font_size = kPoints;
  report.settings.page_width = kPaperWidth;
  report.settings.page_height = kPaperHeight;
  report.settings.portrait = true;
  return report;
}

void WritePdf(const kel::ReportSnapshot& report, const std::string& path) {
  kel::OutputFile file(path);
  kel::WritePdfReport(report, file, {});
  file.Commit();
}

// Calls `take` with the lines of every page.
void EveryPage(const kel::ReportSnapshot& report,
               const std::function<void(const std::vector<std::string_view>&)>& take) {
  kel::PageFileReader reader(report.page_file);
  std::vector<std::string> texts(kLines);
  std::string_view line;
  for (std::int32_t page = 0; page < report.job.page_count; ++page) {
    for (std::string& text : texts) {
      if (reader.NextLine(line)) text = line;
    }
    take({texts.begin(), texts.end() - 1});  // without the form feed
  }
}

void PrintSheets(const kel::ReportSnapshot& report, const std::string& path) {
  kel::DocumentSettings settings;
  settings.font = report.settings.font;
  settings.page_width = kPaperWidth;
  settings.page_height = kPaperHeight;
  const auto document = kel::BeginPdfDocument(path, settings);
  std::vector<kel::PrintedLine> sheet;
  EveryPage(report, [&](const std::vector<std::string_view>& lines) {
    sheet.clear();
    for (const std::string_view line : lines) sheet.push_back({std::string(line), kPoints, false});
    document->PrintSheet(sheet);
  });
  document->End();
}

void DrawWithQt(const kel::ReportSnapshot& report, const std::string& path) {
  QPdfWriter writer(QString::fromStdString(path));
  writer.setPageSize(
      QPageSize(QSizeF(kPaperWidth, kPaperHeight) * kMillimetres, QPageSize::Millimeter));
  QPainter painter(&writer);
  QFont font("Courier New");
  font.setPointSizeF(kPoints);
  painter.setFont(font);
  const int height = painter.fontMetrics().height();
  bool first = true;
  EveryPage(report, [&](const std::vector<std::string_view>& lines) {
    if (!first) writer.newPage();
    first = false;
    int y = 0;
    for (const std::string_view line : lines) {
      y += height;
      painter.drawText(0, y, QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size())));
    }
  });
}

void MeasureSpeed(const std::string& folder, std::int32_t pages, const char* kind,
                  std::string_view name) {
  const kel::ReportSnapshot report = WriteReport(folder + "/r.rpt", pages, name);
  Timer ours;
  Timer sheets;
  Timer yardstick;
  for (int run = 0; run < kRuns; ++run) {  // in turn, so that all meet the same computer
    ours.Run([&] { WritePdf(report, folder + "/r.pdf"); });
    sheets.Run([&] { PrintSheets(report, folder + "/s.pdf"); });
    yardstick.Run([&] { DrawWithQt(report, folder + "/q.pdf"); });
  }
  const auto page_bytes = [&](const char* name_of_pdf) {
    const std::uint64_t bytes = kel::InputFile(folder + name_of_pdf).Size();
    return static_cast<unsigned long long>(bytes / static_cast<std::uint64_t>(pages));
  };
  std::printf(
      "pdf: %s: a page as report in %.2f ms, as printed sheet in %.2f ms, its lines by "
      "QPainter::drawText in %.2f ms, ratio %.2f and %.2f (at most 1.3); %llu, %llu and %llu "
      "bytes a page\n",
      kind, ours.Least() / pages, sheets.Least() / pages, yardstick.Least() / pages,
      ours.Least() / yardstick.Least(), sheets.Least() / yardstick.Least(), page_bytes("/r.pdf"),
      page_bytes("/s.pdf"), page_bytes("/q.pdf"));
}

void MeasureMemory(const std::string& folder, std::int32_t pages) {
  const kel::ReportSnapshot report = WriteReport(folder + "/r.rpt", pages, "नकद खाता शर्मा ट्रेडर्स");
  WritePdf(report, folder + "/r.pdf");
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("pdf: %d pages take %ld KiB at most\n", pages, usage.ru_maxrss);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view mode = argc == 4 ? argv[1] : "";
  const std::int32_t pages = argc == 4 ? std::atoi(argv[3]) : 0;
  if (pages < 1 || (mode != "speed" && mode != "memory")) {
    std::fputs("usage: pdf_benchmark speed|memory FOLDER PAGES\n", stderr);
    return 2;
  }
  if (mode == "memory") {
    MeasureMemory(argv[2], pages);
    return 0;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  MeasureSpeed(argv[2], pages, "ASCII", "Sundry debtors, northern reg");
  MeasureSpeed(argv[2], pages, "Hindi", "नकद खाता शर्मा ट्रेडर्स कृष्ण");
  MeasureSpeed(argv[2], pages, "Gujarati", "નકદ ખાતું શ્રી કૃષ્ણ પ્રકાશ");
  return 0;
}
