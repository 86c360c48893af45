// Grid sources: a caller's object, a statement's rows, a grid in memory.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/error.h"
#include "common/text_cells.h"
#include "data/csv.h"
#include "engine/CPrint.h"
#include "engine/memory_grid.h"
#include "engine/recordset_grid.h"
#include "support/recording_grid.h"
#include "support/test_folder.h"

namespace kel {
namespace {

class RecordsetGridTest : public ::testing::Test {
 protected:
  Recordset& Rows(const std::string& csv) {
    testing::WriteFile(folder_ / "t.csv", csv);
    rows_.Close();
    rows_.Open(OpenCsv(folder_ / "t.csv"));
    return rows_;
  }

 private:
  testing::TestFolder folder_;
  Recordset rows_;
};

TEST_F(RecordsetGridTest, WidthsHoldHeadingsAndSampledRowsAndNumbersAreRightAligned) {
  RecordsetGrid grid(Rows("Code,A,Empty,Long\n1,\xE0\xA4\x95\xE0\xA5\x8D\xE0\xA4\xB7,,x\n"
                          "22222,abc,,0123456789\n3,past the sample,,y\n"),
                     "t");
  EXPECT_EQ(grid.MeasureWidths(2, 8), (std::vector<Cells>{5, 3, 5, 8}));
  EXPECT_EQ(grid.ColAlignment(0), kAlignRight);
  EXPECT_EQ(grid.ColAlignment(1), kAlignLeft);

  RecordsetGrid headings_only(Rows("a,b\n"), "t");
  EXPECT_EQ(headings_only.MeasureWidths(10, 40), (std::vector<Cells>{1, 1}));
  EXPECT_TRUE(headings_only.SetRow(0));
  EXPECT_FALSE(headings_only.SetRow(1));
}

TEST_F(RecordsetGridTest, EveryRowComesOnceHoweverItWasReadAhead) {
  constexpr std::int32_t kRows = 3000;  // several batches
  std::string csv = "n\n";
  for (int i = 1; i <= kRows; ++i) csv += std::to_string(i) + "\n";
  for (const std::int32_t sample : {0, 1, 255, 256, 1000, 5000}) {
    for (const std::int32_t first_walk : {0, 1, 700, kRows}) {
      RecordsetGrid grid(Rows(csv), "t");
      grid.MeasureWidths(sample, 40);
      ASSERT_TRUE(grid.SetRow(0));
      EXPECT_EQ(grid.TextMatrix(0, 0), "n");
      EXPECT_EQ(grid.CellBackColor(), system_color::kButtonFace);
      grid.BeginWalk();
      for (std::int32_t row = 1; row <= kRows; row += row < 300 ? 1 : 17) {
        if (row > first_walk) grid.EndWalk();
        ASSERT_TRUE(grid.SetRow(row));
        ASSERT_EQ(grid.TextMatrix(row, 0), std::to_string(row)) << sample << ' ' << first_walk;
      }
      EXPECT_FALSE(grid.SetRow(kRows + 1));
      EXPECT_THROW(grid.TextMatrix(kRows + 1, 0), Error);
      EXPECT_THROW(grid.SetRow(3), Error);
      grid.EndWalk();
    }
  }
}

TEST_F(RecordsetGridTest, AFailureComesAfterTheRowsBeforeIt) {
  std::string csv = "a,b\n";
  for (int i = 1; i < 1500; ++i) csv += std::to_string(i) + ",x\n";
  csv += "1500,x,one too many\n1501,x\n";
  for (const bool ahead : {false, true}) {
    RecordsetGrid grid(Rows(csv), "t");
    if (ahead) grid.BeginWalk();
    for (std::int32_t row = 1; row < 1500; ++row) {
      ASSERT_TRUE(grid.SetRow(row));
      ASSERT_EQ(grid.TextMatrix(row, 0), std::to_string(row));
    }
    EXPECT_THROW(grid.SetRow(1500), Error);
    EXPECT_FALSE(grid.SetRow(1501)) << "there is nothing after it";
    grid.EndWalk();
  }
}

TEST(MemoryGridTest, ShortRowsReadAsEmptyCellsAndKeepTheirFonts) {
  MemoryGrid grid("m");
  grid.AddRow({"a"});
  grid.AddRow({"b", "", "c"});
  grid.AddRow(std::initializer_list<std::string_view>{});
  grid.Font(0, 2, {true, false});
  grid.SetRow(0);
  grid.SetCol(2);
  EXPECT_TRUE(static_cast<GridSource&>(grid).Font().bold);
  EXPECT_EQ(grid.TextMatrix(0, 0), "a");
  EXPECT_EQ(grid.TextMatrix(0, 2), "");
  EXPECT_EQ(grid.TextMatrix(1, 2), "c");
  EXPECT_EQ(grid.TextMatrix(2, 1), "");
  for (const auto& [row, col] : {std::pair{-1, 0}, {3, 0}, {0, 3}, {0, -1}}) {
    EXPECT_THROW(grid.TextMatrix(row, col), Error) << row << ',' << col;
    EXPECT_THROW(grid.Font(row, col, {}), Error);
  }
}

// The members of a flex grid are used by name, in the published order.
TEST(ObjectGridTest, MembersAreReadAndWrittenInThePublishedOrder) {
  testing::RecordingGrid grid({{"A", "B"}, {"1", "wrapped text"}});
  CPrint print;
  print.Lines(20);
  print.PrintDateTime(false);
  print.ColWidth(Value::Array{2, 8});
  print.PrepareReport(grid, 0, 0, 1, 1, 0);
  ASSERT_FALSE(print.LastError()) << print.LastError()->Description();
  std::string calls;
  for (const std::string& call : grid.Calls()) calls += call + ' ';
  EXPECT_EQ(calls,
            "Parent Visible=False HighLight=0 Col=0 Row=0 CellBackColor "
            "TextMatrix(0,0) Col=0 cellfontbold cellfontunderline ColAlignment(0) "
            "TextMatrix(0,1) Col=1 cellfontbold cellfontunderline ColAlignment(1) "
            "CellBackColor Row=1 CellBackColor "
            "TextMatrix(1,0) Col=0 cellfontbold cellfontunderline ColAlignment(0) "
            "TextMatrix(1,1) Col=1 cellfontbold cellfontunderline ColAlignment(1) "
            // The row's second line: texts are not read again.
            "Col=0 cellfontbold cellfontunderline ColAlignment(0) "
            "Col=1 cellfontbold cellfontunderline ColAlignment(1) "
            "CellBackColor HighLight=2 Visible=True ");
  EXPECT_EQ(grid.LongestResolveCount(), 1) << "a name was resolved more than once";
}

TEST(ObjectGridTest, AGridThatFailsIsLeftAsItStands) {
  testing::RecordingGrid grid({{"A"}, {"1"}, {"2"}});
  grid.FailAt("TextMatrix(2,0)");
  CPrint print;
  print.ColWidth(Value::Array{9});
  print.PrepareReport(grid, 0, 0, 2, 0, 0);
  ASSERT_TRUE(print.LastError());
  EXPECT_EQ(print.LastError()->Number(), error_number::kInvalidProcedureCall);
  EXPECT_EQ(grid.Calls().back(), "TextMatrix(2,0)");
  EXPECT_TRUE(print.ReBuild());
}

}  // namespace
}  // namespace kel
