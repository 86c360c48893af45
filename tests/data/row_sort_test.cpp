#include "data/row_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "data/cell_order.h"
#include "support/errors.h"

namespace kel {
namespace {

using testing::ErrorOf;

const std::vector<ColumnInfo> kColumns = {
    {"Code", FieldType::kText},      {"Acc, Name", FieldType::kText},
    {"Amount", FieldType::kNumeric}, {"Number", FieldType::kBigInt},
    {"Dt", FieldType::kDate},        {"Rate", FieldType::kDouble},
};

TEST(RowSortTest, SortOrdersAreReadAsWritten) {
  const auto read = [](std::string_view text) {
    std::string fields;
    for (const SortField& field : ParseSort(text, kColumns)) {
      fields += std::to_string(field.column) + (field.descending ? "- " : "+ ");
    }
    return fields;
  };
  EXPECT_EQ(read("[Code] ASC,[Acc, Name] DESC"), "0+ 1- ");
  EXPECT_EQ(read(" code , amount desc,[DT]"), "0+ 2- 4+ ");
  for (const char* text : {"", ",", "Code,", "Code Amount", "Code DESC ASC", "[Code", "'Code'"}) {
    EXPECT_EQ(ErrorOf([&] { ParseSort(text, kColumns); }).Number(), 3001) << text;
  }
  EXPECT_EQ(ErrorOf([&] { ParseSort("Name", kColumns); }).Number(), 3265);
}

// Rows in the order of a list of cells, as text; equal ones keep their order.
std::string Sorted(const std::vector<CellView>& cells, FieldType type, bool descending) {
  RowStore store(1);
  for (const CellView& cell : cells) store.Append({&cell, 1});
  const std::vector<ColumnInfo> columns = {{"Field", type}};
  const std::vector<SortField> fields = {{0, descending}};
  std::vector<RowId> rows(cells.size());
  std::iota(rows.begin(), rows.end(), 0);
  SortRows(store, columns, fields, rows);
  std::string order;
  for (const RowId row : rows) order += std::to_string(row);
  return order;
}

TEST(RowSortTest, ValuesStandInTheOrderOfTheirType) {
  const CellView null;
  const CellView binary{CellView::Kind::kBinary, 0, 0, "a"};
  const auto text = &CellView::Text;
  const auto integer = &CellView::Integer;
  const auto number = &CellView::Double;
  constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

  const std::vector<CellView> texts = {text("b"),       binary,     text("A"),  null,
                                       text("a\0"),     number(10), integer(9), text("Äpfel zum"),
                                       text("äPFEL Zu")};
  EXPECT_EQ(Sorted(texts, FieldType::kText, false), "365240871");
  EXPECT_EQ(Sorted(texts, FieldType::kText, true), "178024563");
  EXPECT_EQ(Sorted({integer(9007199254740993), number(9007199254740992.0),
                    text("9007199254740992.5"), text("x"), integer(-5), text("-5.0"), null,
                    number(-std::numeric_limits<double>::infinity())},
                   FieldType::kNumeric, false),
            "67451203");
  EXPECT_EQ(Sorted({integer(kLeast + 1), integer(kLeast), null, integer(kLeast), integer(-1)},
                   FieldType::kBigInt, false),
            "21304");
  EXPECT_EQ(Sorted({text("2026-03-31 10:00"), text("2026-03-31"), text("soon"), number(46112.3),
                    text("1899-12-29 06:00"), text("1899-12-29"), null},
                   FieldType::kDate, false),
            "6541302");
}

// A cell for each field, out of few values so that many rows are equal.
std::vector<CellView> RandomRow(std::mt19937& random, const std::vector<std::string>& names) {
  const auto number = static_cast<std::int64_t>(random() % 50);
  const std::string& name = names[random() % names.size()];
  std::vector<CellView> row = {
      CellView::Text(name.substr(0, 2)),    CellView::Text(name),
      CellView::Text(names[random() % 20]), CellView::Integer(number),
      CellView::Text("2026-03-31"),         CellView::Double(static_cast<double>(number) / 10)};
  row[0].bytes = std::string_view(name).substr(0, 2);
  if (random() % 4 == 0) row[2] = CellView::Integer((std::int64_t{1} << 53) + number);
  if (random() % 4 == 0) row[3].integer += std::int64_t{1} << 60;
  if (random() % 4 == 0) row[4] = CellView::Double(46112.0 + static_cast<double>(number));
  if (random() % 8 == 0) row[random() % row.size()] = CellView();
  return row;
}

TEST(RowSortTest, ManyRowsStandAsAPlainStableSortPutsThem) {
  std::mt19937 random(11);
  std::vector<std::string> names = {"-1.50", "1e3",  "12345678901234567.89", "12345678901234567.9",
                                    "0.1",   "0.10", "Ledger Account",       "\xff\xfe bad"};
  while (names.size() < 400) {
    const std::string number = std::to_string(random() % 300);
    names.push_back((random() % 2 == 0 ? "Ledger account number " : "LEDGER Account Numbér ") +
                    number);
  }
  RowStore store(kColumns.size());
  for (int i = 0; i < 34'000; ++i) store.Append(RandomRow(random, names));
  std::vector<RowId> given(store.Rows() - 100);
  std::iota(given.begin(), given.end(), 50);
  std::shuffle(given.begin(), given.end(), random);

  for (const char* sort :
       {"[Acc, Name] DESC, Number", "[Acc, Name]", "Code, [Acc, Name], Amount DESC", "Amount, Code",
        "Number DESC, Rate", "Dt, Rate DESC, Code", "Rate"}) {
    const std::vector<SortField> fields = ParseSort(sort, kColumns);
    std::vector<RowId> expected = given;
    std::stable_sort(expected.begin(), expected.end(), [&](RowId left, RowId right) {
      for (const SortField& field : fields) {
        const int order =
            CompareCells(store.Cell(left, field.column), store.Cell(right, field.column),
                         DomainOf(kColumns[field.column].type));
        if (order != 0) return field.descending ? order > 0 : order < 0;
      }
      return false;
    });
    std::vector<RowId> rows = given;
    SortRows(store, kColumns, fields, rows);
    EXPECT_TRUE(rows == expected) << sort;
    given.resize(6000);  // the first sort had so many that several threads shared them
  }
}

}  // namespace
}  // namespace kel
