#include <gtest/gtest.h>

#include <QSortFilterProxyModel>
#include <QtWidgets>

#include "controls/member_access.h"

namespace kel {
namespace {

using testing::Call;
using testing::CallError;
using testing::Get;
using testing::GetError;
using testing::Put;
using testing::PutError;

constexpr int kButtonFace = -2147483633;
constexpr int kWindowBackground = -2147483643;

TEST(GridMembers, RowsBeginWithTheHeaderWhereThereIsOne) {
  QTableWidget table(2, 2);
  QTableView view;
  QStandardItemModel model(2, 2);
  QSortFilterProxyModel proxy;
  proxy.setSourceModel(&model);
  view.setModel(&proxy);
  for (QTableView* grid : {static_cast<QTableView*>(&table), &view}) {
    EXPECT_EQ(WidgetObject(*grid)->TypeName(), "MSFlexGrid");
    EXPECT_EQ(Get(*grid, "Row"), Value(-1));
    EXPECT_EQ(PutError(*grid, "Text", ""), 9) << "no cell is current";
    Put(*grid, "Row", -1);
    Put(*grid, "TextMatrix", "Balance", {0, 1});
    Put(*grid, "TextMatrix", 1250, {1, 1});
    EXPECT_EQ(grid->model()->headerData(1, Qt::Horizontal).toString(), "Balance");
    EXPECT_EQ(grid->model()->index(0, 1).data().toString(), "1250");
    EXPECT_EQ(Get(*grid, "Rows"), Value(3));
    EXPECT_EQ(Get(*grid, "FixedRows"), Value(1));
    Call(*grid, "AddItem", {"Cash\t12", 1});
    EXPECT_EQ(Get(*grid, "TextMatrix", {2, 1}), Value("1250"));
    EXPECT_EQ(Get(*grid, "TextMatrix", {1, 0}), Value("Cash"));
    Call(*grid, "RemoveItem", {1});
    Put(*grid, "Rows", 5);
    EXPECT_EQ(grid->model()->rowCount(), 4);
    EXPECT_EQ(GetError(*grid, "TextMatrix", {5, 0}), 9);
    EXPECT_EQ(GetError(*grid, "TextMatrix", {1, 2}), 9);
    EXPECT_EQ(PutError(*grid, "Row", 5), 9);
    EXPECT_EQ(PutError(*grid, "Rows", 0), 380);
    EXPECT_EQ(CallError(*grid, "RemoveItem", {0}), 9);
    EXPECT_EQ(CallError(*grid, "AddItem", {"a\tb\tc"}), 9) << "the third cell would be lost";

    grid->horizontalHeader()->hide();
    EXPECT_EQ(Get(*grid, "Rows"), Value(4));
    EXPECT_EQ(Get(*grid, "FixedRows"), Value(0));
    EXPECT_EQ(Get(*grid, "TextMatrix", {0, 1}), Value("1250"));
    Call(*grid, "Clear");
    EXPECT_EQ(Get(*grid, "TextMatrix", {0, 1}), Value(""));
  }
}

TEST(GridMembers, FormatsAreThoseOfTheCurrentCellInTheHeaderToo) {
  QTableWidget grid(2, 3);
  for (const auto& [row, back] : {std::pair(0, kButtonFace), std::pair(2, kWindowBackground)}) {
    Put(grid, "Row", row);
    Put(grid, "Col", 1);
    EXPECT_EQ(Get(grid, "Row"), Value(row));
    EXPECT_EQ(Get(grid, "CellBackColor"), Value(back));
    for (const char* member : {"CellFontBold", "CellFontItalic", "CellFontUnderline"}) {
      EXPECT_EQ(Get(grid, member), Value(false)) << member;
      Put(grid, member, true);
      EXPECT_EQ(Get(grid, member), Value(true)) << member;
    }
    Put(grid, "CellBackColor", kButtonFace);
    EXPECT_EQ(Get(grid, "CellBackColor"), Value(kButtonFace)) << "reports draw rules around it";
    Put(grid, "CellForeColor", 0x0000FF);
    EXPECT_EQ(Get(grid, "CellForeColor"), Value(0x0000FF));
    Put(grid, "Text", "Total");
    EXPECT_EQ(Get(grid, "TextMatrix", {row, 1}), Value("Total"));
  }
  grid.item(1, 1)->setBackground(Qt::green);
  EXPECT_EQ(Get(grid, "CellBackColor"), Value(0x00FF00)) << "the program has painted over it";
  Put(grid, "Col", 0);
  EXPECT_EQ(Get(grid, "CellFontBold"), Value(false));

  Put(grid, "ColAlignment", 7, {2});
  Call(grid, "AddItem", {"a\tb\t9"});
  Put(grid, "Row", 3);
  EXPECT_EQ(Get(grid, "ColAlignment", {2}), Value(7)) << "a new row takes it over";
  EXPECT_EQ(Get(grid, "ColAlignment", {1}), Value(1));
  Put(grid, "Row", 0);
  EXPECT_EQ(Get(grid, "ColAlignment", {2}), Value(7)) << "a heading stands as its column";
  grid.item(2, 1)->setFlags(Qt::NoItemFlags);
  Put(grid, "Row", 3);
  Put(grid, "Col", 1);
  EXPECT_EQ(Get(grid, "Text"), Value("b")) << "disabled cells are cells too";
  Put(grid, "RowData", 77, {3});
  EXPECT_EQ(Get(grid, "RowData", {3}), Value(77));
}

TEST(GridMembers, SelectionWidthsAndHighlightAreTheViewsOwn) {
  QTableWidget grid(4, 4);
  Put(grid, "Row", 3);
  Put(grid, "Col", 2);
  EXPECT_EQ(Get(grid, "RowSel"), Value(3));
  Put(grid, "RowSel", 1);
  Put(grid, "ColSel", 3);
  EXPECT_EQ(grid.selectedItems().size() + grid.selectionModel()->selectedIndexes().size(), 6);
  EXPECT_EQ(Get(grid, "RowSel"), Value(1));
  EXPECT_EQ(Get(grid, "ColSel"), Value(3));
  Put(grid, "ColWidth", 1500, {1});
  EXPECT_EQ(grid.columnWidth(1), 100);
  Put(grid, "ColWidth", 0, {1});
  EXPECT_TRUE(grid.isColumnHidden(1));
  const QColor highlight = grid.palette().color(QPalette::Highlight);
  Put(grid, "HighLight", 0);
  EXPECT_NE(grid.palette().color(QPalette::Highlight), highlight);
  Put(grid, "HighLight", 1);
  EXPECT_EQ(grid.palette().color(QPalette::Highlight), highlight);
}

// A million rows, of which it counts those that it was asked for.
class CountedModel : public QAbstractTableModel {
 public:
  int rowCount(const QModelIndex& /*parent*/) const override { return 1000000; }
  int columnCount(const QModelIndex& /*parent*/) const override { return 2; }
  QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole) return {};
    ++asked;
    return index.row() * 100000000.0;
  }
  mutable int asked = 0;
};

// Hands its rows out one by one.
struct SlowModel : QStandardItemModel {
  bool canFetchMore(const QModelIndex& /*parent*/) const override { return rowCount() < 5; }
  void fetchMore(const QModelIndex& /*parent*/) override { appendRow(new QStandardItem("x")); }
};

TEST(GridMembers, RowsAreAllThatTheModelWillFetch) {
  SlowModel model;
  QTableView grid;
  grid.setModel(&model);
  EXPECT_EQ(Get(grid, "Rows"), Value(6));
}

TEST(GridMembers, OneCellOfAMillionRowsIsOneQuestionToTheModel) {
  CountedModel model;
  QTableView grid;
  grid.setModel(&model);
  EXPECT_EQ(Get(grid, "TextMatrix", {999991, 1}), Value("99999000000000"));
  EXPECT_EQ(model.asked, 1);
  EXPECT_EQ(PutError(grid, "TextMatrix", "x", {1, 1}), 383);
  EXPECT_EQ(PutError(grid, "Rows", 2), error_number::kInvalidProcedureCall);
}

}  // namespace
}  // namespace kel
