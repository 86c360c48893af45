#include "common/numeric_value.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "common/value.h"
#include "support/errors.h"

namespace kel {
namespace {

using Readings = std::vector<std::pair<std::string, double>>;

TEST(ExVal, ReadsTheNumberThatATextBeginsWith) {
  const Readings cases = {
      {"", 0},         {"abc", 0},       {"12abc", 12},    {"  -3.5", -3.5}, {"1+2", 1},
      {"1-2", 1},      {"+7", 7},        {"+-7", 0},       {"- 7", 0},       {".5", 0.5},
      {"5.", 5},       {".", 0},         {"-", 0},         {"-.5x", -0.5},   {"1.2.3", 1.2},
      {"1,250.00", 1}, {"1E3", 1000},    {"1e-3", 0.001},  {"1E", 1},        {"1E+", 1},
      {"1E+x", 1},     {"2.5E2.5", 250}, {"\t\r\n12", 12}, {"inf", 0},       {"nan", 0},
      {"0x10", 0},     {"12 34", 12},    {"E5", 0},        {"1E-999", 0},    {"1e308", 1e308}};
  for (const auto& [text, number] : cases) EXPECT_EQ(ExVal(text), number) << text;
}

TEST(ExVal, ReadsAnOverflowAgainWithoutItsExponent) {
  const std::string too_long(400, '9');
  const Readings cases = {{"1E999", 1},
                          {"-1.5E999", -1.5},
                          {"+2E99999999999999999999999x", 2},
                          {"0E99999999999999999999999", 0},
                          {too_long, 0},
                          {too_long + "E5", 0},
                          {too_long + "E-399", 10},
                          {"0." + std::string(400, '0') + "1E401", 1},
                          {" 1E999", 0}};
  for (const auto& [text, number] : cases) EXPECT_EQ(ExVal(text), number) << text;
}

TEST(ExVal, ReplacesAValueByItsText) {
  Value amount = 12.5;
  EXPECT_EQ(ExVal(amount), 12.5);
  EXPECT_EQ(amount, Value("12.5"));
  Value null = Value::Null();
  EXPECT_EQ(testing::ErrorOf([&] { ExVal(null); }).Number(), 94);
  EXPECT_TRUE(null.IsNull());
}

TEST(IsNumeric, AcceptsWholeNumbersAsPeopleWriteThem) {
  const Readings cases = {{" 12 ", 12},     {"-12", -12},          {"12-", -12},
                          {"12+", 12},      {"1,250.00", 1250},    {"1,00,000.00", 1e5},
                          {".5", 0.5},      {"1E3", 1000},         {"1,000E-3", 1},
                          {"1e308", 1e308}, {"-1,234.5", -1234.5}, {"1E-999", 0}};
  for (const auto& [text, number] : cases) {
    EXPECT_TRUE(IsNumeric(text)) << text;
    EXPECT_EQ(ReadNumber(text), number) << text;
  }
}

TEST(IsNumeric, RefusesEverythingElse) {
  for (const char* text :
       {"",       " ",     "abc",   "12abc", "1+2", "--1", "-1-", "-",    ".",   ",",  "1,", ",1",
        "1,,000", "1.5,0", "1.2.3", "1E",    "E5",  "inf", "nan", "0x10", "1 2", "$5", "(5)"}) {
    EXPECT_FALSE(IsNumeric(text)) << text;
    EXPECT_EQ(ReadNumber(text), std::nullopt) << text;
  }
  for (const std::string& text : {std::string("1E999"), std::string(400, '9')}) {
    EXPECT_FALSE(IsNumeric(text)) << text;
    EXPECT_EQ(ReadNumber("-" + text), -std::numeric_limits<double>::infinity()) << text;
  }
}

}  // namespace
}  // namespace kel
