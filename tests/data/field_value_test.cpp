#include "data/field_value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace kel {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(FieldValueTest, DecimalTextsBecomeExactAmountsRoundedHalfToEven) {
  const std::vector<std::pair<std::string, std::int64_t>> cases = {
      {"+.5", 5000},  {"-1250.50", -12505000}, {"7.", 70000},        {"0.00005", 0},
      {"0.00015", 2}, {"-0.00025", -2},        {"0.000050000001", 1}};
  for (const auto& [text, ten_thousandths] : cases) {
    EXPECT_EQ(ParseCurrency(text), Currency{ten_thousandths}) << text;
  }
  EXPECT_EQ(ParseCurrency("922337203685477.58074"), Currency{kMost});
  EXPECT_EQ(ParseCurrency("-922337203685477.5808"),
            Currency{std::numeric_limits<std::int64_t>::min()});
  for (const char* text :
       {"", "-", ".", "1,250", "1e3", "12 ", "0x1", "1.2.3", "Rs 5", "922337203685477.5808",
        "922337203685477.58075", "-922337203685477.580850001", "99999999999999999999"}) {
    EXPECT_EQ(ParseCurrency(text), std::nullopt) << text;
  }
}

TEST(FieldValueTest, NumbersInCurrencyFieldsAreAmountsWhereTheyFit) {
  const auto value = [](const CellView& cell) { return CellValue(cell, FieldType::kCurrency); };
  EXPECT_EQ(value({CellView::Kind::kDouble, 0, 1.00005, {}}), Value(Currency{10000}));
  EXPECT_EQ(value({CellView::Kind::kDouble, 0, 1e300, {}}), Value(1e300));
  EXPECT_EQ(value({CellView::Kind::kDouble, 0, -5e-324, {}}), Value(Currency{0}));
  EXPECT_EQ(value({CellView::Kind::kInteger, -42, 0, {}}), Value(Currency{-420000}));
  EXPECT_EQ(value({CellView::Kind::kInteger, kMost, 0, {}}), Value(kMost));
}

TEST(FieldValueTest, IsoTextsBecomeDates) {
  const std::vector<std::pair<std::string, double>> cases = {
      {"1900-01-01 12:00", 2.5},
      {"2024-02-29T18:00:00", 45351.75},
      {"2026-03-31 00:00:00.500", 46112 + 0.5 / 86400},
      {"1899-12-29 06:00:00", -1.25},
      {"0100-01-01", -657434},
      {"9999-12-31", 2958465}};
  for (const auto& [text, days] : cases) {
    EXPECT_DOUBLE_EQ(ParseIsoDate(text).value_or(Date{1e9}).days, days) << text;
  }
  for (const char* text : {"", "2026", "31-03-2026", "2026-3-1", "2026-02-29", "2026-13-01",
                           "2026-04-31", "2026-03-31 ", "2026-03-31 24:00", "2026-03-31 12:60",
                           "2026-03-31 12:00:60", "2026-03-31 12:00:00.", "2026-03-31 12:00:00Z",
                           "2026-03-31x", "0099-12-31", "-026-03-31"}) {
    EXPECT_EQ(ParseIsoDate(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace kel
