#include "common/value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "support/errors.h"

namespace kel {
namespace {

using testing::ErrorOf;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

std::string Texts(const std::vector<Value>& values) {
  std::string texts;
  for (const Value& value : values) texts += value.ToText() + "|";
  return texts;
}

TEST(Value, TextOfEachKind) {
  EXPECT_EQ(Texts({Value(), true, false, kLeast}), "|True|False|-9223372036854775808|");
  EXPECT_EQ(Texts({-0.0, 1250.0, -1234.5, 0.1, 1.0 / 3}), "0|1250|-1234.5|0.1|0.3333333333333333|");
  EXPECT_EQ(Texts({1e-7, -2.5e-8, 1.5e-10}), "0.0000001|-2.5E-08|1.5E-10|");
  EXPECT_EQ(Texts({1e20, 1e21, 1e22}), "100000000000000000000|1E+21|1E+22|");
  EXPECT_EQ(Texts({Currency{12'500'000}, Currency{12'500'500}, Currency{-5}, Currency{-10'500}}),
            "1250|1250.05|-0.0005|-1.05|");
  EXPECT_EQ(Texts({Currency{kLeast}}), "-922337203685477.5808|");
  EXPECT_EQ(Texts({Date{0}, Date{60}, Date{46113.75}, Date{-1.25}}),
            "30/12/1899|28/02/1900|01/04/2026 18:00:00|29/12/1899 06:00:00|");
  EXPECT_EQ(Texts({Date{2958465}, Date{46112.999999}}), "31/12/9999|01/04/2026|");
}

TEST(Value, WhatHasNoTextOrNumberIsRefusedByItsPublishedNumber) {
  const std::vector<std::pair<Value, int>> cases = {
      {Value::Null(), 94}, {Value::Missing(), 13}, {Value::ObjectPtr(), 13}, {Value::Array(), 13}};
  for (const auto& [value, number] : cases) {
    EXPECT_EQ(ErrorOf([&, &refused = value] { refused.ToText(); }).Number(), number);
    EXPECT_EQ(ErrorOf([&, &refused = value] { refused.ToDouble(); }).Number(), number);
  }
  for (const double days : {1e300, 2958466.0, -657435.0, kNotANumber}) {
    EXPECT_EQ(ErrorOf([&] { Value(Date{days}).ToText(); }).Number(), 6) << days;
  }
  EXPECT_EQ(ErrorOf([] { Value("12abc").ToDouble(); }).Number(), 13);
  EXPECT_EQ(ErrorOf([] { Value("1E999").ToDouble(); }).Number(), 6);
  EXPECT_EQ(ErrorOf([] { Value("yes").ToBoolean(); }).Number(), 13);
  EXPECT_EQ(ErrorOf([] { Value("Label").ToObject(); }).Number(), 13);
  EXPECT_EQ(ErrorOf([] { Value(Value::ObjectPtr()).ToObject(); }).Number(), 91);
  EXPECT_EQ(ErrorOf([] { Value(1).ToArray(); }).Number(), 13);
}

TEST(Value, NumbersAndTruthOfEachKind) {
  EXPECT_EQ(Value().ToDouble(), 0);
  EXPECT_EQ(Value(true).ToDouble(), -1);
  EXPECT_EQ(Value(Currency{12'345}).ToDouble(), 1.2345);
  EXPECT_EQ(Value(Date{1.5}).ToDouble(), 1.5);
  EXPECT_EQ(Value(" 1,00,000.50- ").ToDouble(), -100000.5);
  for (const Value& truth : {Value("TRUE"), Value("-0.5"), Value(2)})
    EXPECT_TRUE(truth.ToBoolean());
  for (const Value& lie : {Value("False"), Value("0.00"), Value()}) EXPECT_FALSE(lie.ToBoolean());
}

TEST(Value, IntegersRoundHalfToEvenAndStayIn32Bits) {
  std::vector<std::int32_t> rounded;
  for (const double number : {0.5, 1.5, 2.5, -0.5, -1.5, -2.5, 2.51, -2.49}) {
    rounded.push_back(Value(number).ToInt32());
  }
  EXPECT_EQ(rounded, (std::vector<std::int32_t>{0, 2, 2, 0, -2, -2, 3, -2}));
  EXPECT_EQ(Value(2147483647.4).ToInt32(), 2147483647);
  EXPECT_EQ(Value(-2147483648.5).ToInt32(), std::numeric_limits<std::int32_t>::min());
  for (const double number : {2147483647.5, 2147483648.0, 1e300, kNotANumber}) {
    EXPECT_EQ(ErrorOf([&] { Value(number).ToInt32(); }).Number(), 6) << number;
  }
}

}  // namespace
}  // namespace kel
