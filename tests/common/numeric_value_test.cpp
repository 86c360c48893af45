#include "common/numeric_value.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "common/error.h"
#include "common/scratch_folder.h"
#include "common/value.h"

namespace kel {
namespace {

TEST(ExVal, ReadsTheNumberThatATextBeginsWith) {
  const std::vector<std::pair<std::string, double>> cases = {
      {"", 0},
      {"abc", 0},
      {"12abc", 12},
      {"  -3.5", -3.5},
      {"1+2", 1},
      {"1-2", 1},
      {"+7", 7},
      {"+-7", 0},
      {"- 7", 0},
      {".5", 0.5},
      {"5.", 5},
      {".", 0},
      {"-", 0},
      {"-.5x", -0.5},
      {"1.2.3", 1.2},
      {"1,250.00", 1},
      {"1E3", 1000},
      {"1e-3", 0.001},
      {"1E", 1},
      {"1E+", 1},
      {"1E+x", 1},
      {"2.5E2.5", 250},
      {"\t\r\n12", 12},
      {"inf", 0},
      {"nan", 0},
      {"0x10", 0},
      {"12 34", 12},
      {"E5", 0},
      {"0.1", 0.1},
      {"1E-999", 0},
      {"-1E-999", 0},
      {"\xe2\x82\xb9"
       "5",
       0},
      {"1e308", 1e308},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(ExVal(text), number) << text;
}

TEST(ExVal, ReadsAnOverflowAgainWithoutItsExponent) {
  const std::string too_long(400, '9');
  EXPECT_EQ(ExVal("1E999"), 1);
  EXPECT_EQ(ExVal("-1.5E999"), -1.5);
  EXPECT_EQ(ExVal("+2E99999999999999999999999x"), 2);
  EXPECT_EQ(ExVal("0E99999999999999999999999"), 0);
  EXPECT_EQ(ExVal(too_long), 0);
  EXPECT_EQ(ExVal(too_long + "E5"), 0);
  EXPECT_EQ(ExVal(too_long + "E-399"), 10);
  EXPECT_EQ(ExVal("0." + std::string(400, '0') + "1E401"), 1);
  // The second reading starts at the text's first character and does not skip blanks.
  EXPECT_EQ(ExVal(" 1E999"), 0);
}

TEST(ExVal, ReadsAPointWhateverTheProgramsLocaleUses) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"de_DE.UTF-8", "hi_IN.UTF-8", "C"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_EQ(ExVal("1.5"), 1.5);
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST(ExVal, ReplacesAValueByItsText) {
  Value amount = 12.5;
  EXPECT_EQ(ExVal(amount), 12.5);
  EXPECT_EQ(amount, Value("12.5"));
  Value truth = true;
  EXPECT_EQ(ExVal(truth), 0);
  EXPECT_EQ(truth, Value("True"));
  Value empty;
  EXPECT_EQ(ExVal(empty), 0);
  EXPECT_EQ(empty, Value(""));
  Value null = Value::Null();
  EXPECT_EQ(ErrorNumberOf<Error>([&] { ExVal(null); }), error_number::kInvalidUseOfNull);
  EXPECT_TRUE(null.IsNull());
}

TEST(IsNumeric, AcceptsWholeNumbersAsPeopleWriteThem) {
  const std::vector<std::pair<std::string, double>> numbers = {
      {"0", 0},
      {" 12 ", 12},
      {"-12", -12},
      {"12-", -12},
      {"+12", 12},
      {"12+", 12},
      {"1,250.00", 1250},
      {"1,00,000.00", 100000},
      {".5", 0.5},
      {"5.", 5},
      {"1E3", 1000},
      {"1,000E-3", 1},
      {"-1,234.5", -1234.5},
      {"1e308", 1e308},
      {"1E-999", 0},
  };
  for (const auto& [text, number] : numbers) {
    EXPECT_TRUE(IsNumeric(text)) << text;
    EXPECT_EQ(ReadNumber(text), number) << text;
  }
}

TEST(IsNumeric, RefusesEverythingElse) {
  for (const std::string text :
       {"",       " ",     "abc",   "12abc", "1+2", "--1", "-1-", "-",    ".",   ",",  "1,", ",1",
        "1,,000", "1.5,0", "1.2.3", "1E",    "E5",  "inf", "nan", "0x10", "1 2", "$5", "(5)"}) {
    EXPECT_FALSE(IsNumeric(text)) << text;
    EXPECT_EQ(ReadNumber(text), std::nullopt) << text;
  }
}

TEST(IsNumeric, RefusesWhatADoubleCannotHold) {
  for (const std::string& text : {std::string("1E999"), std::string(400, '9')}) {
    EXPECT_FALSE(IsNumeric(text));
    EXPECT_EQ(ReadNumber(text), std::numeric_limits<double>::infinity());
  }
  EXPECT_EQ(ReadNumber("-1E999"), -std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace kel
