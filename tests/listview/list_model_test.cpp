#include "listview/list_model.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "list_fixture.h"
#include "listview/condition_text.h"
#include "listview/list_windows.h"

namespace kel {
namespace {

using testing::ErrorNumber;
using testing::ListTest;
using testing::WriteDatabase;
using Texts = std::vector<std::string>;

TEST(ListSettings, ColumnListsNameWholeNumbersBetweenSemicolons) {
  EXPECT_TRUE(NamesColumn(";1;", 1) && NamesColumn(";1;;4;", 4) && NamesColumn(";0;3;", 3));
  EXPECT_FALSE(NamesColumn(";1;", 11) || NamesColumn("1;2", 1) || NamesColumn("", 0));
  std::string list = ";1;";
  AddColumn(list, 4);
  AddColumn(list, 4);
  EXPECT_EQ(list, ";1;;4;");
  RemoveColumn(list, 4);
  EXPECT_EQ(list, ";1;");
  list = ";4;;4;4;";
  RemoveColumn(list, 4);
  EXPECT_EQ(list, "4;");
}

TEST(ConditionText, IsWrittenByTheKindOfTheField) {
  constexpr auto kFixedText = static_cast<FieldType>(130);
  const auto text = [](FieldType type, const char* operation, const char* value) {
    return ConditionText("F", type, operation, value);
  };
  EXPECT_EQ(text(FieldType::kDouble, ">=", "100"), "[F] >= 100");
  EXPECT_EQ(text(FieldType::kText, "Like", "A*"), "[F] Like 'A*'");
  EXPECT_EQ(text(static_cast<FieldType>(200), "<>", "O'Neil"), "[F] <> 'O'Neil'");
  EXPECT_EQ(text(FieldType::kMemo, "=", "x"), "[F] = x");
  EXPECT_EQ(text(kFixedText, "=", "x"), "[F] = x");
  EXPECT_EQ(text(FieldType::kDate, "=", "5/3/2009"), "[F] = #05/March/2009#");
  EXPECT_EQ(text(FieldType::kDate, "=", "soon"), "[F] = #soon#");
  EXPECT_EQ(text(FieldType::kText, "Is Null", "ignored"), "[F] = Null");
  EXPECT_EQ(text(FieldType::kText, "Expression", "[Q] > 5 AND [R] < 2"), "[Q] > 5 AND [R] < 2");
}

TEST_F(ListTest, ColumnsArePreparedBySettingsAndARefreshMakesThemGeneral) {
  CurrentList().active_cols = ";1;";
  CurrentList().col_formats = Value::Array{"", "dd/mmmm/yyyy", Value::Missing(), "#,##0.00"};
  Show("SELECT * FROM DayBook", Value::Array{2, 0, Value::Missing(), 0});
  model_.Load(std::chrono::seconds(5));
  const std::vector<ListColumn>& columns = model_.Columns();
  EXPECT_EQ(columns[0].caption, "Id");
  EXPECT_EQ(columns[1].caption, "Day*");
  EXPECT_TRUE(columns[0].locked && !columns[1].locked && columns[5].locked);
  Texts sides;
  for (const ListColumn& column : columns) sides.push_back(std::to_string(column.Side()));
  EXPECT_EQ(sides, (Texts{"2", "0", "0", "0", "1", "0"}));
  EXPECT_EQ(Seen(1), "05/March/2026|01/April/2026||05/March/2026|31/December/2026");
  EXPECT_EQ(Seen(3), "0.10|0.20|-1,250.50|1,000.00|");
  EXPECT_EQ(Seen(4), "0.1||2.5|1.005|7");

  model_.ApplyFilter("[Id] > 2");
  model_.SortDescending(0, 0, 0);
  EXPECT_EQ(model_.Caption(), "List View - ([Id] > 2)");
  EXPECT_EQ(Seen(0), "5|4|3");
  model_.Refresh();
  EXPECT_EQ(model_.Caption(), "List View");
  model_.Load(std::chrono::seconds(5));
  EXPECT_EQ(Seen(0), "1|2|3|4|5");
  EXPECT_EQ(columns[0].Side(), gridRight);
  EXPECT_EQ(columns[1].caption, "Day*");
  EXPECT_EQ(model_.TotalRecordsText(), "Total number of Records : 5");
}

TEST_F(ListTest, SortsByTheSelectedColumnsAndHeadingsSortInTurn) {
  model_.SortAscending(1, 3, 0);
  EXPECT_EQ(records_->Sort(), "[Day] ASC,[Name] ASC,[Amount] ASC");
  model_.SortDescending(-1, -1, 2);
  EXPECT_EQ(records_->Sort(), "[Name] DESC");
  for (const char* direction : {"[Id] ASC", "[Id] DESC", "[Id] ASC"}) {
    model_.HeadingClick(0, 0, 3);
    EXPECT_EQ(records_->Sort(), direction);
  }
  EXPECT_EQ(ErrorNumber([&] { model_.HeadingClick(-1, -1, -1); }), 3265);
  EXPECT_EQ(records_->Sort(), "[Id] ASC");
  model_.HeadingClick(1, 1, 0);  // the refused click was one, too
  EXPECT_EQ(records_->Sort(), "[Day] ASC");
}

TEST_F(ListTest, FindsInFourDirectionsAndLeavesTheBeginningButNotTheEnd) {
  const auto find = [&](const char* condition, FindOption option) {
    const bool found = model_.Find(condition, option) == ListModel::Found::kYes;
    if (!found) model_.LeaveEnd();
    return (found ? "" : "no ") + Current();
  };
  EXPECT_EQ(find("[Name] = 'Shah'", FindOption::kFirst), "1");
  EXPECT_EQ(find("[Name] = 'Shah'", FindOption::kNext), "3");
  EXPECT_EQ(find("[Name] = 'Shah'", FindOption::kNext), "no 1");
  EXPECT_EQ(find("[Amount] > 0", FindOption::kLast), "4");
  EXPECT_EQ(find("[Amount] > 0", FindOption::kPrevious), "2");
  EXPECT_EQ(find("[Name] = 'X'", FindOption::kPrevious), "no BOF");
  EXPECT_EQ(find("[Name] = 'X'", FindOption::kLast), "no BOF");
  EXPECT_EQ(ErrorNumber([&] { model_.Find("[Id] = 1", FindOption::kNext); }), 3021);
  model_.MoveLast();
  EXPECT_EQ(ErrorNumber([&] { model_.Find("[Name] = 'O'Neil'", FindOption::kFirst); }), 3001);
  EXPECT_EQ(Current(), "5");
}

TEST_F(ListTest, PossibleValuesComeSortedOnceWhateverTheirCase) {
  Texts values;
  const auto values_of = [&](int field) {
    values.clear();
    std::int64_t done = 0;
    EXPECT_TRUE(model_.PossibleValues(
        field, [&](std::string value) { values.push_back(std::move(value)); },
        [&](std::int64_t rows, std::int64_t of) { done = rows == of ? rows : done; }));
    EXPECT_EQ(done, 5);
    return values;
  };
  EXPECT_EQ(values_of(2), (Texts{"Bank", "shah"}));
  EXPECT_EQ(records_->Sort(), "[Name]");
  EXPECT_EQ(values_of(1), (Texts{"05/03/2026", "01/04/2026", "31/12/2026"}));
  EXPECT_EQ(values_of(3), (Texts{"-1250.5", "0.1", "0.2", "1000"}));
  EXPECT_EQ(records_->AbsolutePosition(), 1);
}

TEST_F(ListTest, WhatIsTypedReachesTheDatabaseOrTheOldValueStays) {
  const auto stored = [&](const std::string& field) {
    Recordset check;
    check.Open("SELECT " + field + " FROM DayBook WHERE Id = 1", *CurrentList().cnn);
    return std::string(check.FieldText(0));
  };
  EXPECT_EQ(model_.EntryText(1), "05/03/2026");
  model_.Enter(1, "6/3/26");
  model_.Enter(2, "O'Neil");
  model_.Enter(3, "1,250.75");
  EXPECT_EQ(stored("Day || Name || Amount"), "2026-03-06O'Neil1250.75");
  model_.Enter(3, "");
  EXPECT_EQ(stored("Amount IS NULL"), "1");

  EXPECT_EQ(ErrorNumber([&] { model_.Enter(1, "soon"); }), 13);
  EXPECT_NE(ErrorNumber([&] { model_.Enter(3, "2000000"); }), 0);  // refused by the table
  WriteDatabase(file_, "UPDATE DayBook SET Name = 'other' WHERE Id = 1");
  EXPECT_NE(ErrorNumber([&] { model_.Enter(2, "mine"); }), 0);
  EXPECT_EQ(stored("Name"), "other");
  EXPECT_EQ(model_.EntryText(1) + model_.EntryText(2) + model_.EntryText(3), "06/03/2026O'Neil");
  EXPECT_EQ(records_->EditMode(), EditMode::kNone);
}

TEST_F(ListTest, StopWhileRowsAreStillReadLeavesEverythingAsItIs) {
  const std::string million =
      "WITH RECURSIVE n(Id) AS (SELECT 1 UNION ALL SELECT Id + 1 FROM n LIMIT 1000000) "
      "SELECT Id, Id % 7 AS Rest FROM n";
  Show(million);
  desktop_->answer = false;  // Stop is pressed at once
  model_.SortAscending(1, 1, 1);
  model_.MoveLast();
  EXPECT_FALSE(model_.ApplyFilter("[Rest] = 1"));
  EXPECT_EQ(model_.Find("[Rest] = 1", FindOption::kLast), ListModel::Found::kStopped);
  EXPECT_EQ(ErrorNumber([&] { model_.Enter(1, "5"); }), 5);
  EXPECT_EQ(records_->Sort() + records_->Filter().ToText() + Current(), "1");
  EXPECT_TRUE(model_.IsLoading());
  EXPECT_EQ(model_.TotalRecordsText().substr(0, 26), "Total number of Records : ");
  EXPECT_NE(model_.TotalRecordsText().find(" so far"), std::string::npos);
  desktop_->answer = true;
  model_.MoveLast();
  EXPECT_EQ(Current(), "1000000");
  EXPECT_FALSE(model_.IsLoading());
}

TEST_F(ListTest, AFailedRefreshKeepsFilterSortAndRows) {
  model_.ApplyFilter("[Id] < 3");
  model_.SortDescending(0, 0, 0);
  CurrentList().cnn->Execute("ALTER TABLE DayBook RENAME TO Gone");
  EXPECT_NE(ErrorNumber([&] { model_.Refresh(); }), 0);
  EXPECT_EQ(Seen(0), "2|1");
  EXPECT_EQ(model_.Caption(), "List View - ([Id] < 3)");
  CurrentList().rdset.reset();
  EXPECT_EQ(ErrorNumber([&] { model_.MoveFirst(); }), 91);
  EXPECT_EQ(Seen(0), "2|1");
  records_->Close();
  EXPECT_EQ(model_.Rows(), 0);
}

// Keeps what it was asked to show.
class TestListWindows : public ListWindows {
 public:
  void ShowListView(const Value& column_alignment, ShowStyle style, Object* parent) override {
    EXPECT_EQ(parent, nullptr);
    shown.emplace_back(CurrentList().caption, style);
    alignments = column_alignment;
  }
  std::vector<std::pair<std::string, ShowStyle>> shown;
  Value alignments;
};

TEST_F(ListTest, ObjectsShareTheirPropertiesButTheAlignment) {
  const auto windows = std::make_shared<TestListWindows>();
  const ListHost no_screen = CurrentListHost();
  CurrentListHost().windows = windows;
  {
    CListView first;
    CListView second;
    first.ColumnAlignment = Value::Array{1};
    second.Caption("Ledger");
    second.ColSums(5);
    first.ShowListView(1);
    EXPECT_EQ(windows->shown, (decltype(windows->shown){{"Ledger", ShowStyle::kModal}}));
    EXPECT_EQ(windows->alignments, Value(Value::Array{1}));
    EXPECT_TRUE(second.ColumnAlignment.IsEmpty());
    EXPECT_EQ(first.ColSums(), Value("5"));
    EXPECT_EQ(first.RDSet(), records_);
    EXPECT_EQ(first.SelectedRow(), "");
    std::unique_ptr<CListView> elsewhere;
    std::thread([&] { elsewhere = std::make_unique<CListView>(); }).join();
    elsewhere.reset();  // after its thread, as a static object
    EXPECT_EQ(first.RDSet(), records_);
    CurrentListHost() = no_screen;
    first.ShowListView();
    ASSERT_TRUE(first.LastError());
    EXPECT_EQ(first.LastError()->Number(), 5);
  }
  EXPECT_EQ(CurrentList().rdset, nullptr);
  EXPECT_EQ(CurrentList().cnn, nullptr);
  EXPECT_EQ(CurrentList().caption, "Ledger");
}

TEST_F(ListTest, ShowErrorSetsThePointerBackAndClosesByItself) {
  ShowError(Error(5, "no"), "Day Book");
  ASSERT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(desktop_->messages[0].title, "Day Book");
  EXPECT_EQ(desktop_->messages[0].unload_time, std::chrono::milliseconds(4000));
  EXPECT_EQ(desktop_->calls, (Texts{"pointer", "message"}));
}

}  // namespace
}  // namespace kel
