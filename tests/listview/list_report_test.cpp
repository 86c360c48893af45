#include "listview/list_report.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "list_fixture.h"

namespace kel {
namespace {

using testing::ErrorNumber;
using testing::ListTest;
using testing::ReadFile;

std::vector<ListColumn> ColumnsOf(std::initializer_list<Twips> widths) {
  std::vector<ListColumn> columns;
  for (const Twips width : widths) {
    columns.emplace_back();
    columns.back().width = width;
  }
  return columns;
}

TEST(ListReportWidths, EndWithTheColumnThatReachesThePageAndStayOnTheLine) {
  using Widths = std::vector<Cells>;
  std::vector<ListColumn> columns = ColumnsOf({1200, 119, 1319, 2400, 1200});
  EXPECT_EQ(ListReportWidths(columns, 80, 76), (Widths{10, 0, 10, 20, 10}));
  EXPECT_EQ(ListReportWidths(columns, 40, 40), (Widths{10, 0, 10, 18, 0}));
  EXPECT_EQ(ListReportWidths(columns, 41, 11), (Widths{10, 0, 0, 0, 0}));
  EXPECT_EQ(ListReportWidths(columns, 20, 20), (Widths{10, 0, 9, 0, 0}));
  columns[2].visible = false;
  EXPECT_EQ(ListReportWidths(columns, 30, 30), (Widths{10, 0, 0, 19, 0}));
  EXPECT_EQ(ListReportWidths(columns, 30, -4), (Widths{0, 0, 0, 0, 0}));
}

class ListReportTest : public ListTest {
 protected:
  ListReportTest() {
    print_->Cols(60);
    print_->Lines(20);
    print_->TopMargin(0);
    print_->BottomMargin(1);
    print_->LeftMargin(2);
    print_->RightMargin(1);
    print_->PrintDateTime(false);
    print_->PrintColumnDivider(true);
    print_->EndPage(1);
    records_->MoveLast();
  }

  /// The report page file's text.
  std::string Report(std::vector<Cells> widths, const std::string& col_sums = "") {
    for (std::size_t i = 0; i < widths.size(); ++i) model_.Columns()[i].width = widths[i] * 120;
    WriteListReport(*records_, model_.Columns(), "Day Book", col_sums, *print_);
    std::string text = ReadFile(print_->GetKelFile());
    std::erase(text, '\r');
    return text;
  }

  const std::shared_ptr<CPrint> print_ = std::make_shared<CPrint>();
};

constexpr std::string_view kFullReport =
    "  Day Book                                           Page 7\n"
    "  ---------------------------------------------------------\n"
    "   Id|   Day    |Name  |    Amount| Rate|Remarks\n"
    "  ---------------------------------------------------------\n"
    "    1|05/03/2026|shah  |      0.10|  0.1|opening\n"
    "    2|01/04/2026|Bank  |      0.20|     |\n"
    "    3|          |SHAH  | -1,250.50|  2.5|x\n"
    "    4|05/03/2026|      |  1,000.00|1.005|paid in two\n"
    "     |          |      |          |     |parts, the\n"
    "     |          |      |          |     |second one\n"
    "     |          |      |          |     |late\n"
    "    5|31/12/2026|      |          |    7|y\n"
    "  ---------------------------------------------------------\n"
    "     |          |      |   -250.20|     |\n"
    "  ---------------------------------------------------------\n"
    "\n\n\n"
    "  ---------------------------------------------------------\n"
    "                                             End Of Report.\n"
    "\f\n";

TEST_F(ListReportTest, HasHeadingsWrappedCellsFormatsAndExactTotals) {
  CurrentList().col_formats = Value::Array{"", "dd/mm/yyyy", "", "#,##0.00"};
  Show("SELECT * FROM DayBook", Value::Array{1, 2, 0, 1, 1, 0});
  records_->MoveLast();
  CurrentJob().first_page = 7;
  EXPECT_EQ(Report({3, 10, 6, 10, 5, 12}, ";3;"), kFullReport);
  EXPECT_EQ(Current(), "5");  // where it stood
  EXPECT_FALSE(print_->ReBuild());
  EXPECT_EQ(print_->ColWidth(), Value(Value::Array{3, 10, 6, 10, 5, 12}));
  EXPECT_EQ(CurrentJob().first_page, 7);
  EXPECT_EQ(CurrentJob().page_count, 1);
  EXPECT_EQ(CurrentJob().page_width, 60);
  EXPECT_EQ(CurrentJob().page_length, 21);
}

TEST_F(ListReportTest, PrintsAllRecordsInTheirOrderOnEquallyLongPages) {
  constexpr int kRecords = 20'000;
  Show(
      "WITH RECURSIVE n(Id) AS (SELECT 1 UNION ALL SELECT Id + 1 FROM n LIMIT 20000) "
      "SELECT Id, Id AS Hidden, 'No ' || Id AS Name FROM n");
  records_->MoveLast();
  const std::string text = Report({9, 0, 9}, ";0;");
  EXPECT_EQ(print_->Pages(), CurrentJob().page_count);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), print_->Pages() * 21);
  EXPECT_NE(text.find("\n  200010000|\n"), std::string::npos);
  EXPECT_NE(text.find("Contd...\n\f\n"), std::string::npos);
  std::size_t place = 0;
  for (int record = 1; record <= kRecords; ++record) {
    const std::string number = std::to_string(record);
    std::string line = " ";
    line.append(number).append("|No ").append(number).append("\n");
    place = text.find(line, place);
    ASSERT_NE(place, std::string::npos) << record;
  }
}

TEST_F(ListReportTest, AnEmptyRecordsetGivesHeadingsAndTheEnd) {
  model_.ApplyFilter("[Id] = 0");
  const std::string text = Report({3, 10, 6, 10, 5, 12}, ";0;");
  EXPECT_EQ(text.find(" 0\n"), std::string::npos) << "no totals of nothing";
  EXPECT_NE(text.find("Remarks\n"), std::string::npos);
  EXPECT_NE(text.find("End Of Report.\n"), std::string::npos);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 21);
}

TEST_F(ListReportTest, HasAllRowsOfOneStateOrFails) {
  // Of a recordset that is not on show nothing was read on.
  const auto other = std::make_shared<Recordset>();
  other->FetchesInSlices(true);
  other->Open("SELECT * FROM DayBook", *CurrentList().cnn, CursorType::kKeyset);
  CurrentList().rdset = other;
  CurrentList().pg = print_;
  for (ListColumn& column : model_.Columns()) column.width = 1200;
  model_.Print();
  EXPECT_EQ(other->RecordCount(), 5);
  const std::string before = ReadFile(print_->GetKelFile());
  EXPECT_NE(before.find("2026-12-31"), std::string::npos) << before;

  for (const std::string_view change : {"close", "requery", "sort"}) {
    desktop_->on_call = [&](std::string_view call) {
      if (call.substr(0, 4) != "step" || other->State() == ObjectState::kClosed) return;
      if (change == "sort") other->Sort("[Id] DESC");
      if (change == "requery") other->Requery();
      if (change == "close") other->Close();
    };
    EXPECT_EQ(ErrorNumber([&] { model_.Print(); }), 5) << change;
    desktop_->on_call = nullptr;
    if (change == "close")
      other->Open("SELECT * FROM DayBook", *CurrentList().cnn, CursorType::kKeyset);
    EXPECT_EQ(ReadFile(print_->GetKelFile()), before) << change;
  }
}

TEST_F(ListReportTest, WhatCannotBePrintedLeavesTheReportFromBefore) {
  const std::string before = Report({3, 10, 6, 10, 5, 12});
  model_.Columns()[0].width = 0;
  for (ListColumn& column : model_.Columns()) column.visible = false;
  const auto write = [&] { WriteListReport(*records_, model_.Columns(), "Day Book", "", *print_); };
  EXPECT_EQ(ErrorNumber(write), 5);
  model_.Columns()[2].visible = true;
  print_->Lines(3);
  EXPECT_EQ(ErrorNumber(write), 5);
  std::string after = ReadFile(print_->GetKelFile());
  std::erase(after, '\r');
  EXPECT_EQ(after, before);
  EXPECT_EQ(ErrorNumber([&] { model_.Print(); }), 91);
}

}  // namespace
}  // namespace kel
