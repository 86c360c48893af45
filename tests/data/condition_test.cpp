#include "data/condition.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/errors.h"

namespace kel {
namespace {

using testing::ErrorOf;

const std::vector<ColumnInfo> kColumns = {
    {"Id", FieldType::kInteger},  {"Acc Name", FieldType::kText}, {"Amount", FieldType::kNumeric},
    {"Dt", FieldType::kDate},     {"Paid", FieldType::kBoolean},  {"Remarks", FieldType::kMemo},
    {"Rate", FieldType::kDouble},
};

using Row = std::vector<CellView>;

CellView Text(std::string_view text) { return CellView::Text(text); }
CellView Integer(std::int64_t integer) { return CellView::Integer(integer); }
CellView Double(double number) { return CellView::Double(number); }

const CellView kNull;

// Every field also holds cells of a kind that is not its own.
const std::vector<Row> kRows = {
    {Integer(0), Text("Sundry Debtors"), Text("12345678901234567.89"), Text("2026-03-31"),
     Integer(1), kNull, Double(0.1)},
    {Integer(1), Text("SUNDRY creditors"), Integer(100), Text("2026-03-31 10:00:00"), Integer(0),
     Text("it's 50% off"), Double(12.5)},
    {Integer(2), Text("ΣΊΣΥΦΟΣ 12"), Text("-0.50"), Double(46113), kNull, Text("a_b*c"),
     Double(-1e300)},
    {Integer(3), Text(""), kNull, Text("soon"), Text("TRUE"), Text("x"), kNull},
    {Integer(4), Integer(42), Double(100), kNull, Text("perhaps"), Text("\xff\xe0"), Integer(7)},
    {Integer(INT64_MAX), Text("\u212Aelvin"), Text("1e2"), Text("1899-12-29 06:00"), Double(0),
     Text("\u212A"), Text("n/a")},
};

RowStore StoreOf(const std::vector<Row>& rows) {
  RowStore store(kColumns.size());
  for (const Row& row : rows) store.Append(row);
  return store;
}

// The places of the matching rows, as one text; both ways of asking agree on them.
std::string Matching(const std::string& text, const RowStore& store) {
  const Condition condition(text, kColumns);
  const std::vector<std::uint8_t> all = condition.MatchAll(store);
  EXPECT_EQ(all.size(), store.Rows());
  std::string matching;
  for (RowId row = 0; row < store.Rows(); ++row) {
    EXPECT_EQ(condition.Matches(store, row), all[row] == 1) << text << " of row " << row;
    if (all[row] == 1) matching += std::to_string(row);
  }
  return matching;
}

TEST(ConditionTest, RowsMatchByTheirFieldsTypes) {
  const RowStore store = StoreOf(kRows);
  struct Case {
    const char* text;
    const char* matching;
  };
  for (const Case& c : {
           Case{"[Id] = 9223372036854775807", "5"},
           Case{"[Id] > 9223372036854775806.5 or id<=-.5", "5"},
           Case{"[ID] < 9223372036854775808 AND Id >= 3", "345"},
           Case{"Id > 99999999999999999999", ""},
           Case{"Id <> -99999999999999999999", "012345"},
           Case{"Id >= 0.5 AND Id <= 2.5 AND Id <> 1.5", "12"},
           Case{"Id = '2'", "2"},
           Case{"Amount = 12345678901234567.89", "0"},
           Case{"Amount < 12345678901234567.890001 AND Amount > 12345678901234567.88", "0"},
           Case{"Amount = 100", "145"},
           Case{"Amount < -.4", "2"},
           Case{"Amount <> 1E2", "02"},
           Case{"Rate = 0.1 OR Rate <= -1e300 OR Rate = 7", "024"},
           Case{"Rate > 1e400", "5"},  // a text is above all numbers
           Case{"Dt = #31/March/2026#", "0"},
           Case{"[Dt] >= #3/31/2026# AND Dt < #04/01/2026#", "01"},
           Case{"Dt = '2026-04-01' OR Dt = 46112", "02"},
           Case{"Dt < #1899-12-30# AND Dt > #1899-12-29#", "5"},
           Case{"Dt > #12/31/9999#", "3"},
           Case{"Paid = True", "03"},
           Case{"Paid = 0 OR Paid = 'true'", "0135"},
           Case{"Paid <> -1", "145"},
           Case{"Amount = True", "01245"},
           Case{"[Acc Name] = 'sundry debtors'", "0"},
           Case{"[acc name] = 'σίσυφοσ 12'", "2"},
           Case{"[Acc Name] <> 'x'", "012345"},
           Case{"[Acc Name] = 'KELVIN' AND Remarks = 'k'", "5"},
           Case{"[Acc Name] = '' OR [Acc Name] = 42", "34"},
           Case{"[Acc Name] >= 'sundry d' AND [Acc Name] < 't'", "0"},
           Case{"Remarks = 'IT''S 50% OFF'", "1"},
           Case{"Remarks = #3/31/2026# OR Remarks = Null", "0"},
           Case{"Remarks <> Null AND NOT Remarks Is Not Null", ""},
           Case{"Dt Is Null OR Amount Is Null", "34"},
           Case{"NOT (Id < 2 OR NOT NOT Id > 3)", "23"},
           Case{"Id = 0 OR Id = 1 AND Id = 2", "0"},
           Case{"(Id = 0 OR Id = 1) AND (Rate = 12.5)", "1"},
           Case{"[Acc Name] Like 'sundry*'", "01"},
           Case{"[Acc Name] Like '%S'", "01"},
           Case{"[Acc Name] Like '*y*de*o*s'", "0"},
           Case{"[Acc Name] Like 'sundry'", ""},
           Case{"[Acc Name] Like 'ς?συφ_Σ*'", "2"},
           Case{"[Acc Name] Like '*?12'", "2"},
           Case{"[Acc Name] Like 'k????_' OR [Acc Name] Like '4_'", "45"},
           Case{"[Acc Name] Like '*'", "012345"},
           Case{"[Acc Name] Like ''", "3"},
           Case{"[Acc Name] Like 's*y s*'", ""},
           Case{"Remarks Like '_?' OR Remarks Like '*a_b*'", "24"},
           Case{"Amount Like 1*", "0145"},
           Case{"Paid Like 'TR*' OR Dt Like '*10:00*'", "013"},
       }) {
    EXPECT_EQ(Matching(c.text, store), c.matching) << c.text;
  }
}

TEST(ConditionTest, WhatIsNoConditionIsRefusedNamingThePlace) {
  for (const char* text : {"",
                           "Id",
                           "Id =",
                           "Id = 1 2",
                           "Id = 1 AND",
                           "Id = x",
                           "Id == 1",
                           "1 = Id",
                           "Id = (1)",
                           "(Id = 1",
                           "Id = 1)",
                           "[Id = 1",
                           "Id = 'x'",
                           "Id = 1x",
                           "Id = --1",
                           "Id > Null",
                           "Dt = #31/31/2026#",
                           "Dt = 'soon'",
                           "Dt = #1/1/2026",
                           "Paid > True",
                           "Paid = 'x'",
                           "Remarks = 'it's'",
                           "Remarks = x",
                           "Remarks Like abc",
                           "Remarks Is x",
                           "Remarks Like",
                           "Remarks = 'x",
                           "NOT",
                           "Id = 1 XOR Id = 2",
                           "Id = [Id]"}) {
    const Error error = ErrorOf([&] { Condition(text, kColumns); });
    EXPECT_EQ(error.Number(), 3001) << text;
    EXPECT_NE(error.Description().find(" at position "), std::string::npos) << text;
  }
  EXPECT_EQ(ErrorOf([] { Condition("Nobody = 1", kColumns); }).Number(), 3265);
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '(') + "Id = 1" + std::string(depth, ')');
  };
  EXPECT_EQ(Condition(nested(100), kColumns).Comparisons(), 1U);
  EXPECT_EQ(ErrorOf([&] { Condition(nested(1'000'000), kColumns); }).Number(), 3001);
}

TEST(ConditionTest, LongConditionsOverManyRowsAnswerAsRowByRow) {
  std::mt19937 random(7);
  std::vector<Row> rows;
  for (int i = 0; i < 5000; ++i) {
    Row row = kRows[random() % kRows.size()];
    // The first chunk holds one kind a column, the others all.
    if (i < 4096) row = kRows[0];
    row[0] = Integer(i);
    rows.push_back(row);
  }
  const RowStore store = StoreOf(rows);
  std::string text = "Id = 0";
  for (int i = 0; i < 500; ++i) text += " OR Id = " + std::to_string(random() % 5000);
  EXPECT_EQ(Condition(text, kColumns).Comparisons(), 501U);
  for (const std::string& condition :
       {text,
        std::string("Amount > 5 AND ([Acc Name] Like '*r*' OR NOT Rate < 1) AND NOT Dt Is Null"),
        std::string("NOT (Paid = True AND Remarks = 'x') OR Id < 4500 AND Amount < 0")}) {
    EXPECT_NE(Matching(condition, store), "");
  }
}

}  // namespace
}  // namespace kel
