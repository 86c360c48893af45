// Any bytes as a report on show: its pages are drawn within their lines, and every search finds
// what a search without any of its means finds.

#include <cstdlib>
#include <string>
#include <utility>

#include "common/case_folding.h"
#include "fuzz_file.h"
#include "preview/page_model.h"
#include "preview/page_search.h"
#include "support/naive_search.h"

namespace {

constexpr kel::PageNumber kPages = 4;
constexpr int kMostMatches = 8;
constexpr std::size_t kSmallBlock = 1024;

void Require(bool holds) {
  if (!holds) std::abort();
}

kel::testing::NaiveCharacter FirstCharacter(std::string_view text) {
  const kel::Character first = kel::FoldedCharacter(text);
  return {std::to_string(first.value), first.bytes};
}

// The input's parts: numbers, the searched text, the file.
struct Input {
  Input(const std::uint8_t* data, std::size_t size)
      : content(reinterpret_cast<const char*>(data), size) {
    page_length = static_cast<std::int32_t>(Take() % 8 + 1);
    line_start = Take();
    text = content.substr(0, Take() % 12);
    content.erase(0, text.size());
  }

  unsigned Take() {
    if (content.empty()) return 0;
    const auto byte = static_cast<unsigned char>(content[0]);
    content.erase(0, 1);
    return byte;
  }

  std::string content;
  std::string text;
  std::int32_t page_length = 1;
  unsigned line_start = 0;
};

void CheckDrawing(const kel::PageText& page, std::int32_t page_length) {
  Require(page.lines.size() <= static_cast<std::size_t>(page_length));
  std::size_t run = 0;
  for (const kel::PageLine& line : page.lines) {
    Require(line.first_run == run);
    kel::Cells column = 0;
    for (const std::size_t end = run + line.runs; run < end; ++run) {
      const kel::TextRun& drawn = page.runs.at(run);
      Require(drawn.column == column && drawn.cells > 0 && drawn.bytes > 0);
      Require(drawn.offset + drawn.bytes <= page.text.size());
      Require(!drawn.plain || drawn.bytes == static_cast<std::uint32_t>(drawn.cells));
      column += drawn.cells;
    }
    Require(column <= kel::kMostLineCells);
  }
  Require(run == page.runs.size());
}

void CheckLineStarts(const std::filesystem::path& path, std::size_t most_bytes) {
  kel::PageFileReader whole(path);
  kel::PageFileReader starts(path);
  std::string_view line;
  std::string_view start;
  while (whole.NextLine(line)) {
    Require(starts.NextLineStart(start, most_bytes) && start == line.substr(0, most_bytes));
    Require(starts.Offset() == whole.Offset());
    Require(starts.NextLineNumber() == whole.NextLineNumber());
  }
  Require(!starts.NextLineStart(start, most_bytes));
}

void CheckSmallBlocks(const std::filesystem::path& path, const std::string& text,
                      const kel::testing::NaivePlace& last,
                      const kel::testing::NaivePlace& expected) {
  kel::PageFileReader reader(path);
  const auto match = kel::FindMatch(reader, kel::SearchText(text), last.line,
                                    static_cast<kel::Cells>(last.column), kSmallBlock);
  Require(match.has_value() == (expected.line > 0));
  if (match) {
    Require(match->line == expected.line && match->column == expected.column);
    Require(match->cells == expected.cells);
  }
}

void CheckSearch(kel::PageModel& model, const Input& input, kel::PageText& page) {
  const kel::testing::NaiveSearch naive(input.content, FirstCharacter);
  kel::testing::NaivePlace last{1, 0, 0};
  for (int matches = 0; matches < kMostMatches; ++matches) {
    const kel::testing::NaivePlace expected = naive.Find(input.text, last.line, last.column);
    const bool found = model.LocatePage(input.text);
    Require(found == (expected.line > 0));
    CheckSmallBlocks(model.Report().page_file, input.text, last, expected);
    Require(model.MatchLine() == expected.line && model.MatchColumn() == expected.column);
    if (!found) return;
    Require(model.CurrentPage() == (expected.line - 1) / input.page_length + 1);
    model.LoadPage(false, page);
    CheckDrawing(page, input.page_length);
    last = expected;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kel::fuzzing::FuzzFile file;
  const Input input(data, size);
  kel::ReportSnapshot report;
  report.page_file =
      file.Fill(reinterpret_cast<const std::uint8_t*>(input.content.data()), input.content.size());
  report.job.page_count = kPages;
  report.job.page_length = input.page_length;
  CheckLineStarts(report.page_file, input.line_start);

  kel::PageModel model(std::move(report));
  kel::PageText page;
  for (kel::PageNumber number = kPages; number >= 1; --number) {
    model.GoToTypedPage(std::to_string(number));
    model.LoadPage(true, page);
    CheckDrawing(page, input.page_length);
  }
  CheckSearch(model, input, page);
  return 0;
}
