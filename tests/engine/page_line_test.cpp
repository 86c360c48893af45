#include "engine/page_line.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace kel {
namespace {

// One line's runs as "column:cells[BU]text", a grapheme of its own in parentheses.
std::string Shown(const PageText& page, std::size_t line) {
  std::string shown;
  const PageLine& of_page = page.lines.at(line);
  for (std::uint32_t i = 0; i < of_page.runs; ++i) {
    const TextRun& run = page.runs.at(of_page.first_run + i);
    if (i > 0) shown += ' ';
    shown += std::to_string(run.column) + ':' + std::to_string(run.cells);
    if (run.bold) shown += 'B';
    if (run.underline) shown += 'U';
    const std::string text(page.TextOf(run));
    shown += run.plain ? '[' + text + ']' : '(' + text + ')';
  }
  return shown;
}

std::string Formatted(std::string_view line) {
  PageText page;
  AppendFormattedLine(page, line);
  return Shown(page, 0);
}

std::string Raw(std::string_view line) {
  PageText page;
  AppendRawLine(page, line);
  return Shown(page, 0);
}

TEST(PageLineTest, CodesSwitchTheLookAndTakeNoCells) {
  for (const auto& [line, shown] : std::vector<std::pair<std::string, std::string>>{
           {"\x01plain", "0:6[ plain]"},
           {"a\033Ebold\033Fb", "0:2[ a] 2:4B[bold] 6:1[b]"},
           {"\x1b-1u\033Eboth\x1b-0b", "0:1[ ] 1:1U[u] 2:4BU[both] 6:1B[b]"},
           {"\x1b-12,500\x1b-0", "0:1[ ] 1:5U[2,500]"},  // not the size code "-12"
           {"\x1b-26x\x1b\033Ey\x1b", "0:5[ -26x] 5:1B[y]"},
           {"\x1b\x01"
            "Ee",
            "0:1[ ] 1:1B[e]"},
           {"\033E\033F\x1b-1\x1b-0", "0:1[ ]"},
       }) {
    EXPECT_EQ(Formatted(line), shown) << line;
  }
}

TEST(PageLineTest, GraphemesOtherThanAsciiAreDrawnByThemselvesAtTheirCells) {
  for (const auto& [line, shown] : std::vector<std::pair<std::string, std::string>>{
           {"नकद b", "0:1[ ] 1:1(न) 2:1(क) 3:1(द) 4:2[ b]"},
           {"क्षेत्रa", "0:1[ ] 1:2(क्षे) 3:2(त्र) 5:1[a]"},
           {"दर्\u200dया क्\u0958", "0:1[ ] 1:1(द) 2:2(र्\u200dया) 4:1[ ] 5:2(क्\u0958)"},
           {"क्\x1b-1षક્a\u094dષ", "0:1[ ] 1:1(क्) 2:1U(ष) 3:1U(ક્) 4:1U(a\u094d) 5:1U(ષ)"},
           {"世a", "0:1[ ] 1:2(世) 3:1[a]"},
           {"xe\u0301y", "0:2[ x] 2:1(e\u0301) 3:1[y]"},
           {"e\033E\u0301f", "0:1[ ] 1:1(e\u0301) 2:1B[f]"},
           {"\u0301x", "0:1( \u0301) 1:1[x]"},
           {"ab\u200bc", "0:2[ a] 2:1(b\u200b) 3:1[c]"},
           {"a\xff\xc3z", "0:2[ a] 2:1(\ufffd) 3:1(\ufffd) 4:1[z]"},
           {"\tx\x7f\xc3\xa9", "0:4[  x ] 4:1(é)"},
       }) {
    EXPECT_EQ(Formatted(line), shown) << line;
    if (line.find('\033') == std::string::npos) {
      EXPECT_EQ(Raw(line), shown) << line;
    }
  }
}

TEST(PageLineTest, ARawLineKeepsACellForEachControlCharacter) {
  EXPECT_EQ(Raw("a\033Eb\x01"
                "c"),
            "0:7[ a Eb c]");
  EXPECT_EQ(Raw("   "), "");
  EXPECT_EQ(Raw(""), "");
}

TEST(PageLineTest, BoldEndsWithTheLineAndUnderlineGoesOn) {
  PageText page;
  AppendFormattedLine(page, "\033E\x1b-1title");
  AppendRawLine(page, "raw");
  AppendFormattedLine(page, "x\x1b-0y");
  EXPECT_EQ(Shown(page, 1), "0:4U[ raw]");
  EXPECT_EQ(Shown(page, 2), "0:2U[ x] 2:1[y]");
  page.Clear();
  AppendFormattedLine(page, "\x1b-1");
  page.Clear();
  AppendRawLine(page, "new");
  EXPECT_EQ(Shown(page, 0), "0:4[ new]");
}

TEST(PageLineTest, TheMarkEndsWithTheLine) {
  struct Case {
    Cells column, cells, marked_column, marked_cells;
  };
  for (const Case& c : {Case{2, 2, 2, 2}, Case{3, 9, 3, 2}, Case{4, 1, 4, 1}, Case{5, 1, 0, 0},
                        Case{0, 3, 0, 0}, Case{2147483647, 2147483647, 0, 0}}) {
    PageText page;
    AppendRawLine(page, "above");
    AppendFormattedLine(page, "a\033Ebcd", c.column, c.cells);
    EXPECT_EQ(page.match.column, c.marked_column) << c.column;
    EXPECT_EQ(page.match.cells, c.marked_cells) << c.column;
    EXPECT_EQ(page.match.line, c.marked_cells > 0 ? 1 : 0);
  }
}

TEST(PageLineTest, NoMoreIsHeldOfALineThanASurfaceCouldShow) {
  const std::string wide = "世";
  for (const std::string& piece : {std::string("a"), wide, std::string("\033Ea\033F")}) {
    std::string line;
    while (line.size() < 300'000) line += piece;
    PageText page;
    AppendFormattedLine(page, line);
    const TextRun& last = page.runs.back();
    EXPECT_EQ(last.column + last.cells, kMostLineCells);
    EXPECT_LE(page.text.size(), 100'000U);
  }
}

}  // namespace
}  // namespace kel
