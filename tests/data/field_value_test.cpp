#include "data/field_value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace kel {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(FieldValueTest, DecimalTextsBecomeExactAmounts) {
  struct Case {
    const char* text;
    std::int64_t ten_thousandths;
  };
  const std::vector<Case> cases = {
      {"12", 120000},
      {"+.5", 5000},
      {"-1250.50", -12505000},
      {"7.", 70000},
      {"0.00005", 0},  // halves go to the even one
      {"0.00015", 2},
      {"-0.00025", -2},
      {"0.000050000001", 1},
      {"922337203685477.5807", kMost},
      {"-922337203685477.5808", kLeast},
      {"922337203685477.58074", kMost},
  };
  for (const auto& test : cases) {
    const auto amount = ParseCurrency(test.text);
    ASSERT_TRUE(amount.has_value()) << test.text;
    EXPECT_EQ(amount->ten_thousandths, test.ten_thousandths) << test.text;
  }
}

TEST(FieldValueTest, OtherTextsAreNoAmounts) {
  for (const char* text :
       {"", "-", ".", "1,250", "1e3", "12 ", "0x1", "1.2.3", "Rs 5", "922337203685477.5808",
        "922337203685477.58075", "-922337203685477.580850001", "99999999999999999999"}) {
    EXPECT_FALSE(ParseCurrency(text).has_value()) << text;
  }
}

TEST(FieldValueTest, NumbersInCurrencyFieldsAreAmountsWhereTheyFit) {
  CellView cell{CellView::Kind::kDouble, 0, 1.00005, {}};
  EXPECT_EQ(CellValue(cell, FieldType::kCurrency), Value(Currency{10000}));
  cell.number = 1e300;
  EXPECT_EQ(CellValue(cell, FieldType::kCurrency), Value(1e300));
  cell.number = -std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(CellValue(cell, FieldType::kCurrency), Value(Currency{0}));
  cell.number = std::numeric_limits<double>::infinity();
  EXPECT_EQ(CellValue(cell, FieldType::kCurrency), Value(cell.number));
  const CellView whole{CellView::Kind::kInteger, -42, 0, {}};
  EXPECT_EQ(CellValue(whole, FieldType::kCurrency), Value(Currency{-420000}));
  const CellView widest{CellView::Kind::kInteger, kMost, 0, {}};
  EXPECT_EQ(CellValue(widest, FieldType::kCurrency), Value(kMost));
}

TEST(FieldValueTest, IsoTextsBecomeDates) {
  struct Case {
    const char* text;
    double days;
  };
  const std::vector<Case> cases = {
      {"1899-12-30", 0},
      {"1900-01-01 12:00", 2.5},
      {"2024-02-29T18:00:00", 45351.75},
      {"2026-03-31 00:00:00.500", 46112 + 0.5 / 86400},
      {"1899-12-29 06:00:00", -1.25},  // the time of day counts away from zero
      {"0100-01-01", -657434},
      {"9999-12-31", 2958465},
  };
  for (const auto& test : cases) {
    const auto date = ParseIsoDate(test.text);
    ASSERT_TRUE(date.has_value()) << test.text;
    EXPECT_DOUBLE_EQ(date->days, test.days) << test.text;
  }
}

TEST(FieldValueTest, OtherTextsAreNoDates) {
  for (const char* text : {"", "2026", "31-03-2026", "2026-3-1", "2026-02-29", "2026-13-01",
                           "2026-04-31", "2026-03-31 ", "2026-03-31 24:00", "2026-03-31 12:60",
                           "2026-03-31 12:00:60", "2026-03-31 12:00:00.", "2026-03-31 12:00:00Z",
                           "2026-03-31x", "0099-12-31", "-026-03-31"}) {
    EXPECT_FALSE(ParseIsoDate(text).has_value()) << text;
  }
}

}  // namespace
}  // namespace kel
