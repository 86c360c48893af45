#include "platform/qt/model_grid.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QStandardItemModel>
#include <string>
#include <vector>

#include "common/text_cells.h"
#include "support/errors.h"

namespace kel {
namespace {

using Cells = std::vector<std::string>;

// What a report takes from a row: each text, then b(old), u(nderlined), r(ight), f(ixed).
Cells Row(ModelGrid& grid, std::int32_t row) {
  EXPECT_TRUE(grid.SetRow(row));
  std::vector<std::string_view> texts;
  texts.reserve(3);
  for (std::int32_t col = 0; col < 3; ++col) texts.push_back(grid.TextMatrix(row, col));
  Cells cells(texts.begin(), texts.end());
  for (std::int32_t col = 0; col < 3; ++col) {
    std::string& cell = cells.at(static_cast<std::size_t>(col));
    grid.SetCol(col);
    if (grid.Font().bold) cell += " b";
    if (grid.Font().underline) cell += " u";
    if (grid.ColAlignment(col) == kAlignRight) cell += " r";
    if (grid.CellBackColor() == system_color::kButtonFace) cell += " f";
  }
  return cells;
}

TEST(ModelGridTest, RowZeroIsTheHeaderAndTheRowsFollowAsAViewShowsThem) {
  QFont underlined;
  underlined.setUnderline(true);
  QStandardItemModel model(2, 3);
  model.setHorizontalHeaderLabels({"Code", "Account", "Balance"});
  model.setHeaderData(0, Qt::Horizontal, int(Qt::AlignRight), Qt::TextAlignmentRole);
  model.setHeaderData(1, Qt::Horizontal, underlined, Qt::FontRole);
  model.setData(model.index(0, 0), QStringLiteral(u"\u0930\u094b"));
  model.setData(model.index(0, 1), QFont("Courier", 10, QFont::Bold), Qt::FontRole);
  model.setData(model.index(0, 2), 100000000.0);
  model.setData(model.index(1, 2), -0.1);
  model.item(0, 2)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);

  ModelGrid grid(model, "");
  EXPECT_EQ(Row(grid, 0), (Cells{"Code r f", "Account u f", "Balance r f"}));
  EXPECT_EQ(Row(grid, 1), (Cells{"\u0930\u094b", " b", "100000000 r"}));
  EXPECT_EQ(Row(grid, 2), (Cells{"", "", "-0.1"}));

  for (const int outside : {-1, 3}) {
    EXPECT_EQ(testing::ErrorOf([&] { grid.SetRow(outside); }).Number(), 9);
    EXPECT_EQ(testing::ErrorOf([&] { grid.SetCol(outside); }).Number(), 9);
    EXPECT_EQ(testing::ErrorOf([&] { grid.TextMatrix(outside, 0); }).Number(), 9);
    EXPECT_EQ(testing::ErrorOf([&] { grid.TextMatrix(1, outside); }).Number(), 9);
    EXPECT_EQ(testing::ErrorOf([&] { grid.ColAlignment(outside); }).Number(), 9);
  }
}

// Gives its rows out in slices, as Qt's SQL models do.
class SlicedModel : public QStandardItemModel {
 public:
  bool canFetchMore(const QModelIndex& /*parent*/) const override { return rowCount() < 600; }
  void fetchMore(const QModelIndex& /*parent*/) override {
    for (int i = 0; i < 200; ++i) appendRow(new QStandardItem(QString::number(rowCount())));
  }
};

TEST(ModelGridTest, RowsAreFetchedAsTheReportReachesThem) {
  SlicedModel model;
  model.setColumnCount(1);
  ModelGrid grid(model, "");
  std::int32_t row = 1;
  for (; grid.SetRow(row); ++row) {
    ASSERT_EQ(grid.TextMatrix(row, 0), std::to_string(row - 1));
    ASSERT_LT(model.rowCount(), row + 200);
  }
  EXPECT_EQ(row, 601);
}

}  // namespace
}  // namespace kel
