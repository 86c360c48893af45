#include "data/decimal_sum.h"

#include <gtest/gtest.h>

#include <limits>

namespace kel {
namespace {

template <typename... Cells>
std::string SumOf(const Cells&... cells) {
  DecimalSum sum;
  (sum.Add(cells), ...);
  return sum.Text();
}

TEST(DecimalSumTest, SumsAreThoseOfTheDecimalTextsPeopleSee) {
  const auto text = &CellView::Text;
  const auto integer = &CellView::Integer;
  const auto number = &CellView::Double;
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();

  EXPECT_EQ(SumOf(), "0");
  EXPECT_EQ(SumOf(number(0.1), number(0.2), text("-0.3")), "0");
  EXPECT_EQ(SumOf(number(1e21), number(0.00001), text("-1E+21")), "0.00001");
  EXPECT_EQ(SumOf(number(-1e308), number(1e308), number(-5e-10)), "-0.0000000005");
  EXPECT_EQ(SumOf(integer(kMost), integer(kMost), integer(1)), "18446744073709551615");
  EXPECT_EQ(SumOf(number(9e10), integer(-kMost / 20000), integer(-kMost / 20000), text("0.5")),
            "-922247203685475.5");
  EXPECT_EQ(SumOf(text("12345678901234567.89"), text("-99999999999999999999.9999")),
            "-99987654321098765432.1099");
  EXPECT_EQ(SumOf(CellView(), text("nan"), text("inf"), text("1,2"), text(""), text("2 x"),
                  CellView{CellView::Kind::kBinary, 0, 0, "5"}, number(kInfinity),
                  number(std::numeric_limits<double>::quiet_NaN()), text("1e999999999999999999"),
                  text("1e-5000"), text(" 7 ")),
            "7");
  EXPECT_EQ(SumOf(Value(Currency{-12501}), Value("0.0001"), Value(0.25), Value(3), Value::Null(),
                  Value(Date{5}), Value(Value::Array{})),
            "2");
  const std::string digits(300, '7');
  EXPECT_EQ(SumOf(text(digits + "." + digits), text("-" + digits)), "0." + digits);
}

TEST(DecimalSumTest, TotalIsCurrencyWhereThatHoldsIt) {
  DecimalSum sum;
  EXPECT_EQ(sum.Total(), Value(Currency{0}));
  for (int i = 0; i < 1'000'000; ++i) sum.Add(CellView::Double(0.1));
  EXPECT_EQ(sum.Total(), Value(Currency{1'000'000'000}));
  sum.Add(CellView::Text("0.00001"));
  EXPECT_EQ(sum.Total(), Value("100000.00001"));
  sum.Add(CellView::Double(1e15));
  sum.Add(CellView::Text("-0.00001"));
  EXPECT_EQ(sum.Total(), Value("1000000000100000"));
}

}  // namespace
}  // namespace kel
