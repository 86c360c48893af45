#include "platform/qt/model_grid.h"

#include <gtest/gtest.h>

#include <QAbstractTableModel>
#include <QFont>
#include <QStandardItemModel>
#include <string>

#include "common/error.h"
#include "common/text_cells.h"

namespace kel {
namespace {

template <typename Action>
int ErrorOf(Action action) {
  try {
    action();
  } catch (const Error& failure) {
    return failure.Number();
  }
  return 0;
}

class ModelGridTest : public ::testing::Test {
 protected:
  ModelGridTest() {
    model_.setHorizontalHeaderLabels({"Code", "Account", "Balance"});
    AddRow("1001", QStringLiteral(u"\u0930\u094b\u0915\u0921\u093c"), 1250000.0);
    AddRow("1002", "Bank", -0.1);
  }

  void AddRow(const QString& code, const QString& account, double balance) {
    auto* amount = new QStandardItem;
    amount->setData(balance, Qt::DisplayRole);
    amount->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    model_.appendRow({new QStandardItem(code), new QStandardItem(account), amount});
  }

  QStandardItemModel model_;
};

TEST_F(ModelGridTest, RowZeroIsTheHeaderAndTheRowsFollow) {
  ModelGrid grid(model_, "Trial Balance");
  EXPECT_EQ(grid.Caption(), "Trial Balance");
  ASSERT_TRUE(grid.SetRow(0));
  EXPECT_EQ(grid.TextMatrix(0, 2), "Balance");
  EXPECT_EQ(grid.CellBackColor(), kButtonFace);
  ASSERT_TRUE(grid.SetRow(1));
  EXPECT_EQ(grid.TextMatrix(1, 0), "1001");
  EXPECT_EQ(grid.TextMatrix(1, 1), "\u0930\u094b\u0915\u0921\u093c");
  EXPECT_NE(grid.CellBackColor(), kButtonFace);
  ASSERT_TRUE(grid.SetRow(2));
  EXPECT_EQ(grid.TextMatrix(2, 1), "Bank");
}

TEST_F(ModelGridTest, NumbersAreWrittenOutInTheirShortestForm) {
  ModelGrid grid(model_, "");
  grid.SetRow(1);
  EXPECT_EQ(grid.TextMatrix(1, 2), "1250000");
  grid.SetRow(2);
  EXPECT_EQ(grid.TextMatrix(2, 2), "-0.1");
}

TEST_F(ModelGridTest, TextsOfARowStayGoodTogether) {
  ModelGrid grid(model_, "");
  grid.SetRow(2);
  const std::string_view code = grid.TextMatrix(2, 0);
  const std::string_view account = grid.TextMatrix(2, 1);
  grid.TextMatrix(2, 2);
  EXPECT_EQ(code, "1002");
  EXPECT_EQ(account, "Bank");
}

TEST_F(ModelGridTest, FontsOfCellsAndHeadingsAreTheirOwn) {
  QFont bold;
  bold.setBold(true);
  QFont underlined;
  underlined.setUnderline(true);
  model_.item(0, 1)->setFont(bold);
  model_.setHeaderData(1, Qt::Horizontal, underlined, Qt::FontRole);
  ModelGrid grid(model_, "");
  const auto font_at = [&grid](std::int32_t row, std::int32_t col) {
    grid.SetRow(row);
    grid.SetCol(col);
    const CellFont font = grid.Font();
    return std::pair(font.bold, font.underline);
  };
  EXPECT_EQ(font_at(0, 1), std::pair(false, true));
  EXPECT_EQ(font_at(1, 1), std::pair(true, false));
  EXPECT_EQ(font_at(1, 0), std::pair(false, false));
  EXPECT_EQ(font_at(2, 1), std::pair(false, false));
}

TEST_F(ModelGridTest, ColumnsStandLeftUnlessTheirCellsStandRight) {
  ModelGrid grid(model_, "");
  grid.SetRow(1);
  EXPECT_EQ(grid.ColAlignment(0), kAlignLeft);
  EXPECT_EQ(grid.ColAlignment(2), kAlignRight);
  grid.SetRow(0);
  EXPECT_EQ(grid.ColAlignment(0), kAlignLeft);
  EXPECT_EQ(grid.ColAlignment(2), kAlignRight);
  model_.setHeaderData(2, Qt::Horizontal, int(Qt::AlignLeft), Qt::TextAlignmentRole);
  EXPECT_EQ(grid.ColAlignment(2), kAlignLeft);
}

TEST_F(ModelGridTest, IndexesOutOfRangeAreErrorNine) {
  ModelGrid grid(model_, "");
  const int expected = error_number::kSubscriptOutOfRange;
  EXPECT_EQ(ErrorOf([&] { grid.SetRow(3); }), expected);
  EXPECT_EQ(ErrorOf([&] { grid.SetRow(-1); }), expected);
  EXPECT_EQ(ErrorOf([&] { grid.SetCol(3); }), expected);
  EXPECT_EQ(ErrorOf([&] { grid.SetCol(-1); }), expected);
  EXPECT_EQ(ErrorOf([&] { grid.TextMatrix(3, 0); }), expected);
  EXPECT_EQ(ErrorOf([&] { grid.TextMatrix(-1, 0); }), expected);
  EXPECT_EQ(ErrorOf([&] { grid.TextMatrix(1, 3); }), expected);
  EXPECT_EQ(ErrorOf([&] { grid.ColAlignment(3); }), expected);
}

TEST_F(ModelGridTest, AModelWithoutRowsHasItsHeadings) {
  QStandardItemModel empty;
  empty.setHorizontalHeaderLabels({"Code"});
  ModelGrid grid(empty, "");
  ASSERT_TRUE(grid.SetRow(0));
  EXPECT_EQ(grid.TextMatrix(0, 0), "Code");
  EXPECT_EQ(grid.ColAlignment(0), kAlignLeft);
  EXPECT_EQ(ErrorOf([&] { grid.SetRow(1); }), error_number::kSubscriptOutOfRange);
}

// Gives its rows out in slices, as Qt's SQL models do.
class SlicedModel : public QAbstractTableModel {
 public:
  static constexpr int kRows = 600;
  static constexpr int kSlice = 256;

  int rowCount(const QModelIndex& /*parent*/) const override { return fetched_; }
  int columnCount(const QModelIndex& /*parent*/) const override { return 1; }
  QVariant data(const QModelIndex& index, int role) const override {
    return role == Qt::DisplayRole ? QVariant(index.row()) : QVariant();
  }
  bool canFetchMore(const QModelIndex& /*parent*/) const override { return fetched_ < kRows; }
  void fetchMore(const QModelIndex& /*parent*/) override {
    const int more = std::min(kSlice, kRows - fetched_);
    beginInsertRows({}, fetched_, fetched_ + more - 1);
    fetched_ += more;
    endInsertRows();
  }

 private:
  int fetched_ = 0;
};

TEST(ModelGridSlicesTest, RowsAreFetchedAsTheReportReachesThem) {
  SlicedModel model;
  ModelGrid grid(model, "");
  ASSERT_TRUE(grid.SetRow(1));
  EXPECT_EQ(model.rowCount({}), SlicedModel::kSlice);
  std::int32_t row = 1;
  while (grid.SetRow(row)) {
    ASSERT_EQ(grid.TextMatrix(row, 0), std::to_string(row - 1));
    ++row;
  }
  EXPECT_EQ(row, SlicedModel::kRows + 1);
}

}  // namespace
}  // namespace kel
