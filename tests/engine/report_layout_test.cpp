#include "engine/report_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "common/error.h"
#include "common/file.h"
#include "common/text_cells.h"
#include "engine/memory_grid.h"
#include "support/test_folder.h"

namespace kel {
namespace {

PrintSettings SmallPage() {
  PrintSettings settings;
  settings.top_margin = 1;
  settings.bottom_margin = 1;
  settings.lines = 10;
  return settings;
}

// Lays a grid out and hands the pages back as lines, "\r\n" taken off.
class ReportLayoutTest : public ::testing::Test {
 protected:
  std::vector<std::string> LayOut(MemoryGrid& grid, const std::vector<Cells>& widths) {
    const ReportRange range = {row1, col1, row2.value_or(grid.Rows() - 1),
                               col2.value_or(grid.Cols() - 1), first_page};
    OutputFile file(folder / "pages.rpt");
    PageFileWriter writer(file);
    last_page = LayOutReport(grid, widths, settings, range, {titles, "21/11/2026 02:05:09 PM"},
                             writer, [](PageNumber) {});
    file.Commit();
    return Lines(testing::ReadFile(folder / "pages.rpt"));
  }

  static std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = text.find("\r\n", begin);
      EXPECT_NE(end, std::string::npos) << "a line without its end";
      lines.push_back(text.substr(begin, end - begin));
      begin = end + 2;
    }
    return lines;
  }

  Error ErrorOf(MemoryGrid& grid, const std::vector<Cells>& widths) {
    std::filesystem::remove(folder / "pages.rpt");
    try {
      LayOut(grid, widths);
    } catch (const Error& error) {
      EXPECT_FALSE(std::filesystem::exists(folder / "pages.rpt"));
      return error;
    }
    ADD_FAILURE() << "no error";
    return Error(0, "");
  }

  testing::TestFolder folder;
  PrintSettings settings = SmallPage();
  std::vector<std::string> titles;
  std::int32_t row1 = 0;
  std::int32_t col1 = 0;
  std::optional<std::int32_t> row2;
  std::optional<std::int32_t> col2;
  PageNumber first_page = 1;
  PageNumber last_page = 0;
};

using Strings = std::vector<std::string>;

MemoryGrid Numbered(int rows) {
  MemoryGrid grid("Day Book");
  grid.AddRow({"No", "Item"});
  for (int i = 1; i <= rows; ++i) grid.AddRow({std::to_string(i), "x"});
  return grid;
}

TEST_F(ReportLayoutTest, OnePageHasEverythingInItsPlace) {
  MemoryGrid grid("Trial Balance");
  grid.AddRow({"Code", "Account", "Balance"});
  grid.AddRow({"1001", "Cash", "1,250.00"});
  grid.ColAlignment(2, kAlignRight);
  settings.left_margin = 2;
  settings.bottom_margin = 2;
  settings.print_date_time = true;
  settings.print_column_divider = true;
  titles = {"ACME Traders"};
  EXPECT_EQ(LayOut(grid, {6, 20, 12}), (Strings{
                                           "\x01  ACME Traders",
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
                                           "\x0c",
                                       }));
}

TEST_F(ReportLayoutTest, LaterPagesRepeatTheHeadingsBetweenRules) {
  settings.lines = 9;
  MemoryGrid grid = Numbered(5);
  EXPECT_EQ(LayOut(grid, {3, 17}), (Strings{
                                       "",
                                       "Day Book       Page 1",
                                       "---------------------",
                                       "No  Item",
                                       "---------------------",
                                       "1   x",
                                       "2   x",
                                       "3   x",
                                       "---------------------",
                                       "             Contd...",
                                       "\x0c",
                                       "",
                                       "Day Book       Page 2",
                                       "---------------------",
                                       "No  Item",
                                       "---------------------",
                                       "4   x",
                                       "5   x",
                                       "---------------------",
                                       "---------------------",
                                       "       End Of Report.",
                                       "\x0c",
                                   }));
  EXPECT_EQ(last_page, 2);
}

TEST_F(ReportLayoutTest, AFullLastPageIsFollowedByAPageWithHeadingsAndTheEndFoot) {
  MemoryGrid grid = Numbered(4);
  const Strings lines = LayOut(grid, {3, 17});
  ASSERT_EQ(lines.size(), 24U);
  EXPECT_EQ(lines[10], "             Contd...");
  EXPECT_EQ(Strings(lines.begin() + 13, lines.end()),
            (Strings{"Day Book       Page 2", "---------------------", "No  Item",
                     "---------------------", "", "", "", "", "---------------------",
                     "       End Of Report.", "\x0c"}));
}

TEST_F(ReportLayoutTest, EveryPageHasPageLengthLinesAndEndsWithAFormFeed) {
  for (const int lines : {7, 8, 9, 13, 60}) {
    for (const int rows : {0, 1, 2, 3, 50, 51, 52, 53, 54}) {
      for (const std::size_t title_count : {0, 1, 4}) {
        settings.lines = lines + static_cast<int>(title_count);
        settings.top_margin = static_cast<int>(rows % 3);
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
        const auto bodies = std::count_if(out.begin(), out.end(), [](const std::string& line) {
          return line.ends_with("   x") || line.ends_with("  x");
        });
        EXPECT_EQ(bodies, rows);
      }
    }
  }
}

TEST_F(ReportLayoutTest, SurplusTitlesTakeBodyLinesOfPageOneOnly) {
  titles = {"one", "two", "three"};
  MemoryGrid grid = Numbered(3);
  const Strings lines = LayOut(grid, {3, 17});
  ASSERT_EQ(lines.size(), 24U);
  EXPECT_EQ(Strings(lines.begin(), lines.begin() + 12),
            (Strings{"\x01one", "\x01two", "\x01three", "Day Book       Page 1",
                     "---------------------", "No  Item", "---------------------", "1   x", "2   x",
                     "---------------------", "             Contd...", "\x0c"}));
  EXPECT_EQ(lines[12], "");
}

TEST_F(ReportLayoutTest, AFirstPageOtherThanOneHasNoTitles) {
  titles = {"ACME Traders"};
  first_page = 5;
  MemoryGrid grid = Numbered(20);
  const Strings lines = LayOut(grid, {3, 17});
  EXPECT_EQ(lines[0], "");
  EXPECT_EQ(lines[1], "Day Book       Page 5");
  EXPECT_EQ(std::count(lines.begin(), lines.end(),
                       "\x01"
                       "ACME Traders"),
            0);
  EXPECT_GT(last_page, 5);
}

TEST_F(ReportLayoutTest, PreparingEndsWithTheEndPage) {
  settings.end_page = 2;
  MemoryGrid grid = Numbered(1000);
  const Strings lines = LayOut(grid, {3, 17});
  EXPECT_EQ(last_page, 2);
  ASSERT_EQ(lines.size(), 24U);
  EXPECT_EQ(lines[22], "             Contd...");
  EXPECT_EQ(lines[23], "\x0c");

  first_page = 3;
  EXPECT_EQ(ErrorOf(grid, {3, 17}).Number(), error_number::kInvalidProcedureCall);
}

TEST_F(ReportLayoutTest, WrappedCellBreaksAfterTheLastBlankThatFits) {
  MemoryGrid grid("");
  settings.lines = 20;
  grid.AddRow({"h", "n"});
  grid.AddRow({"abc def ghi", "1"});       // the blank after "def" does not fit any more
  grid.AddRow({"abc de fgh", "2"});        // the seventh character is a blank: it stays
  grid.AddRow({"abcdefghijklmnop", "3"});  // a word longer than the column is cut
  grid.AddRow({"  abcdefgh", "4"});
  const Strings lines = LayOut(grid, {7, 1});
  EXPECT_EQ(Strings(lines.begin() + 5, lines.begin() + 14),
            (Strings{"abc     1", "def ghi", "abc de  2", "fgh", "abcdefg 3", "hijklmn", "op",
                     "        4", "abcdefg"}));
}

TEST_F(ReportLayoutTest, AFinishedCellIsBlankOnTheRowsFurtherLines) {
  MemoryGrid grid("");
  settings.print_column_divider = true;
  grid.AddRow({"a", "b", "c"});
  grid.AddRow({"1", "one two", "z"});
  const Strings lines = LayOut(grid, {2, 4, 2});
  EXPECT_EQ(lines[5], "1 |one |z");
  EXPECT_EQ(lines[6], "  |two |");
}

TEST_F(ReportLayoutTest, CodesStandAroundTheirCellsAndKeepTheColumnsWidth) {
  MemoryGrid grid("");
  grid.AddRow({"a", "b", "c"});
  grid.AddRow({"ab", "cd", "ef"});
  grid.ColAlignment(1, kAlignRight);
  grid.Font(1, 0, {true, false});
  grid.Font(1, 1, {false, true});
  grid.Font(1, 2, {true, true});
  settings.left_margin = 1;
  const Strings lines = LayOut(grid, {4, 5, 3});
  EXPECT_EQ(lines[5],
            "\x01 \x1b"
            "Eab  \x1b"
            "F    \x1b-1cd\x1b-0 \x1b"
            "E\x1b-1ef\x1b-0 \x1b"
            "F");
}

TEST_F(ReportLayoutTest, FormattedHeadingsAreRepeatedWithTheirMark) {
  MemoryGrid grid = Numbered(10);
  grid.Font(0, 0, {true, false});
  const Strings lines = LayOut(grid, {3, 17});
  const std::string heading =
      "\x01\x1b"
      "ENo \x1b"
      "F Item";
  EXPECT_EQ(lines[3], heading);
  EXPECT_EQ(lines[15], heading);
}

TEST_F(ReportLayoutTest, HiddenColumnsTakeNoPlaceAndTheLineCountsAllOthers) {
  MemoryGrid grid("cap");
  grid.AddRow({"a", "b", "c", "d"});
  grid.AddRow({"1", "2", "3", "4"});
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
  MemoryGrid grid("");
  grid.AddRow({"a"});
  grid.AddRow({"b"});
  grid.FixedRows(2);
  settings.lines = 11;
  EXPECT_EQ(LayOut(grid, {10}),
            (Strings{"", "    Page 1", "----------", "a", "----------", "----------", "b",
                     "----------", "", "", "----------", "End Of Rep", "\x0c"}));
}

TEST_F(ReportLayoutTest, PageLineAndFootAreCutToNarrowLines) {
  MemoryGrid grid("A caption");
  grid.AddRow({"a"});
  settings.lines = 7;
  Strings lines = LayOut(grid, {4});
  EXPECT_EQ(lines[1], " Page 1");
  EXPECT_EQ(lines[6], "----");
  EXPECT_EQ(lines[7], "End ");
  settings.print_date_time = true;
  lines = LayOut(grid, {4});
  EXPECT_EQ(lines[7], "21/11/2026 02:05:09 PM");
  lines = LayOut(grid, {30});
  EXPECT_EQ(lines[1], "A caption               Page 1");
  EXPECT_EQ(lines[7], "21/11/2026 02:05:09 PMEnd Of R");
}

TEST_F(ReportLayoutTest, ThePageNumberShortensTheCaption) {
  MemoryGrid grid("A caption longer than its line");
  grid.AddRow({"a"});
  first_page = 3;
  EXPECT_EQ(LayOut(grid, {30})[1], "A caption longer than i Page 3");
  first_page = 1234;
  EXPECT_EQ(LayOut(grid, {30})[1], "A caption longer tha Page 1234");
}

TEST_F(ReportLayoutTest, AnEmptyRowIsTheMarginAloneAndFillingLinesAreBare) {
  MemoryGrid grid("");
  grid.AddRow({"a"});
  grid.AddRow({"  "});
  settings.left_margin = 3;
  settings.bottom_margin = 0;
  const Strings lines = LayOut(grid, {9});
  EXPECT_EQ(lines[5], "   ");
  EXPECT_EQ(lines[6], "   ---------");
  EXPECT_EQ(lines[7], "");
  EXPECT_EQ(lines.size(), 11U);
  EXPECT_EQ(lines.back(), "   End Of Re");
}

TEST_F(ReportLayoutTest, RulesAreMadeOfTheFirstCharacterOfUnderLineChar) {
  MemoryGrid grid("");
  grid.AddRow({"a"});
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"=*", "====="},
      {"", "-----"},
      {"\xE2\x95\x90", "\xE2\x95\x90\xE2\x95\x90\xE2\x95\x90\xE2\x95\x90\xE2\x95\x90"},
      {"\xE4\xB8\x80", "\xE4\xB8\x80\xE4\xB8\x80 "},
      {"\xE2\x80\x8B", "-----"}};
  for (const auto& [text, rule] : cases) {
    settings.under_line_char = text;
    EXPECT_EQ(LayOut(grid, {5})[2], rule);
  }
}

TEST_F(ReportLayoutTest, TextOfAnyScriptKeepsDividersInTheirCells) {
  MemoryGrid grid("\xE0\xA4\x96\xE0\xA4\xBE\xE0\xA4\xA4\xE0\xA4\xBE");
  const std::vector<std::string> texts = {
      "\xE0\xA4\xA8\xE0\xA4\xAE\xE0\xA4\xB8\xE0\xA5\x8D\xE0\xA4\xA4\xE0\xA5\x87 "
      "\xE0\xA4\xB8\xE0\xA5\x87\xE0\xA4\xA0",                          // Devanagari
      "\xE2\x82\xB9 1,250",                                            // rupee sign
      "e\xCC\x81t\xC3\xA9 combin\xC3\xA9",                             // combining and precomposed
      "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE6\x96\x87\xE5\xAD\x97",  // double width, odd column
      "bad \xFF\xC3( bytes \xE0\xA4",
      "tab\tand\r\nline\nend",
      std::string("nul\0in", 6)};
  grid.AddRow({"h", "i"});
  for (const std::string& text : texts) grid.AddRow({text, "x"});
  settings.lines = 40;
  settings.print_column_divider = true;
  const Strings lines = LayOut(grid, {7, 3});
  for (std::size_t i = 5; lines[i].find('-') == std::string::npos; ++i) {
    const std::size_t divider = lines[i].find('|');
    ASSERT_NE(divider, std::string::npos);
    EXPECT_EQ(CellWidth(lines[i].substr(0, divider)), 7) << lines[i];
  }
  // Invalid bytes come out unchanged, and breaking lost none of them.
  std::string all;
  for (const std::string& line : lines) all += line.substr(0, line.find('|'));
  EXPECT_NE(all.find("\xFF\xC3("), std::string::npos);
  EXPECT_NE(all.find("\xE0\xA4 "), std::string::npos);
  EXPECT_NE(all.find("line "), std::string::npos);
  EXPECT_NE(all.find("nul in"), std::string::npos);
}

TEST_F(ReportLayoutTest, ABlankThatCarriesAMarkIsNoPlaceToBreak) {
  MemoryGrid grid("");
  grid.AddRow({"h"});
  grid.AddRow(
      {"ab \xCC\x81"
       "cdefgh"});
  grid.AddRow(
      {"a b \xCC\x81"
       "cdefgh"});
  const Strings lines = LayOut(grid, {6});
  EXPECT_EQ(Strings(lines.begin() + 5, lines.begin() + 9), (Strings{"ab \xCC\x81"
                                                                    "cde",
                                                                    "fgh", "a",
                                                                    "b \xCC\x81"
                                                                    "cdef"}));
}

TEST_F(ReportLayoutTest, AGraphemeWiderThanItsColumnShowsAsAQuestionMark) {
  MemoryGrid grid("");
  grid.AddRow({"h", "i"});
  grid.AddRow(
      {"\xE6\x97\xA5\xE6\x9C\xAC"
       "a",
       "x"});
  const Strings lines = LayOut(grid, {1, 3});
  EXPECT_EQ(Strings(lines.begin() + 5, lines.begin() + 9), (Strings{"? x", "?", "a", "-----"}));
}

TEST_F(ReportLayoutTest, ACellOfFiftyMegabytesStopsAtTheEndPage) {
  MemoryGrid grid("");
  grid.AddRow({"h", "i"});
  grid.AddRow({std::string(50'000'000, 'w'), "x"});
  grid.AddRow({"after", "y"});
  settings.end_page = 3;
  EXPECT_EQ(LayOut(grid, {10, 3}).size(), 36U);
}

TEST_F(ReportLayoutTest, TooFewLinesAreRefusedWithTheLeastThatWouldDo) {
  struct Case {
    int lines;
    int titles;
    std::string heading;
    int least;
  };
  for (const Case& c :
       {Case{6, 0, "h", 7}, Case{7, 0, "two words", 8}, Case{8, 4, "h", 10}, Case{0, 0, "h", 7},
        Case{-5, 0, "h", 7}, Case{7, 0, std::string(50'000, 'h'), 10'006}}) {
    MemoryGrid grid("");
    grid.AddRow({c.heading});
    grid.AddRow({"x"});
    settings.lines = c.lines;
    titles.assign(static_cast<std::size_t>(c.titles), "t");
    const Error error = ErrorOf(grid, {5});
    EXPECT_EQ(error.Number(), error_number::kInvalidProcedureCall);
    EXPECT_NE(error.Description().find("needs " + std::to_string(c.least) + " lines"),
              std::string::npos)
        << error.Description();
    settings.lines = c.least;
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
