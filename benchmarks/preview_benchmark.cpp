// Turning pages in the preview of a large report.
//
//     preview_benchmark write FILE PAGES    writes the report, 5 KB a page
//     preview_benchmark show FILE PAGES     opens it and turns its pages

#include <sys/resource.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "common/file.h"
#include "controls/cell_painter.h"
#include "engine/page_file_reader.h"
#include "engine/page_file_writer.h"
#include "preview/frmPV.h"
#include "preview/zoom.h"

namespace {

constexpr std::int32_t kLines = 66;
constexpr int kColumns = 76;
constexpr int kRuns = 200;
constexpr QSize kScreen(1920, 1080);

using Clock = std::chrono::steady_clock;

double Milliseconds(const std::function<void()>& work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> times) {
  std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                   times.end());
  return times[times.size() / 2];
}

double MedianOf(int runs, const std::function<void(int run)>& work) {
  std::vector<double> times;
  times.reserve(static_cast<std::size_t>(runs));
  for (int run = 0; run < runs; ++run) times.push_back(Milliseconds([&] { work(run); }));
  return Median(times);
}

// Every page has equally many bytes.
std::string Line(std::int32_t page, std::int32_t line) {
  if (line + 1 == kLines) return "\x0c";
  std::array<char, 2 * kColumns> text{};
  std::snprintf(text.data(), text.size(),
                "%08d %04d Sundry debtors, northern region %12.2f Dr  %-13s", page, line,
                page * 17.25 + line, "Voucher entry");
  return text.data();
}

void WriteReport(const std::string& path, std::int32_t pages) {
  kel::OutputFile file(path);
  kel::PageFileWriter writer(file);
  for (std::int32_t page = 1; page <= pages; ++page) {
    for (std::int32_t line = 0; line < kLines; ++line) writer.WriteLine(Line(page, line));
  }
  writer.Finish();
  file.Commit();
}

kel::ReportSnapshot Snapshot(const std::string& path, std::int32_t pages) {
  const std::uint64_t page_bytes = kel::InputFile(path).Size() / static_cast<std::uint64_t>(pages);
  auto offsets = std::make_shared<std::vector<std::uint64_t>>();
  for (std::int32_t page = 0; page < pages; ++page) {
    offsets->push_back(static_cast<std::uint64_t>(page) * page_bytes);
  }
  kel::ReportSnapshot report;
  report.page_file = path;
  report.job.first_page = 1;
  report.job.page_count = pages;
  report.job.page_width = kColumns;
  report.job.page_length = kLines;
  report.job.page_offsets = offsets;
  return report;
}

std::uint64_t BytesRead() {
  std::ifstream io("/proc/self/io");
  std::string name;
  std::uint64_t bytes = 0;
  io >> name >> bytes;
  return bytes;
}

class Preview {
 public:
  explicit Preview(const kel::ReportSnapshot& report)
      : window_(report), image_(kScreen, QImage::Format_RGB32) {
    window_.setWindowState(Qt::WindowNoState);
    window_.resize(kScreen);
    window_.show();
    QApplication::processEvents();
    box_ = window_.findChild<QLineEdit*>("txtPage");
    window_.render(&image_);
  }

  void GoTo(std::int32_t page) {
    box_->setText(QString::number(page));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(box_, &enter);
    PaintPage();
  }

  /// What the screen draws anew when a page is turned.
  void PaintPage() { window_.findChild<QWidget*>("Pic")->render(&image_); }

 private:
  kel::frmPV window_;
  QImage image_;
  QLineEdit* box_ = nullptr;
};

QStringList LinesOfPage(const kel::ReportSnapshot& report, std::int32_t page) {
  kel::PageFileReader reader(report.page_file);
  reader.GoToPage(page, kLines, *report.job.page_offsets);
  QStringList lines;
  std::string_view line;
  for (std::int32_t i = 0; i < kLines && reader.NextLine(line); ++i) {
    lines << " " + QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size())).remove('\f');
  }
  return lines;
}

double DrawTextTime(const QStringList& lines) {
  const QString family = kel::CellPainter::DefaultFamily();
  const QSizeF cell = kel::CellPainter(family, kel::kFirstZoom).Cell();
  QFont font(family);
  font.setPointSizeF(kel::kFirstZoom);
  QImage image(kScreen, QImage::Format_RGB32);
  return MedianOf(kRuns, [&](int) {
    QPainter painter(&image);
    painter.fillRect(QRectF(0, 0, (kColumns + 2) * cell.width(), kLines * cell.height()),
                     Qt::white);
    painter.setFont(font);
    for (int i = 0; i < lines.size(); ++i) {
      painter.drawText(QPointF(0, (i + 1) * cell.height()), lines.at(i));
    }
  });
}

int ShowReport(const std::string& path, std::int32_t pages) {
  const kel::ReportSnapshot report = Snapshot(path, pages);
  { const Preview warm_up(report); }  // fonts, icons and styles are loaded once per program
  const std::uint64_t read_before = BytesRead();
  std::unique_ptr<Preview> preview;
  const double open = Milliseconds([&] { preview = std::make_unique<Preview>(report); });
  const std::uint64_t read = BytesRead() - read_before;
  std::printf("preview: %d pages, %llu bytes: opened in %.2f ms, %llu bytes read\n", pages,
              static_cast<unsigned long long>(kel::InputFile(path).Size()), open,
              static_cast<unsigned long long>(read));

  // In turn, so that whatever else the computer does meets all three alike.
  std::mt19937 random(7);
  std::uniform_int_distribution<std::int32_t> any(3, pages - 1);
  std::vector<double> second;
  std::vector<double> middle;
  std::vector<double> last;
  for (int run = 0; run < kRuns; ++run) {
    const std::int32_t page = any(random);
    second.push_back(Milliseconds([&] { preview->GoTo(2); }));
    middle.push_back(Milliseconds([&] { preview->GoTo(page); }));
    last.push_back(Milliseconds([&] { preview->GoTo(pages); }));
  }
  std::printf(
      "preview: page 2 in %.3f ms, any page in %.3f ms, last page in %.3f ms, ratio %.2f and "
      "%.2f (at most 1.2)\n",
      Median(second), Median(middle), Median(last), Median(middle) / Median(second),
      Median(last) / Median(second));

  const double turn = Median(second);
  preview->GoTo(2);
  const double ours = MedianOf(kRuns, [&](int) { preview->PaintPage(); });
  const double yardstick = DrawTextTime(LinesOfPage(report, 2));
  std::printf(
      "preview: a page turned in %.3f ms, painted in %.3f ms, its lines by drawText in %.3f ms, "
      "ratio %.2f and %.2f (at most 1.5)\n",
      turn, ours, yardstick, turn / yardstick, ours / yardstick);

  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("preview: %d pages take %ld KiB at most\n", pages, usage.ru_maxrss);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view mode = argc == 4 ? argv[1] : "";
  const std::int32_t pages = argc == 4 ? std::atoi(argv[3]) : 0;
  if (pages < 4 || (mode != "write" && mode != "show")) {
    std::fputs("usage: preview_benchmark write|show FILE PAGES (4 or more)\n", stderr);
    return 2;
  }
  const std::string path = argv[2];
  if (mode == "write") {
    WriteReport(path, pages);
    return 0;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  return ShowReport(path, pages);
}
