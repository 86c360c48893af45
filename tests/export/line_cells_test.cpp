#include "export/line_cells.h"

#include <gtest/gtest.h>

#include <string>

namespace kel {
namespace {

using Texts = std::vector<std::string>;

// The cells, and behind them what stands behind the last column.
Texts CutBy(const std::vector<Cells>& widths, Cells margin, std::string_view line) {
  std::vector<ReportColumn> columns;
  columns.reserve(widths.size());
  for (const Cells width : widths) columns.push_back({width, TextSide::kLeft});
  LineCells cells(columns, margin);
  Texts texts;
  for (const std::string_view text : cells.Cut(line)) texts.emplace_back(text);
  texts.emplace_back(cells.Rest());
  return texts;
}

TEST(LineCellsTest, AColumnIsItsWidthAndItsDividerBehindTheMargin) {
  EXPECT_EQ(CutBy({3, 4, 2}, 2, "  abc|  12|z"), (Texts{"abc|", "  12|", "z", ""}));
  EXPECT_EQ(CutBy({3, 4, 2}, 0, "abc def  gh  over the end "),
            (Texts{"abc", "def", "gh", " over the end"}));
  EXPECT_EQ(CutBy({3, 4, 2}, 0, "ab"), (Texts{"ab", "", "", ""}));
  EXPECT_EQ(CutBy({3, 4, 2}, 0, ""), (Texts{"", "", "", ""}));
  EXPECT_EQ(CutBy({}, 2, "  a whole line "), (Texts{"a whole line", ""}));
}

TEST(LineCellsTest, OnlyALineLongerThanTheMarginLosesIt) {
  EXPECT_EQ(CutBy({2, 2}, 5, "abcd"), (Texts{"abc", "d", ""}));
  EXPECT_EQ(CutBy({2, 2}, 5, "abcde   "), (Texts{"abc", "de", ""}));
  EXPECT_EQ(CutBy({2, 2}, 5, "     f"), (Texts{"f", "", ""}));
  EXPECT_EQ(CutBy({2, 2}, -1, "abc"), (Texts{"abc", "", ""}));
}

TEST(LineCellsTest, ColumnsAreMeasuredInDisplayCells) {
  EXPECT_EQ(CutBy({4, 3}, 0, "नकद  गुण"), (Texts{"नकद", "गुण", ""}));
  EXPECT_EQ(CutBy({4, 3}, 1, " 漢字|  é|"), (Texts{"漢字|", "  é|", ""}));
  EXPECT_EQ(CutBy({2, 2, 2}, 0, "ab漢 cd ef"), (Texts{"ab", "漢 c", "d e", "f"}));
  EXPECT_EQ(CutBy({2, 2}, 0, "\xff\xff| x"), (Texts{"\xff\xff|", " x", ""}));
  EXPECT_EQ(CutBy({2, 2}, 1, " \u200bab|\u200bcd"), (Texts{"\u200bab|", "\u200bcd", ""}));
  EXPECT_EQ(CutBy({2}, 0, "\u200bab"), (Texts{"\u200bab", ""}));
}

}  // namespace
}  // namespace kel
