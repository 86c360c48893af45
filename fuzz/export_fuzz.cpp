// Any bytes as the pages of a report that is exported: every format is made whole or refused with
// an Error, and the text is what removing the codes line by line gives.

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "common/control_codes.h"
#include "common/error.h"
#include "engine/page_file_reader.h"
#include "export/code_free_copy.h"
#include "export/rtf_document.h"
#include "export/workbook_report.h"
#include "fuzz_file.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void CheckText(const std::filesystem::path& pages) {
  std::string expected;
  kel::PageFileReader reader(pages);
  for (std::string_view line; reader.NextLine(line);) {
    expected += kel::StripCodes(line, kel::TitleMark::kRemove) + "\r\n";
  }
  std::string copy;
  kel::CopyWithoutCodes(pages, [&](std::string_view piece) { copy += piece; });
  Require(copy == expected);
}

// Groups are closed, and nothing but ASCII stands in the file.
void CheckDocument(const std::string& document) {
  int depth = 0;
  for (std::size_t i = 0; i < document.size(); ++i) {
    const char c = document[i];
    Require(c == '\n' || c == '\r' || c == '\t' || (c >= ' ' && c < '\x7f'));
    if (c == '\\') {
      ++i;
    } else if (c == '{') {
      ++depth;
    } else if (c == '}') {
      Require(--depth > 0 || document.find_first_not_of("\r\n", i + 1) == std::string::npos);
    }
  }
  Require(depth == 0);
}

kel::ReportSnapshot ReportOf(const std::filesystem::path& pages, std::uint8_t shape) {
  kel::ReportSnapshot report;
  report.page_file = pages;
  report.job.page_length = shape % 4 + 1;
  report.job.page_count = shape / 4 % 4 + 1;
  report.job.page_width = 40;
  report.job.columns = {{6, kel::TextSide::kLeft}, {12, kel::TextSide::kRight}};
  report.settings.mode = (shape & 16) != 0 ? "DOS" : "WINDOWS";
  report.settings.font = "DejaVu Sans Mono";
  report.settings.font_size = 9;
  report.settings.left_margin = shape / 32 % 3;
  report.settings.page_width = 8;
  report.settings.page_height = 12;
  report.settings.portrait = (shape & 128) == 0;
  return report;
}

void CheckExports(const kel::ReportSnapshot& report) {
  static const kel::fuzzing::FuzzFile made;
  const std::filesystem::path& file = made.Fill(nullptr, 0);
  try {
    kel::OutputFile document(file);
    Require(kel::WriteRtfDocument(report, document, {}));
    document.Commit();
    CheckDocument(ContentOf(file));
    Require(kel::WriteWorkbook(report, file, {5, 3}, [] { return true; }));
    Require(ContentOf(file).starts_with("PK"));
  } catch (const kel::Error&) {
    // A file that does not hold the pages that its job tells of.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kel::fuzzing::FuzzFile file;
  if (size == 0) return 0;
  const std::filesystem::path& pages = file.Fill(data + 1, size - 1);
  CheckText(pages);
  CheckExports(ReportOf(pages, data[0]));
  return 0;
}
