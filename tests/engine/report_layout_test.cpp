#include "engine/report_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "common/error.h"
#include "common/file.h"
#include "common/text_cells.h"
#include "engine/memory_grid.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using namespace std::string_literals;
using Strings = std::vector<std::string>;

// Lays a grid out and hands the pages back as lines, "\r\n" taken off.
class ReportLayoutTest : public ::testing::Test {
 protected:
  ReportLayoutTest() {
    settings.top_margin = settings.bottom_margin = 1;
    settings.lines = 10;
  }

  Strings LayOut(MemoryGrid& grid, const std::vector<Cells>& widths) {
    const ReportRange range = {0, col1, row2.value_or(grid.Rows() - 1),
                               col2.value_or(grid.Cols() - 1), first_page};
    OutputFile file(folder / "pages.rpt");
    PageFileWriter writer(file);
    last_page = LayOutReport(grid, widths, settings, range, {titles, "21/11/2026 02:05:09 PM"},
                             writer, [](PageNumber) {})
                    .last;
    file.Commit();
    const std::string text = testing::ReadFile(folder / "pages.rpt");
    Strings lines;
    for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end + 2) {
      end = text.find("\r\n", begin);
      if (end == std::string::npos) throw std::runtime_error("a line without its end");
      lines.push_back(text.substr(begin, end - begin));
    }
    return lines;
  }

  Error ErrorOf(MemoryGrid& grid, const std::vector<Cells>& widths) {
    std::filesystem::remove(folder / "pages.rpt");
    Error error = testing::ErrorOf([&] { LayOut(grid, widths); });
    EXPECT_FALSE(std::filesystem::exists(folder / "pages.rpt"));
    return error;
  }

  testing::TestFolder folder;
  PrintSettings settings;
  Strings titles;
  std::int32_t col1 = 0;
  std::optional<std::int32_t> row2;
  std::optional<std::int32_t> col2;
  PageNumber first_page = 1;
  PageNumber last_page = 0;
};

// The rule of a line of 21 characters.
const std::string kRule(21, '-');

Strings Slice(const Strings& lines, std::size_t begin, std::size_t end) {
  if (end > lines.size()) return {"only", std::to_string(lines.size()), "lines"};
  return {lines.data() + begin, lines.data() + end};
}

MemoryGrid GridOf(const std::string& caption,
                  const std::vector<std::vector<std::string_view>>& rows) {
  MemoryGrid grid(caption);
  for (const std::vector<std::string_view>& row : rows) grid.AddRow(row);
  return grid;
}

MemoryGrid Numbered(int rows) {
  MemoryGrid grid = GridOf("Day Book", {{"No", "Item"}});
  for (int i = 1; i <= rows; ++i) grid.AddRow({std::to_string(i), "x"});
  return grid;
}

TEST_F(ReportLayoutTest, OnePageHasEverythingInItsPlace) {
  MemoryGrid grid =
      GridOf("Trial Balance", {{"Code", "Account", "Balance"}, {"1001", "Cash", "1,250.00"}});
  grid.ColAlignment(2, kAlignRight);
  settings.left_margin = 2;
  settings.bottom_margin = 2;
  settings.print_date_time = true;
  settings.print_column_divider = true;
  titles = {"ACME Traders"};
  const Strings page = {"\x01  ACME Traders",
                        "  Trial Balance                     Page 1",
                        "  ----------------------------------------",
                        "  Code  |Account             |     Balance",
                        "  ----------------------------------------",
                        "  1001  |Cash                |    1,250.00",
                        "  ----------------------------------------",
                        "",
                        "",
                        "  ----------------------------------------",
                        "  21/11/2026 02:05:09 PM    End Of Report.",
                        "",
                        "\x0c"};
  EXPECT_EQ(LayOut(grid, {6, 20, 12}), page);
}

TEST_F(ReportLayoutTest, LaterPagesRepeatTheHeadingsAndTheirMarkBetweenRules) {
  settings.lines = 9;
  MemoryGrid grid = Numbered(5);
  grid.Font(0, 0, {true, false});
  const std::string heading = "\001\033ENo \033F Item";
  const Strings lines = LayOut(grid, {3, 17});
  ASSERT_EQ(lines.size(), 22U);
  EXPECT_EQ(Slice(lines, 0, 11),
            (Strings{"", "Day Book       Page 1", kRule, heading, kRule, "1   x", "2   x", "3   x",
                     kRule, "             Contd...", "\x0c"}));
  EXPECT_EQ(Slice(lines, 11, 22),
            (Strings{"", "Day Book       Page 2", kRule, heading, kRule, "4   x", "5   x", kRule,
                     kRule, "       End Of Report.", "\x0c"}));
  EXPECT_EQ(last_page, 2);
}

TEST_F(ReportLayoutTest, AFullLastPageIsFollowedByAPageWithHeadingsAndTheEndFoot) {
  MemoryGrid grid = Numbered(4);
  const Strings lines = LayOut(grid, {3, 17});
  ASSERT_EQ(lines.size(), 24U);
  EXPECT_EQ(lines[10], "             Contd...");
  EXPECT_EQ(Slice(lines, 13, 24), (Strings{"Day Book       Page 2", kRule, "No  Item", kRule, "",
                                           "", "", "", kRule, "       End Of Report.", "\x0c"}));
}

TEST_F(ReportLayoutTest, EveryPageHasPageLengthLinesAndEndsWithAFormFeed) {
  for (const int lines : {7, 8, 9, 13, 60}) {
    for (const int rows : {0, 1, 2, 3, 50, 51, 52, 53, 54}) {
      for (const std::size_t title_count : {0U, 1U, 4U}) {
        settings.lines = lines + static_cast<int>(title_count);
        settings.top_margin = rows % 3;
        titles.assign(title_count, "title");
        MemoryGrid grid = Numbered(rows);
        const Strings out = LayOut(grid, {3, 17});
        const auto length = static_cast<std::size_t>(PageLength(settings));
        ASSERT_EQ(out.size(), length * static_cast<std::size_t>(last_page))
            << lines << " lines, " << rows << " rows, " << title_count << " titles";
        for (std::size_t end = length; end <= out.size(); end += length) {
          EXPECT_EQ(out[end - 1], "\x0c");
        }
        EXPECT_EQ(std::count(out.begin(), out.end(), "\x0c"), last_page);
        const auto is_row = [](const std::string& line) { return line.ends_with("  x"); };
        EXPECT_EQ(std::count_if(out.begin(), out.end(), is_row), rows);
      }
    }
  }
}

TEST_F(ReportLayoutTest, SurplusTitlesTakeBodyLinesOfPageOneOnly) {
  titles = {"one", "two", "three"};
  MemoryGrid grid = Numbered(3);
  const Strings lines = LayOut(grid, {3, 17});
  ASSERT_EQ(lines.size(), 24U);
  EXPECT_EQ(Slice(lines, 0, 13),
            (Strings{"\001one", "\001two", "\001three", "Day Book       Page 1", kRule, "No  Item",
                     kRule, "1   x", "2   x", kRule, "             Contd...", "\x0c", ""}));
}

TEST_F(ReportLayoutTest, PreparingEndsWithTheEndPageAndOnlyPageOneHasTitles) {
  titles = {"ACME Traders"};
  first_page = 5;
  settings.end_page = 6;
  MemoryGrid grid = Numbered(1000);
  const Strings lines = LayOut(grid, {3, 17});
  EXPECT_EQ(last_page, 6);
  ASSERT_EQ(lines.size(), 24U);
  EXPECT_EQ(Slice(lines, 0, 2), (Strings{"", "Day Book       Page 5"}));
  EXPECT_EQ(Slice(lines, 12, 14), (Strings{"", "Day Book       Page 6"}));
  EXPECT_EQ(Slice(lines, 22, 24), (Strings{"             Contd...", "\x0c"}));
  first_page = 7;
  EXPECT_EQ(ErrorOf(grid, {3, 17}).Number(), error_number::kInvalidProcedureCall);
}

TEST_F(ReportLayoutTest, WrappedCellBreaksAfterTheLastBlankThatFits) {
  settings.print_column_divider = true;
  for (const auto& [width, text, body] :
       {std::tuple(7, "abc def ghi", "abc    |x/def ghi|/"),  // the second blank does not fit
        std::tuple(7, "abc de fgh", "abc de |x/fgh    |/"),   // the seventh character is a blank
        std::tuple(7, "abcdefghijklmnop", "abcdefg|x/hijklmn|/op     |/"),
        std::tuple(7, "  abcdefgh", "       |x/abcdefg|/h      |/"),
        // A blank that carries a mark is no place to break.
        std::tuple(6, "ab \314\201cdefgh", "ab \314\201cde|x/fgh   |/"),
        std::tuple(6, "a b \314\201cdefgh", "a     |x/b \314\201cdef|/gh    |/"),
        // A character wider than its column.
        std::tuple(1, "\346\227\245\346\234\254a", "?|x/?|/a|/")}) {
    MemoryGrid grid = GridOf("", {{"h", "i"}, {text, "x"}});
    const Strings lines = LayOut(grid, {width, 1});
    std::string laid_out;
    for (std::size_t i = 5; lines[i] != lines[2]; ++i) laid_out += lines[i] + '/';
    EXPECT_EQ(laid_out, body);
  }
}

TEST_F(ReportLayoutTest, CodesStandAroundTheirCellsAndKeepTheColumnsWidth) {
  MemoryGrid grid = GridOf("", {{"a", "b", "c"}, {"ab", "cd", "ef"}, {" ", "", ""}});
  grid.ColAlignment(1, kAlignRight);
  grid.Font(1, 0, {true, false});
  grid.Font(1, 1, {false, true});
  grid.Font(1, 2, {true, true});
  settings.left_margin = 1;
  settings.bottom_margin = 0;
  const Strings lines = LayOut(grid, {4, 5, 3});
  EXPECT_EQ(lines[5], "\001 \033Eab  \033F    \033-1cd\033-0 \033E\033-1ef\033-0 \033F");
  // An empty row is the margin alone, filling lines are bare, no margin has no form feed.
  EXPECT_EQ(Slice(lines, 6, 9), (Strings{" ", " " + std::string(14, '-'), ""}));
  EXPECT_EQ(lines.size(), 11U);
  EXPECT_EQ(lines.back(), " End Of Report.");
}

TEST_F(ReportLayoutTest, HiddenColumnsTakeNoPlaceAndTheLineCountsAllOthers) {
  MemoryGrid grid = GridOf("cap", {{"a", "b", "c", "d"}, {"1", "2", "3", "4"}});
  settings.print_column_divider = true;
  Strings lines = LayOut(grid, {2, 0, 2, -3});
  EXPECT_EQ(lines[2], "-----");
  // The last visible column is not the last of the range, so it keeps its divider.
  EXPECT_EQ(lines[5], "1 |3 |");

  col1 = col2.emplace(2);
  lines = LayOut(grid, {2, 0, 2, 20});
  EXPECT_EQ(lines[2], std::string(26, '-'));
  EXPECT_EQ(lines[5], "3");
}

TEST_F(ReportLayoutTest, FixedRowsStandBetweenRulesAndOneRuleClosesTheBody) {
  MemoryGrid grid = GridOf("", {{"a"}, {"b"}});
  grid.FixedRows(2);
  settings.lines = 11;
  EXPECT_EQ(LayOut(grid, {10}),
            (Strings{"", "    Page 1", "----------", "a", "----------", "----------", "b",
                     "----------", "", "", "----------", "End Of Rep", "\x0c"}));
}

TEST_F(ReportLayoutTest, PageLineAndFootAreCutToNarrowLines) {
  MemoryGrid grid = GridOf("A caption longer than its line", {{"a"}});
  settings.lines = 7;
  for (const auto& [width, page, stamp, page_line, foot] :
       {std::tuple(4, 1, false, " Page 1", "End "),
        std::tuple(4, 1, true, " Page 1", "21/11/2026 02:05:09 PM"),
        std::tuple(30, 3, true, "A caption longer than i Page 3", "21/11/2026 02:05:09 PMEnd Of R"),
        std::tuple(30, 1234, false, "A caption longer tha Page 1234",
                   "                End Of Report.")}) {
    settings.print_date_time = stamp;
    first_page = page;
    const Strings lines = LayOut(grid, {width});
    EXPECT_EQ(lines[1], page_line);
    EXPECT_EQ(lines[6], std::string(static_cast<std::size_t>(width), '-'));
    EXPECT_EQ(lines[7], foot);
  }
}

TEST_F(ReportLayoutTest, RulesAreMadeOfTheFirstCharacterOfUnderLineChar) {
  MemoryGrid grid = GridOf("", {{"a"}});
  for (const auto& [text, rule] :
       {std::pair("=*", "====="), std::pair("", "-----"), std::pair("\xE2\x80\x8B", "-----"),
        std::pair("\xE4\xB8\x80", "\xE4\xB8\x80\xE4\xB8\x80 ")}) {
    settings.under_line_char = text;
    EXPECT_EQ(LayOut(grid, {5})[2], rule);
  }
}

TEST_F(ReportLayoutTest, TextOfAnyScriptKeepsDividersInTheirCells) {
  MemoryGrid grid =
      GridOf("\xE0\xA4\x96\xE0\xA4\xBE\xE0\xA4\xA4\xE0\xA4\xBE",
             {{"h", "i"},
              {"\xE0\xA4\xA8\xE0\xA4\xAE\xE0\xA4\xB8\xE0\xA5\x8D\xE0\xA4\xA4\xE0\xA5\x87 "
               "\xE0\xA4\xB8\xE0\xA5\x87\xE0\xA4\xA0",
               "x"},
              {"\xE2\x82\xB9 1,250", "x"},
              {"e\xCC\x81t\xC3\xA9 combin\xC3\xA9", "x"},
              {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE6\x96\x87\xE5\xAD\x97", "x"},
              {"bad \xFF\xC3( bytes \xE0\xA4", "x"},
              {"tab\tand\r\nline\nend", "x"},
              {{"nul\0in", 6}, "x"}});
  settings.lines = 40;
  settings.print_column_divider = true;
  const Strings lines = LayOut(grid, {7, 3});
  std::string all;
  for (std::size_t i = 5; lines[i].find('-') == std::string::npos; ++i) {
    const std::string cell = lines[i].substr(0, lines[i].find('|'));
    ASSERT_LT(cell.size(), lines[i].size()) << "no divider";
    EXPECT_EQ(CellWidth(cell), 7) << lines[i];
    all += cell;
  }
  // Invalid bytes come out unchanged, and breaking lost none of them.
  for (const char* part : {"\xFF\xC3(", "\xE0\xA4 ", "line ", "nul in"}) {
    EXPECT_NE(all.find(part), std::string::npos) << part;
  }
}

TEST_F(ReportLayoutTest, ACellOfFiftyMegabytesStopsAtTheEndPage) {
  const std::string huge(50'000'000, 'w');
  MemoryGrid grid = GridOf("", {{"h", "i"}, {huge, "x"}, {"after", "y"}});
  settings.end_page = 3;
  EXPECT_EQ(LayOut(grid, {10, 3}).size(), 36U);
}

TEST_F(ReportLayoutTest, TooFewLinesAreRefusedWithTheLeastThatWouldDo) {
  for (const auto& [lines, title_count, heading, least] :
       {std::tuple(6, 0U, "h"s, 7), std::tuple(7, 0U, "two words"s, 8), std::tuple(8, 4U, "h"s, 10),
        std::tuple(0, 0U, "h"s, 7), std::tuple(-5, 0U, "h"s, 7),
        std::tuple(7, 0U, std::string(50'000, 'h'), 10'006)}) {
    MemoryGrid grid = GridOf("", {{heading}, {"x"}});
    settings.lines = lines;
    titles.assign(title_count, "t");
    const Error error = ErrorOf(grid, {5});
    EXPECT_EQ(error.Number(), error_number::kInvalidProcedureCall);
    EXPECT_TRUE(testing::Contains(error, "needs " + std::to_string(least) + " lines"));
    settings.lines = least;
    EXPECT_NO_THROW(LayOut(grid, {5}));
  }
}

TEST_F(ReportLayoutTest, RangesThatThereAreNotAreRefused) {
  MemoryGrid grid = Numbered(3);
  EXPECT_EQ(ErrorOf(grid, {0, -1}).Number(), error_number::kInvalidProcedureCall);
  EXPECT_EQ(ErrorOf(grid, {3}).Number(), error_number::kSubscriptOutOfRange);
  EXPECT_EQ(ErrorOf(grid, {2'000'000'000, 2'000'000'000}).Number(), error_number::kOverflow);
  col2 = 7;
  EXPECT_EQ(ErrorOf(grid, std::vector<Cells>(8, 3)).Number(), error_number::kSubscriptOutOfRange);
  col2.reset();
  row2 = 4;
  EXPECT_EQ(ErrorOf(grid, {3, 17}).Number(), error_number::kSubscriptOutOfRange);
  row2.reset();
  settings.bottom_margin = -1;
  EXPECT_EQ(ErrorOf(grid, {3, 17}).Number(), error_number::kInvalidProcedureCall);
}

}  // namespace
}  // namespace kel
