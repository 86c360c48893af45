// Any text as a condition and as a sort order: it is read or refused with an error; a condition
// answers the same for all rows at once as row by row, and a sort loses no row.

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <string_view>
#include <vector>

#include "common/error.h"
#include "data/cell_order.h"
#include "data/condition.h"
#include "data/row_sort.h"

namespace {

using kel::CellView;
using kel::FieldType;

void Require(bool holds) {
  if (!holds) std::abort();
}

const std::vector<kel::ColumnInfo>& Columns() {
  static const std::vector<kel::ColumnInfo> columns = {
      {"Id", FieldType::kInteger}, {"Name", FieldType::kText},    {"Amt", FieldType::kNumeric},
      {"Dt", FieldType::kDate},    {"Paid", FieldType::kBoolean}, {"A B", FieldType::kMemo}};
  return columns;
}

// Every column holds every cell; a chunk of one kind, and one of all kinds.
kel::RowStore MakeRows() {
  const std::vector<CellView> cells = {CellView::Integer(0),
                                       CellView::Integer(std::numeric_limits<std::int64_t>::min()),
                                       CellView::Double(-0.5),
                                       CellView::Double(std::numeric_limits<double>::quiet_NaN()),
                                       CellView::Text("Sundry Debtors"),
                                       CellView::Text("12345678901234567.89"),
                                       CellView::Text("2026-03-31 10:00"),
                                       CellView::Text("\u0391\u03a3\u212a%'\xff\xe0"),
                                       CellView::Text(""),
                                       CellView{CellView::Kind::kBinary, 0, 0, "ab"},
                                       CellView()};
  kel::RowStore rows(Columns().size());
  for (std::size_t i = 0; i < kel::ColumnChunk::kRows; ++i) {
    rows.Append(std::vector<CellView>(Columns().size(), cells[4]));
  }
  for (std::size_t i = 0; i < 2 * cells.size(); ++i) {
    std::vector<CellView> row;
    for (std::size_t column = 0; column < Columns().size(); ++column) {
      row.push_back(cells[(i + column * i) % cells.size()]);
    }
    rows.Append(row);
  }
  return rows;
}

void CheckCondition(std::string_view text, const kel::RowStore& rows) {
  const kel::Condition condition(text, Columns());
  Require(condition.Comparisons() > 0);
  const std::vector<std::uint8_t> all = condition.MatchAll(rows);
  Require(all.size() == rows.Rows());
  for (kel::RowId row = kel::ColumnChunk::kRows - 1; row < rows.Rows(); ++row) {
    Require(condition.Matches(rows, row) == (all[row] == 1));
  }
}

void CheckSort(std::string_view text, const kel::RowStore& rows) {
  const std::vector<kel::SortField> fields = kel::ParseSort(text, Columns());
  std::vector<kel::RowId> order(rows.Rows() - kel::ColumnChunk::kRows);
  std::iota(order.begin(), order.end(), kel::RowId{kel::ColumnChunk::kRows});
  kel::SortRows(rows, Columns(), fields, order);
  const kel::SortField& first = fields[0];
  for (std::size_t i = 1; i < order.size(); ++i) {
    const int step =
        kel::CompareCells(rows.Cell(order[i - 1], first.column), rows.Cell(order[i], first.column),
                          kel::DomainOf(Columns()[first.column].type));
    Require(first.descending ? step >= 0 : step <= 0);
  }
}

template <typename Check>
void RequireAnswerOrError(const Check& check) {
  try {
    check();
  } catch (const kel::Error& error) {
    Require(error.Number() == 3001 || error.Number() == 3265);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kel::RowStore rows = MakeRows();
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  RequireAnswerOrError([&] { CheckCondition(text, rows); });
  RequireAnswerOrError([&] { CheckSort(text, rows); });
  return 0;
}
