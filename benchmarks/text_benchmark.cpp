// Text export of a page file, beside `cat` of the same file.
//
//     text_benchmark FOLDER PAGES

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "engine/page_file_writer.h"
#include "export/native_office.h"
#include "side_by_side.h"

namespace {

constexpr int kLines = 66;
constexpr int kRuns = 7;

class NoProgress : public kel::ExportProgress {
 public:
  void Begin(std::int64_t /*steps*/) override {}
  bool Step(std::int64_t /*steps*/) override { return true; }
};

using kel::benchmarks::BestSeconds;
using kel::benchmarks::Cat;

// Pages of a ledger; one line of `coded` holds codes.
kel::ReportSnapshot WritePages(const std::filesystem::path& path, int pages, int coded) {
  kel::OutputFile file(path);
  kel::PageFileWriter writer(file);
  for (int page = 0; page < pages; ++page) {
    writer.BeginPage();
    for (int line = 1; line < kLines; ++line) {
      std::string text = "1004 Sharma Traders, Pune        12/04/2026  Voucher " +
                         std::to_string(page) + "      12,34,567.00            1,250.00 Dr";
      if (line % coded == 0)
        text =
            "\x01\x1b"
            "E" +
            text +
            "\x1b"
            "F";
      writer.WriteLine(text);
    }
    writer.WriteLine("\x0c");
  }
  writer.Finish();
  file.Commit();
  kel::ReportSnapshot report;
  report.page_file = path;
  report.job.page_count = pages;
  report.job.page_length = kLines;
  return report;
}

void Compare(const std::filesystem::path& folder, int pages, int coded, const char* what) {
  const kel::ReportSnapshot report = WritePages(folder / "r.rpt", pages, coded);
  kel::NativeOffice office(nullptr);
  NoProgress progress;
  const double ours = BestSeconds(kRuns, [&] {
    office.MakeFile(kel::ExportFormat::kText, report, folder / "r.txt", kel::Handover::kKeep,
                    progress);
  });
  const double cat = BestSeconds(kRuns, [&] { Cat(report.page_file, folder / "copy.txt"); });
  const auto bytes = static_cast<double>(std::filesystem::file_size(report.page_file));
  std::printf("text: %.0f MB, %s: %.1f ms, cat %.1f ms, ratio %.2f\n", bytes / 1e6, what,
              ours * 1e3, cat * 1e3, ours / cat);
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) {
    std::fputs("usage: text_benchmark FOLDER PAGES\n", stderr);
    return 2;
  }
  const int pages = std::atoi(words[2]);
  Compare(words[1], pages, kLines, "no codes");
  Compare(words[1], pages, 16, "codes in 4 lines of a page");
  Compare(words[1], pages, 1, "codes in every line");
}
